#include "base/XMLReader.h"

#include "base/XMLDocument.h"

#include <QSet>

#include <algorithm>
#include <array>
#include <cctype>
#include <cstring>

using namespace Qt::Literals::StringLiterals;

namespace {

bool isBlank(char c) { return c == ' ' || (c >= '\t' && c <= '\r'); }

/// Names are taken as they come: all but what would end them.
constexpr auto NameBytes = [] {
    std::array<bool, 256> table;
    table.fill(true);
    for (const char c :
         {' ', '\t', '\n', '\v', '\f', '\r', '<', '>', '/', '=', '"', '\'', '&', '['})
        table[static_cast<unsigned char>(c)] = false;
    return table;
}();

struct Entity {
    QByteArrayView name;
    char byte;
};
constexpr Entity Entities[] = {
    {"quot", '"'}, {"amp", '&'}, {"lt", '<'}, {"gt", '>'}, {"apos", '\''},
};

/// Attributes from which on doubles are looked for by hashing.
constexpr std::size_t ManyAttributes = 12;

} // namespace

XMLReader::XMLReader(XMLDocument& document, QByteArrayView bytes)
    : m_document(document),
      m_at(bytes.data()),
      m_end(bytes.data() + bytes.size()),
      m_counted(bytes.data())
{
}

void XMLReader::read()
{
    if (startsWith("\xef\xbb\xbf"))
        m_at += 3;
    else if (startsWith("\xff\xfe") || startsWith("\xfe\xff"))
        fail(u"the file is UTF-16, not UTF-8"_s, 1);
    readProlog();
    readContent();
    readEpilog();
}

void XMLReader::readProlog()
{
    for (;;) {
        skipBlanks();
        if (atEnd())
            fail(u"no document element"_s, line());
        if (startsWith("<?"))
            skipInstruction();
        else if (startsWith("<!--"))
            m_prolog.push_back(readComment());
        else if (startsWith("<!DOCTYPE"))
            readDocumentType();
        else if (startsWith("<!") || startsWith("</") || *m_at != '<')
            fail(u"text in front of the document element"_s, line());
        else
            return;
    }
}

void XMLReader::readContent()
{
    readElement();
    while (m_parent != nullptr) {
        if (atEnd())
            fail(u"<%1> isn't closed"_s.arg(QString::fromUtf8(m_parent->tag())), m_parent->line());
        if (*m_at != '<')
            readText();
        else if (startsWith("</"))
            readEndTag();
        else if (startsWith("<!--"))
            appendNode(readComment(), 0);
        else if (startsWith("<![CDATA["))
            readSection("<![CDATA[");
        else if (startsWith("<!CDATA["))
            readSection("<!CDATA[");
        else if (startsWith("<?"))
            skipInstruction();
        else
            readElement();
    }
}

void XMLReader::readEpilog()
{
    for (;;) {
        skipBlanks();
        if (atEnd())
            return;
        if (startsWith("<?"))
            skipInstruction();
        else if (startsWith("<!--"))
            m_epilog.push_back(readComment());
        else
            fail(u"text behind the document element"_s, line());
    }
}

/// The name is kept; an identifier and declarations behind it are passed over.
void XMLReader::readDocumentType()
{
    const int start = line();
    m_at += std::strlen("<!DOCTYPE");
    skipBlanks();
    m_documentType = QString::fromUtf8(name());
    bool declarations = false;
    while (!atEnd() && (declarations || *m_at != '>')) {
        if (declarations && startsWith("<!--")) {
            readComment();
            continue;
        }
        const char c = *m_at++;
        if (c == '"' || c == '\'')
            upTo(QByteArrayView(&c, 1), "quoted text");
        else if (c == '[' || c == ']')
            declarations = c == '[';
    }
    if (atEnd())
        fail(u"unterminated document type"_s, start);
    ++m_at;
}

void XMLReader::readElement()
{
    const int start = line();
    ++m_at;
    const QByteArrayView tag = name();
    if (tag.isEmpty())
        fail(u"a tag's name is missing behind <"_s, start);
    XMLElement* element = m_document.createElement(shared(tag));
    if (m_parent == nullptr)
        m_documentElement = element;
    appendNode(element, start);

    skipBlanks();
    while (!atEnd() && *m_at != '>' && *m_at != '/') {
        readAttribute(*element);
        skipBlanks();
    }
    checkAttributes(*element, start);
    const bool empty = startsWith("/>");
    if (!empty && !startsWith(">"))
        fail(u"unterminated tag <%1"_s.arg(QString::fromUtf8(tag)), start);
    m_at += empty ? 2 : 1;
    if (!empty)
        m_parent = element;
}

void XMLReader::readAttribute(XMLElement& element)
{
    const QByteArrayView attribute = name();
    if (attribute.isEmpty())
        fail(u"an attribute's name is missing in <%1"_s.arg(QString::fromUtf8(element.tag())),
             line());
    skipBlanks();
    if (startsWith("=")) {
        ++m_at;
        skipBlanks();
        if (startsWith("\"") || startsWith("'")) {
            const QByteArrayView quote(m_at++, 1);
            const QByteArrayView raw = upTo(quote, "attribute value");
            element.m_attributes.push_back({shared(attribute), resolve(raw)});
            return;
        }
    }
    fail(u"the attribute %1 has no value in quotes"_s.arg(QString::fromUtf8(attribute)), line());
}

void XMLReader::checkAttributes(const XMLElement& element, int line)
{
    const auto& attributes = element.m_attributes;
    const auto refuse = [line](const QByteArray& name) {
        fail(u"the attribute %1 stands twice"_s.arg(QString::fromUtf8(name)), line);
    };
    if (attributes.size() < ManyAttributes) {
        for (std::size_t i = 1; i < attributes.size(); ++i) {
            for (std::size_t j = 0; j < i; ++j) {
                if (attributes[i].name == attributes[j].name)
                    refuse(attributes[i].name);
            }
        }
        return;
    }
    QSet<QByteArray> names;
    for (const XMLAttribute& attribute : attributes) {
        if (names.contains(attribute.name))
            refuse(attribute.name);
        names.insert(attribute.name);
    }
}

void XMLReader::readEndTag()
{
    const int start = line();
    m_at += 2;
    if (name() != m_parent->tag())
        fail(u"tagName mismatch"_s, start);
    skipBlanks();
    if (!startsWith(">"))
        fail(u"unterminated tag </%1"_s.arg(QString::fromUtf8(m_parent->tag())), start);
    ++m_at;
    m_parent = m_parent->parent();
}

void XMLReader::readText()
{
    const int start = line();
    const char* begin = m_at;
    m_at = std::find(m_at, m_end, '<');
    const QByteArrayView raw(begin, m_at - begin);
    if (!std::ranges::all_of(raw, isBlank))
        appendNode(m_document.createText(XMLNode::Kind::Text, resolve(raw)), start);
}

XMLNode* XMLReader::readComment()
{
    const int start = line();
    m_at += std::strlen("<!--");
    XMLNode* node =
        m_document.createText(XMLNode::Kind::Comment, upTo("-->", "comment").toByteArray());
    node->m_line = start;
    return node;
}

void XMLReader::readSection(QByteArrayView start)
{
    const int first = line();
    m_at += start.size();
    appendNode(m_document.createText(XMLNode::Kind::Section, upTo("]]>", "section").toByteArray()),
               first);
}

void XMLReader::skipInstruction() { upTo("?>", "processing instruction"); }

/// The text with its references resolved. `raw` lies in front of the current position.
QByteArray XMLReader::resolve(QByteArrayView raw)
{
    // Without this bound, lone "&" in a long text would cost its square.
    constexpr qsizetype LongestReference = 32;
    QByteArray result;
    qsizetype at = 0;
    for (qsizetype amp = raw.indexOf('&'); amp >= 0; amp = raw.indexOf('&', at)) {
        result.append(raw.sliced(at, amp - at));
        const QByteArrayView rest = raw.sliced(amp + 1);
        const qsizetype end = rest.first(std::min(LongestReference, rest.size())).indexOf(';');
        const QString problem =
            end < 0 ? u"& without a ; behind it"_s : appendReference(result, rest.first(end));
        if (!problem.isEmpty()) {
            m_at = raw.data() + amp;
            fail(problem, line());
        }
        at = amp + 1 + end + 1;
    }
    result.append(raw.sliced(at));
    return result;
}

/// What is wrong with the reference, or an empty text.
QString XMLReader::appendReference(QByteArray& out, QByteArrayView name)
{
    const auto entity = std::ranges::find(Entities, name, &Entity::name);
    if (entity != std::end(Entities)) {
        out.append(entity->byte);
        return {};
    }
    if (!name.startsWith('#'))
        return u"unknown entity &%1;"_s.arg(QString::fromLatin1(name));
    const bool hex = name.sliced(1).startsWith('x');
    const QByteArrayView digits = name.sliced(hex ? 2 : 1);
    const auto isDigit = [](unsigned char c) { return std::isxdigit(c) != 0; };
    bool valid = !digits.isEmpty() && std::ranges::all_of(digits, isDigit);
    const uint number = valid ? digits.toByteArray().toUInt(&valid, hex ? 16 : 10) : 0;
    if (!valid || number > QChar::LastValidCodePoint || QChar::isSurrogate(number))
        return u"&%1; is no character"_s.arg(QString::fromLatin1(name));
    if (number <= 255) {
        out.append(static_cast<char>(number));
    } else {
        const char32_t character = number;
        out.append(QString::fromUcs4(&character, 1).toUtf8());
    }
    return {};
}

bool XMLReader::startsWith(QByteArrayView text) const
{
    return m_end - m_at >= text.size()
        && std::memcmp(m_at, text.data(), std::size_t(text.size())) == 0;
}

void XMLReader::skipBlanks()
{
    while (!atEnd() && isBlank(*m_at))
        ++m_at;
}

QByteArrayView XMLReader::name()
{
    const char* begin = m_at;
    while (!atEnd() && NameBytes[static_cast<unsigned char>(*m_at)])
        ++m_at;
    return {begin, m_at - begin};
}

QByteArray XMLReader::shared(QByteArrayView name)
{
    QByteArray& copy = m_names[name];
    if (copy.isNull())
        copy = name.toByteArray();
    return copy;
}

QByteArrayView XMLReader::upTo(QByteArrayView end, const char* what)
{
    const int start = line();
    const QByteArrayView rest(m_at, m_end - m_at);
    const qsizetype length = rest.indexOf(end);
    if (length < 0)
        fail(u"unterminated %1"_s.arg(QLatin1StringView(what)), start);
    m_at += length + end.size();
    return rest.first(length);
}

void XMLReader::appendNode(XMLNode* node, int line)
{
    if (line != 0)
        node->m_line = line;
    if (m_parent != nullptr)
        m_parent->appendChild(node);
}

int XMLReader::line()
{
    m_line += int(std::count(m_counted, m_at, '\n'));
    m_counted = m_at;
    return m_line;
}
