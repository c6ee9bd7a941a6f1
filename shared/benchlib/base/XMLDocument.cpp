#include "base/XMLDocument.h"

#include "base/XMLReader.h"
#include "base/XMLWriter.h"

#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

#include <algorithm>
#include <cctype>
#include <cstring>

using namespace Qt::Literals::StringLiterals;

bool XMLDocument::load(const QString& path)
{
    QByteArray bytes;
    return readFile(path, bytes) && loadFromBytes(bytes);
}

bool XMLDocument::readFile(const QString& path, QByteArray& bytes)
{
    QFile file(path);
    if (QFileInfo(path).isFile() && file.open(QIODevice::ReadOnly)) {
        bytes = file.readAll();
        if (file.error() == QFileDevice::NoError)
            return true;
    }
    return fail(u"couldn't read %1"_s.arg(path), 0);
}

bool XMLDocument::loadFromBytes(const QByteArray& bytes)
{
    clear();
    m_errorText.clear();
    m_errorLine = 0;
    XMLReader reader(*this, bytes);
    try {
        reader.read();
    } catch (const XMLReader::Error& error) {
        return fail(error.text, error.line);
    }
    m_documentElement = reader.documentElement();
    m_documentType = reader.documentType();
    m_prolog = reader.prolog();
    m_epilog = reader.epilog();
    return true;
}

XMLElement* XMLDocument::readElement(const QByteArray& bytes, QString& errorText, int& errorLine)
{
    XMLReader reader(*this, bytes);
    try {
        reader.read();
        return reader.documentElement();
    } catch (const XMLReader::Error& error) {
        errorText = error.text;
        errorLine = error.line;
        return nullptr;
    }
}

bool XMLDocument::save(const QString& path, int indent)
{
    const QByteArray bytes = toBytes(indent);
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size() || !file.commit()) {
        m_errorText = u"couldn't write %1"_s.arg(path);
        m_errorLine = 0;
        return false;
    }
    return true;
}

QByteArray XMLDocument::toBytes(int indent) const
{
    XMLWriter writer(indent);
    if (!m_documentType.isEmpty())
        writer.writeDocumentType(m_documentType.toUtf8());
    for (const XMLNode* node : m_prolog)
        writer.write(*node);
    if (m_documentElement != nullptr)
        writer.write(*m_documentElement);
    for (const XMLNode* node : m_epilog)
        writer.write(*node);
    return writer.bytes();
}

XMLElement* XMLDocument::newElement(const QByteArray& tag) { return new XMLElement(tag); }

XMLElement* XMLDocument::createElement(const QByteArray& tag)
{
    const CurrentPool current(&m_pool);
    return newElement(tag);
}

XMLNode* XMLDocument::createText(XMLNode::Kind kind, const QByteArray& text)
{
    const CurrentPool current(&m_pool);
    return new XMLNode(kind, text);
}

XMLNode* XMLDocument::copyNode(const XMLNode& node)
{
    const XMLElement* element = node.toElement();
    XMLNode* copy =
        element == nullptr ? createText(node.kind(), node.text()) : createElement(element->tag());
    copy->m_line = node.m_line;
    if (element != nullptr)
        copy->toElement()->m_attributes = element->m_attributes;
    return copy;
}

XMLElement* XMLDocument::copyElement(const XMLElement& element)
{
    XMLNode* copy = copyNode(element);
    const XMLNode* node = &element;
    XMLElement* parent = copy->toElement();
    for (;;) {
        const XMLElement* inside = node->toElement();
        if (inside != nullptr && inside->firstChild() != nullptr) {
            node = inside->firstChild();
        } else {
            while (node != &element && node->nextSibling() == nullptr) {
                node = node->parent();
                parent = parent->parent();
            }
            if (node == &element)
                return copy->toElement();
            node = node->nextSibling();
        }
        XMLNode* next = copyNode(*node);
        parent->appendChild(next);
        if (node->toElement() != nullptr && node->toElement()->firstChild() != nullptr)
            parent = next->toElement();
    }
}

QString XMLDocument::xmlDocumentType(const QString& path)
{
    constexpr qint64 StartSize = 0x10000;
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    const QByteArray bytes = file.read(StartSize);
    QByteArrayView rest(bytes);
    if (rest.startsWith("\xef\xbb\xbf"))
        rest = rest.sliced(3);
    for (rest = rest.trimmed(); !rest.startsWith("<!DOCTYPE"); rest = rest.trimmed()) {
        const bool instruction = rest.startsWith("<?");
        const QByteArrayView end = instruction ? "?>" : "-->";
        const qsizetype length = instruction || rest.startsWith("<!--") ? rest.indexOf(end) : -1;
        if (length < 0)
            return {};
        rest = rest.sliced(length + end.size());
    }
    rest = rest.sliced(qsizetype(std::strlen("<!DOCTYPE"))).trimmed();
    const auto end = std::ranges::find_if(
        rest, [](unsigned char c) { return std::isalnum(c) == 0 && c != '_'; });
    return end == rest.begin() ? QString() : QString::fromLatin1(rest.first(end - rest.begin()));
}

void XMLDocument::clear()
{
    m_documentElement = nullptr;
    m_prolog.clear();
    m_epilog.clear();
    m_documentType.clear();
    m_pool.clear();
}

bool XMLDocument::fail(const QString& text, int line)
{
    clear();
    m_errorText = text;
    m_errorLine = line;
    return false;
}
