#pragma once

#include "projects/macros/MacroSystem.h"
#include "projects/xml/XmlDefinitions.h"

#include <QDomDocument>

class QIODevice;

/// A QDomDocument that is adapted to the host, the product and the macros when it is loaded:
/// conditions, definitions, choices and includes are evaluated and gone. What is wrong in them goes
/// to Qt's warnings; only a fault of the file itself fails the load.
///
/// Files that nest deeper than 500 elements are refused: Qt's nodes destroy one another by
/// recursion.
class XmlPP {
public:
    XmlPP() : m_definitions(defaultXmlDefinitions()) { }

    /// `macros` is a list of "name=value" separated by ";"; they lie over the system macros. With
    /// `expandMacros` they are expanded in every attribute. The error is set if the result is
    /// false; any of its places may be null.
    bool load(const QString& path, const QString& macros, bool expandMacros,
              QString* errorText = nullptr, int* errorLine = nullptr, int* errorColumn = nullptr);
    /// The same of a text or a source of text in UTF-8, which includes from the current directory.
    bool loadFromString(const QString& text, bool expandMacros, QString* errorText = nullptr,
                        int* errorLine = nullptr, int* errorColumn = nullptr);
    bool load(QIODevice& source, bool expandMacros, QString* errorText = nullptr,
              int* errorLine = nullptr, int* errorColumn = nullptr);

    const QDomDocument& document() const { return m_document; }
    QDomElement documentElement() const { return m_document.documentElement(); }

    void define(const QString& name, const QString& value) { m_definitions.insert(name, value); }
    /// Null if there is no such definition.
    QString getdefine(const QString& name) const { return m_definitions.value(name); }

    /// Evaluates a node and the siblings behind it.
    void processConditionals(const QDomNode& node, const QString& directory, const MacroMap& macros,
                             bool expandMacros);

    static void expandAttributeMacros(QDomElement element, const MacroMap& macros);

private:
    bool setContent(const QString& text, const QString& directory, const MacroMap& macros,
                    bool expandMacros, QString* errorText, int* errorLine, int* errorColumn);

    QDomDocument m_document;
    XmlDefinitions m_definitions;
};
