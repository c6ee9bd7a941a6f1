#pragma once

#include "base/XMLNode.h"

#include <QString>

#include <iterator>
#include <vector>

/// One attribute as it stands in the file: bytes, with references resolved.
struct XMLAttribute {
    QByteArray name;
    QByteArray value;

    /// The value as text: UTF-8 when the bytes are, else Latin-1.
    QString text() const;
};

/// An element: its tag, attributes in the file's order, and children.
class XMLElement : public XMLNode {
public:
    explicit XMLElement(const QByteArray& tag);

    const QByteArray& tag() const { return m_text; }
    bool hasTag(const char* tag) const { return m_text == tag; }

    bool hasAttribute(const char* name) const;
    /// The attribute's text, or the fallback if it is missing.
    QString attribute(const char* name, const QString& fallback = {}) const;
    /// Changes the attribute in its place, or adds it behind the others.
    void setAttribute(const QByteArray& name, const QString& value);
    void setAttributeBytes(const QByteArray& name, const QByteArray& value);
    /// `index` counts in attributes().
    void setAttributeAt(std::size_t index, const QString& value);
    void removeAttribute(const char* name);
    const std::vector<XMLAttribute>& attributes() const { return m_attributes; }

    XMLNode* firstChild() const { return m_firstChild; }
    XMLNode* lastChild() const { return m_lastChild; }
    XMLElement* firstChildElement() const;
    /// The first child element of that tag, or null.
    XMLElement* firstChildElement(const char* tag) const;
    /// The next sibling that is an element.
    XMLElement* nextElement() const;
    /// The next element in document order of those in `root`, which this one is or is in; null
    /// behind the last one.
    XMLElement* next(const XMLElement* root) const;
    /// The same, without looking into this one.
    XMLElement* nextOutside(const XMLElement* root) const;

    /// A node that is taken into the tree is taken out of where it stood. A null `before` appends.
    void insertBefore(XMLNode* node, XMLNode* before);
    void appendChild(XMLNode* node) { insertBefore(node, nullptr); }
    void removeChild(XMLNode* node);

    /// Walks the child elements: `for (XMLElement& child : element.children())`.
    class ChildIterator {
    public:
        explicit ChildIterator(XMLElement* at) : m_at(at) { }
        XMLElement& operator*() const { return *m_at; }
        ChildIterator& operator++()
        {
            m_at = m_at->nextElement();
            return *this;
        }
        friend bool operator==(const ChildIterator&, const ChildIterator&) = default;

    private:
        XMLElement* m_at;
    };
    struct Children {
        XMLElement* first;
        ChildIterator begin() const { return ChildIterator(first); }
        ChildIterator end() const { return ChildIterator(nullptr); }
    };
    Children children() const { return {firstChildElement()}; }

private:
    friend class XMLDocument;
    friend class XMLReader;

    XMLAttribute* findAttribute(const char* name);
    const XMLAttribute* findAttribute(const char* name) const
    {
        return const_cast<XMLElement*>(this)->findAttribute(name);
    }

    std::vector<XMLAttribute> m_attributes;
    XMLNode* m_firstChild = nullptr;
    XMLNode* m_lastChild = nullptr;
};
