#pragma once

#include "base/Pool.h"

#include <QByteArray>

class XMLElement;

/// A node of an XMLDocument: an element, or a piece of text, a comment or a section between
/// elements. Nodes are made in their document's pool and hold their bytes there.
class XMLNode : public PoolObject {
public:
    enum class Kind { Element, Text, Comment, Section };

    Kind kind() const { return m_kind; }
    /// This node as an element, or null.
    XMLElement* toElement();
    const XMLElement* toElement() const { return const_cast<XMLNode*>(this)->toElement(); }

    XMLElement* parent() const { return m_parent; }
    XMLNode* nextSibling() const { return m_next; }
    /// 1-based line where the node begins in its file; 0 for a node made by the program.
    int line() const { return m_line; }

    /// The text of a node that isn't an element, with references resolved.
    const QByteArray& text() const { return m_text; }

    virtual ~XMLNode() = default;
    XMLNode(const XMLNode&) = delete;
    XMLNode& operator=(const XMLNode&) = delete;

protected:
    friend class XMLDocument;
    friend class XMLElement;
    friend class XMLReader;

    /// Has itself destroyed with the pool; derived classes need nothing for that.
    XMLNode(Kind kind, const QByteArray& text);

    Kind m_kind;
    int m_line = 0;
    XMLElement* m_parent = nullptr;
    XMLNode* m_next = nullptr;
    XMLNode* m_previous = nullptr;
    QByteArray m_text; ///< of an element: its tag
};
