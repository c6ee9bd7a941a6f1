#include "cli/SourceText.h"

#include <QFile>

QString sourceText(const Path& path, int line)
{
    QFile file(path.osPath());
    if (!file.open(QIODevice::ReadOnly))
        return {};
    for (int number = 1; number < line && !file.atEnd(); ++number)
        file.readLine();
    return QString::fromUtf8(file.readLine()).trimmed();
}
