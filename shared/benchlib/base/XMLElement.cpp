#include "base/XMLElement.h"

#include <algorithm>

QString XMLAttribute::text() const
{
    return value.isValidUtf8() ? QString::fromUtf8(value) : QString::fromLatin1(value);
}

XMLNode::XMLNode(Kind kind, const QByteArray& text) : m_kind(kind), m_text(text)
{
    finalizeWithPool(this);
}

XMLElement* XMLNode::toElement()
{
    return m_kind == Kind::Element ? static_cast<XMLElement*>(this) : nullptr;
}

XMLElement::XMLElement(const QByteArray& tag) : XMLNode(Kind::Element, tag) { }

XMLAttribute* XMLElement::findAttribute(const char* name)
{
    const auto found = std::ranges::find_if(
        m_attributes, [name](const XMLAttribute& attribute) { return attribute.name == name; });
    return found == m_attributes.end() ? nullptr : &*found;
}

bool XMLElement::hasAttribute(const char* name) const { return findAttribute(name) != nullptr; }

QString XMLElement::attribute(const char* name, const QString& fallback) const
{
    const XMLAttribute* attribute = findAttribute(name);
    return attribute != nullptr ? attribute->text() : fallback;
}

void XMLElement::setAttribute(const QByteArray& name, const QString& value)
{
    setAttributeBytes(name, value.toUtf8());
}

void XMLElement::setAttributeBytes(const QByteArray& name, const QByteArray& value)
{
    if (XMLAttribute* attribute = findAttribute(name.constData()))
        attribute->value = value;
    else
        m_attributes.push_back({name, value});
}

void XMLElement::setAttributeAt(std::size_t index, const QString& value)
{
    m_attributes[index].value = value.toUtf8();
}

void XMLElement::removeAttribute(const char* name)
{
    std::erase_if(m_attributes,
                  [name](const XMLAttribute& attribute) { return attribute.name == name; });
}

XMLElement* XMLElement::firstChildElement() const
{
    XMLNode* node = m_firstChild;
    while (node != nullptr && node->kind() != Kind::Element)
        node = node->nextSibling();
    return static_cast<XMLElement*>(node);
}

XMLElement* XMLElement::firstChildElement(const char* tag) const
{
    XMLElement* element = firstChildElement();
    while (element != nullptr && !element->hasTag(tag))
        element = element->nextElement();
    return element;
}

XMLElement* XMLElement::nextElement() const
{
    XMLNode* node = m_next;
    while (node != nullptr && node->kind() != Kind::Element)
        node = node->nextSibling();
    return static_cast<XMLElement*>(node);
}

XMLElement* XMLElement::next(const XMLElement* root) const
{
    if (XMLElement* child = firstChildElement())
        return child;
    return nextOutside(root);
}

XMLElement* XMLElement::nextOutside(const XMLElement* root) const
{
    for (const XMLElement* element = this; element != root; element = element->parent()) {
        if (XMLElement* sibling = element->nextElement())
            return sibling;
    }
    return nullptr;
}

void XMLElement::insertBefore(XMLNode* node, XMLNode* before)
{
    if (node == before)
        return;
    if (node->m_parent != nullptr)
        node->m_parent->removeChild(node);
    XMLNode* previous = before != nullptr ? before->m_previous : m_lastChild;
    node->m_parent = this;
    node->m_previous = previous;
    node->m_next = before;
    (previous != nullptr ? previous->m_next : m_firstChild) = node;
    (before != nullptr ? before->m_previous : m_lastChild) = node;
}

void XMLElement::removeChild(XMLNode* node)
{
    (node->m_previous != nullptr ? node->m_previous->m_next : m_firstChild) = node->m_next;
    (node->m_next != nullptr ? node->m_next->m_previous : m_lastChild) = node->m_previous;
    node->m_parent = nullptr;
    node->m_previous = nullptr;
    node->m_next = nullptr;
}
