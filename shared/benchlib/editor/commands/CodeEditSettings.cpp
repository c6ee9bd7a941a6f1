#include "editor/commands/CodeEditSettings.h"

#include <QRegularExpression>

using namespace Qt::Literals::StringLiterals;

QList<int> CodeEditSettings::columnGuidesFrom(const QString& text)
{
    static const QRegularExpression separator(u"[,;:]"_s);
    QList<int> result;
    for (const QString& part : text.split(separator)) {
        bool good = false;
        const int column = part.trimmed().toInt(&good);
        if (good && column > 0)
            result.append(column);
    }
    return result;
}
