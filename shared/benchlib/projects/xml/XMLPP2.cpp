#include "projects/xml/XMLPP2.h"

#include "projects/xml/XmlPreprocessor.h"

/// XMLDocument's tree for the preprocessor.
class XMLElementTree {
public:
    using Node = XMLNode*;
    static constexpr bool Repetitions = true;
    static constexpr bool MacroDefinitions = false;

    explicit XMLElementTree(XMLPP2& document) : m_document(document) { }

    static bool isNull(const XMLNode* node) { return node == nullptr; }
    static bool isElement(const XMLNode* node) { return node->kind() == XMLNode::Kind::Element; }
    static Node nextSibling(const XMLNode* node) { return node->nextSibling(); }
    static Node firstChild(const XMLNode* node) { return node->toElement()->firstChild(); }
    static QString tag(const XMLNode* node) { return QString::fromUtf8(node->toElement()->tag()); }
    static bool hasAttribute(const XMLNode* node, const QString& name)
    {
        return node->toElement()->hasAttribute(name.toUtf8().constData());
    }
    static QString attribute(const XMLNode* node, const QString& name)
    {
        return node->toElement()->attribute(name.toUtf8().constData());
    }
    static void setAttribute(XMLNode* node, const QString& name, const QString& value)
    {
        node->toElement()->setAttribute(name.toUtf8(), value);
    }
    static QStringList attributeNames(const XMLNode* node)
    {
        QStringList names;
        for (const XMLAttribute& attribute : node->toElement()->attributes())
            names.append(QString::fromUtf8(attribute.name));
        return names;
    }
    static void insertBefore(XMLNode* node, XMLNode* before)
    {
        before->parent()->insertBefore(node, before);
    }
    static void remove(XMLNode* node) { node->parent()->removeChild(node); }
    static void expandAttributeMacros(XMLNode* node, const MacroMap& macros)
    {
        XMLPP2::expandAttributeMacros(*node->toElement(), macros);
    }

    void noteInclude(const QString& path) const
    {
        if (!m_document.m_includedFiles.contains(path))
            m_document.m_includedFiles.append(path);
    }
    Node parse(const QByteArray& bytes, QString& error, int& line, int&) const
    {
        return m_document.readElement(bytes, error, line);
    }
    /// Counts the elements that it makes.
    Node copyAndExpand(const XMLNode* node, const MacroMap& macros, int& count) const
    {
        XMLElement* copy =
            m_document.copyElementAndExpandAttributeMacros(*node->toElement(), macros);
        for (const XMLElement* element = copy; element != nullptr; element = element->next(copy))
            ++count;
        return copy;
    }

private:
    XMLPP2& m_document;
};

bool XMLPP2::load(const QString& path, const QString& macros, bool expandMacros)
{
    QByteArray bytes;
    return readFile(path, bytes)
        && loadFromBytes(bytes, QFileInfo(path).path(), macros, expandMacros);
}

bool XMLPP2::loadFromBytes(const QByteArray& bytes, const QString& directory, const QString& macros,
                           bool expandMacros)
{
    m_includedFiles.clear();
    if (!XMLDocument::loadFromBytes(bytes))
        return false;
    processConditionals(documentElement(), directory, macrosForXml(macros), expandMacros);
    return true;
}

void XMLPP2::processConditionals(XMLNode* node, const QString& directory, const MacroMap& macros,
                                 bool expandMacros)
{
    XMLElement* holder = nullptr;
    if (node->parent() == nullptr) {
        holder = createElement({});
        holder->appendChild(node);
    }
    XMLElementTree tree(*this);
    XmlPreprocessor(tree, m_definitions).run(node, {directory, macros, expandMacros});
    if (holder != nullptr) {
        XMLElement* root = holder->firstChildElement();
        if (root != nullptr)
            holder->removeChild(root);
        setDocumentElement(root);
    }
}

void XMLPP2::expandAttributeMacros(XMLElement& element, const MacroMap& macros)
{
    const auto& attributes = element.attributes();
    for (std::size_t i = 0; i < attributes.size(); ++i) {
        if (attributes[i].value.contains('$'))
            element.setAttributeAt(i, MacroSystem::replaceMacros(macros, attributes[i].text()));
    }
}

XMLElement* XMLPP2::copyElementAndExpandAttributeMacros(const XMLElement& element,
                                                        const MacroMap& macros)
{
    XMLElement* copy = copyElement(element);
    for (XMLElement* inside = copy; inside != nullptr; inside = inside->next(copy))
        expandAttributeMacros(*inside, macros);
    return copy;
}
