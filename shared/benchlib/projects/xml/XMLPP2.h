#pragma once

#include "base/XMLDocument.h"
#include "projects/macros/MacroSystem.h"
#include "projects/xml/XmlDefinitions.h"

/// An XMLDocument that is adapted to the host, the product and the macros when it is loaded:
/// conditions, definitions, choices, includes and repetitions are evaluated and gone. What is wrong
/// in them goes to Qt's warnings; only a fault of the file itself fails the load.
///
/// Limits keep a file that includes or repeats without end from being more than a warning.
class XMLPP2 : public XMLDocument {
public:
    XMLPP2() : m_definitions(defaultXmlDefinitions()) { }

    /// `macros` is a list of "name=value" separated by ";"; they lie over the system macros. With
    /// `expandMacros` they are expanded in every attribute. False with errorText() and errorLine()
    /// set.
    bool load(const QString& path, const QString& macros, bool expandMacros);
    /// The same of the bytes of a file; `directory` is where it includes from.
    bool loadFromBytes(const QByteArray& bytes, const QString& directory, const QString& macros,
                       bool expandMacros);

    /// The files that the last load included or would have, by their paths.
    const QStringList& includedFiles() const { return m_includedFiles; }

    void define(const QString& name, const QString& value) { m_definitions.insert(name, value); }
    /// Null if there is no such definition.
    QString getdefine(const QString& name) const { return m_definitions.value(name); }

    /// Evaluates a node and the siblings behind it. They need a parent, unless the node is the
    /// document element; what takes that one's place is then the document element, null if nothing
    /// does.
    void processConditionals(XMLNode* node, const QString& directory, const MacroMap& macros,
                             bool expandMacros);

    static void expandAttributeMacros(XMLElement& element, const MacroMap& macros);
    /// A copy of the element with all that it holds, the macros expanded in all attributes.
    XMLElement* copyElementAndExpandAttributeMacros(const XMLElement& element,
                                                    const MacroMap& macros);

private:
    friend class XMLElementTree;

    XmlDefinitions m_definitions;
    QStringList m_includedFiles;
};
