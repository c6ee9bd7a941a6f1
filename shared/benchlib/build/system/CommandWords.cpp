#include "build/system/CommandWords.h"

QStringList commandWords(const QString& command)
{
    QStringList words;
    QString word;
    bool quoted = false;
    bool inWord = false;
    for (const QChar c : command) {
        if (c == QLatin1Char('"')) {
            quoted = !quoted;
            inWord = true;
        } else if (c.isSpace() && !quoted) {
            if (inWord)
                words << word;
            word.clear();
            inWord = false;
        } else {
            word += c;
            inWord = true;
        }
    }
    if (inWord)
        words << word;
    return words;
}

QString stripOuterQuotes(const QString& command)
{
    const QString text = command.trimmed();
    const bool wrapped = text.size() >= 2 && text.startsWith(QLatin1Char('"'))
        && text.indexOf(QLatin1Char('"'), 1) == text.size() - 1;
    return wrapped ? text.mid(1, text.size() - 2) : text;
}
