#include "build/log/MessageToken.h"

namespace {

bool takeQuoted(const QString& message, QStringView opening, QString& token)
{
    const qsizetype at = message.indexOf(opening);
    if (at < 0)
        return false;
    const qsizetype first = at + opening.size();
    const qsizetype last = message.indexOf(u'\'', first);
    if (last < 0)
        return false;
    token = message.sliced(first, last - first);
    return true;
}

} // namespace

QString quotedToken(const QString& message)
{
    QString token;
    if (!takeQuoted(message, u" before '", token))
        takeQuoted(message, u"'", token);
    return token;
}
