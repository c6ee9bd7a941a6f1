#include "editor/parsers/CodeSyntaxChecker.h"

#include <QDomDocument>

using namespace Qt::Literals::StringLiterals;

bool CodeSyntaxXMLChecker::check(const QString& text, QString* message, int* line, int* column,
                                 int options)
{
    if (options != 0)
        setOptions(options);
    QString errorText;
    int errorLine = 0;
    int errorColumn = 0;
    QDomDocument document;
    const bool good =
        document.setContent(text, m_processesNamespaces, &errorText, &errorLine, &errorColumn);
    if (message)
        *message = good ? u"Valid Syntax"_s : errorText;
    if (line && !good)
        *line = errorLine;
    if (column && !good)
        *column = errorColumn;
    return good;
}
