#include "projects/solution/Builder.h"

QString Builder::commandLine(const QStringList& command)
{
    QStringList words;
    for (const QString& word : command)
        words << (word.contains(QLatin1Char(' ')) ? QLatin1Char('"') + word + QLatin1Char('"')
                                                  : word);
    return words.join(QLatin1Char(' '));
}
