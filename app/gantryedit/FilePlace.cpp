#include "app/gantryedit/FilePlace.h"

#include <QFileInfo>
#include <QRegularExpression>

#include <algorithm>

FilePlace FilePlace::from(const QString& argument)
{
    static const QRegularExpression place(QStringLiteral("^(.+?):(\\d+)(?::(\\d+))?:?$"));
    const QRegularExpressionMatch match = place.match(argument);
    if (QFileInfo::exists(argument) || !match.hasMatch())
        return {argument};
    return {match.captured(1), match.captured(2).toInt(), std::max(1, match.captured(3).toInt())};
}
