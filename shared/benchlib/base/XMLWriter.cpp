#include "base/XMLWriter.h"

#include <algorithm>
#include <cctype>

namespace {

/// Deeper elements aren't indented further: blanks of unbounded lines would grow with the square
/// of the depth.
constexpr int DeepestIndent = 128;

bool holdsText(const XMLElement& element)
{
    for (const XMLNode* node = element.firstChild(); node != nullptr; node = node->nextSibling()) {
        if (node->kind() == XMLNode::Kind::Text || node->kind() == XMLNode::Kind::Section)
            return true;
    }
    return false;
}

/// Text that would end its comment or section is broken up.
QByteArray broken(QByteArray text, const char* end, const char* instead)
{
    return text.contains(end) ? text.replace(end, instead) : text;
}

} // namespace

void XMLWriter::writeDocumentType(const QByteArray& name) { m_out += "<!DOCTYPE " + name + ">\n"; }

void XMLWriter::write(const XMLNode& top)
{
    const XMLNode* node = &top;
    for (;;) {
        const XMLElement* element = node->toElement();
        if (element == nullptr)
            writeText(*node);
        else
            writeStart(*element);
        if (element != nullptr && element->firstChild() != nullptr) {
            node = element->firstChild();
            continue;
        }
        while (node != &top && node->nextSibling() == nullptr) {
            node = node->parent();
            writeEnd(*node->toElement());
        }
        if (node == &top)
            return;
        node = node->nextSibling();
    }
}

void XMLWriter::writeStart(const XMLElement& element)
{
    beginLine();
    m_out += '<';
    m_out += element.tag();
    for (const XMLAttribute& attribute : element.attributes()) {
        m_out += ' ';
        m_out += attribute.name;
        m_out += "=\"";
        escape(attribute.value);
        m_out += '"';
    }
    if (element.firstChild() == nullptr) {
        m_out += "/>";
        endLine();
        return;
    }
    m_out += '>';
    ++m_depth;
    if (m_mixed == nullptr && holdsText(element))
        m_mixed = &element;
    endLine();
}

void XMLWriter::writeEnd(const XMLElement& element)
{
    --m_depth;
    beginLine();
    m_out += "</";
    m_out += element.tag();
    m_out += '>';
    if (m_mixed == &element)
        m_mixed = nullptr;
    endLine();
}

void XMLWriter::writeText(const XMLNode& node)
{
    beginLine();
    switch (node.kind()) {
    case XMLNode::Kind::Comment:
        m_out += "<!--" + broken(node.text(), "-->", "-- >") + "-->";
        break;
    case XMLNode::Kind::Section:
        m_out += "<!CDATA[" + broken(node.text(), "]]>", "]]]]><!CDATA[>") + "]]>";
        break;
    case XMLNode::Kind::Text:
    case XMLNode::Kind::Element:
        // Nothing but blanks would not be text when read again.
        if (std::ranges::count(node.text(), ' ') == node.text().size() && !node.text().isEmpty())
            m_out += "&#x20;" + node.text().sliced(1);
        else
            escape(node.text());
        break;
    }
    endLine();
}

void XMLWriter::escape(const QByteArray& text)
{
    for (const char c : text) {
        switch (c) {
        case '"': m_out += "&quot;"; break;
        case '&': m_out += "&amp;"; break;
        case '<': m_out += "&lt;"; break;
        case '>': m_out += "&gt;"; break;
        default:
            // Not isprint, which depends on the locale.
            if (c >= ' ' && c <= '~')
                m_out += c;
            else
                m_out += "&#x" + QByteArray::number(static_cast<unsigned char>(c), 16) + ';';
        }
    }
}

void XMLWriter::beginLine()
{
    if (m_mixed == nullptr)
        m_out.append(m_indent * std::min(m_depth, DeepestIndent), ' ');
}

void XMLWriter::endLine()
{
    if (m_mixed == nullptr)
        m_out += '\n';
}
