#include "projects/xml/XmlPP.h"

#include "projects/xml/XmlPreprocessor.h"

#include <QXmlStreamReader>

namespace {

constexpr int MaximumDepth = 500;

struct ParseError {
    QString text;
    int line = 0;
    int column = 0;
};

/// Whether the text nests deeper than is good for Qt's nodes. Faults are left to the parser.
bool nestsTooDeeply(const QString& text, ParseError& error)
{
    QXmlStreamReader reader(text);
    int depth = 0;
    while (!reader.atEnd()) {
        reader.readNext();
        if (reader.isEndElement())
            --depth;
        if (reader.isStartElement() && ++depth > MaximumDepth) {
            error = {QStringLiteral("elements are nested too deeply"),
                     static_cast<int>(reader.lineNumber()),
                     static_cast<int>(reader.columnNumber())};
            return true;
        }
    }
    return false;
}

bool parse(QDomDocument& document, const QString& text, ParseError& error)
{
    if (!nestsTooDeeply(text, error)
        && document.setContent(text, false, &error.text, &error.line, &error.column))
        return true;
    document.clear();
    return false;
}

/// Qt's tree for the preprocessor.
class DomTree {
public:
    using Node = QDomNode;
    static constexpr bool Repetitions = false;
    static constexpr bool MacroDefinitions = true;

    explicit DomTree(QDomDocument& document) : m_document(document) { }

    static bool isNull(const QDomNode& node) { return node.isNull(); }
    static bool isElement(const QDomNode& node) { return node.isElement(); }
    static QDomNode nextSibling(const QDomNode& node) { return node.nextSibling(); }
    static QDomNode firstChild(const QDomNode& node) { return node.firstChild(); }
    static QString tag(const QDomNode& node) { return node.nodeName(); }
    static bool hasAttribute(const QDomNode& node, const QString& name)
    {
        return node.toElement().hasAttribute(name);
    }
    static QString attribute(const QDomNode& node, const QString& name)
    {
        return node.toElement().attribute(name);
    }
    static void setAttribute(const QDomNode& node, const QString& name, const QString& value)
    {
        node.toElement().setAttribute(name, value);
    }
    static void removeAttribute(const QDomNode& node, const QString& name)
    {
        node.toElement().removeAttribute(name);
    }
    static QStringList attributeNames(const QDomNode& node)
    {
        const QDomNamedNodeMap attributes = node.attributes();
        QStringList names;
        for (int i = 0; i < attributes.count(); ++i)
            names.append(attributes.item(i).nodeName());
        return names;
    }
    static void insertBefore(const QDomNode& node, const QDomNode& before)
    {
        before.parentNode().insertBefore(node, before);
    }
    static void remove(const QDomNode& node) { node.parentNode().removeChild(node); }
    static void expandAttributeMacros(const QDomNode& node, const MacroMap& macros)
    {
        XmlPP::expandAttributeMacros(node.toElement(), macros);
    }

    QDomNode createText(const QString& text) { return m_document.createTextNode(text); }
    QDomNode parse(const QByteArray& bytes, QString& text, int& line, int& column)
    {
        QDomDocument document;
        ParseError error;
        if (::parse(document, QString::fromUtf8(bytes), error))
            return m_document.importNode(document.documentElement(), true);
        text = error.text;
        line = error.line;
        column = error.column;
        return {};
    }

private:
    QDomDocument& m_document;
};

} // namespace

bool XmlPP::load(const QString& path, const QString& macros, bool expandMacros, QString* errorText,
                 int* errorLine, int* errorColumn)
{
    QFile file(path);
    if (QFileInfo(path).isFile() && file.open(QIODevice::ReadOnly))
        return setContent(QString::fromUtf8(file.readAll()), QFileInfo(path).path(),
                          macrosForXml(macros), expandMacros, errorText, errorLine, errorColumn);
    m_document.clear();
    if (errorText != nullptr)
        *errorText = QStringLiteral("couldn't read %1").arg(path);
    return false;
}

bool XmlPP::loadFromString(const QString& text, bool expandMacros, QString* errorText,
                           int* errorLine, int* errorColumn)
{
    return setContent(text, QStringLiteral("."), macrosForXml({}), expandMacros, errorText,
                      errorLine, errorColumn);
}

bool XmlPP::load(QIODevice& source, bool expandMacros, QString* errorText, int* errorLine,
                 int* errorColumn)
{
    return loadFromString(QString::fromUtf8(source.readAll()), expandMacros, errorText, errorLine,
                          errorColumn);
}

bool XmlPP::setContent(const QString& text, const QString& directory, const MacroMap& macros,
                       bool expandMacros, QString* errorText, int* errorLine, int* errorColumn)
{
    ParseError error;
    if (parse(m_document, text, error)) {
        processConditionals(m_document.documentElement(), directory, macros, expandMacros);
        return true;
    }
    if (errorText != nullptr)
        *errorText = error.text;
    if (errorLine != nullptr)
        *errorLine = error.line;
    if (errorColumn != nullptr)
        *errorColumn = error.column;
    return false;
}

void XmlPP::processConditionals(const QDomNode& node, const QString& directory,
                                const MacroMap& macros, bool expandMacros)
{
    // A document takes one element only, while that one's place may be taken by several.
    QDomElement holder;
    if (node == m_document.documentElement()) {
        holder = m_document.createElement(QStringLiteral("holder"));
        holder.appendChild(node);
    }
    DomTree tree(m_document);
    XmlPreprocessor(tree, m_definitions).run(node, {directory, macros, expandMacros});
    if (!holder.isNull())
        m_document.appendChild(holder.firstChildElement());
}

void XmlPP::expandAttributeMacros(QDomElement element, const MacroMap& macros)
{
    const QDomNamedNodeMap attributes = element.attributes();
    for (int i = 0; i < attributes.count(); ++i) {
        QDomAttr attribute = attributes.item(i).toAttr();
        attribute.setValue(MacroSystem::replaceMacros(macros, attribute.value()));
    }
}
