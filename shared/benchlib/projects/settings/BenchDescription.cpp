#include "projects/settings/BenchDescription.h"

using namespace Qt::Literals::StringLiterals;

namespace {

const XMLElement* firstOf(const XMLElement* root, const char* tag)
{
    if (!root || root->hasTag(tag))
        return root;
    for (const XMLElement& child : root->children())
        if (child.hasTag(tag))
            return &child;
    return nullptr;
}

QString textOf(const XMLElement& element)
{
    QByteArray text;
    for (const XMLNode* node = element.firstChild(); node; node = node->nextSibling())
        if (node->kind() == XMLNode::Kind::Text || node->kind() == XMLNode::Kind::Section)
            text += node->text();
    return QString::fromUtf8(text);
}

} // namespace

bool BenchDescription::load(const QString& path, QString* errorText, int* errorLine,
                            int* errorColumn)
{
    auto texts = std::make_unique<XMLPP2>();
    if (!texts->load(path, {}, false)) {
        if (errorText)
            *errorText = texts->errorText();
        if (errorLine)
            *errorLine = texts->errorLine();
        if (errorColumn)
            *errorColumn = 0;
        return false;
    }
    m_path = path;
    m_texts = std::move(texts);
    m_source.reset();
    m_items.clear();
    addScheme("messagescheme");
    addScheme("keyscheme");
    return true;
}

/// Takes in the first scheme of that kind.
void BenchDescription::addScheme(const char* tag)
{
    const XMLElement* scheme = firstOf(m_texts->documentElement(), tag);
    if (!scheme)
        return;
    for (const XMLElement& item : scheme->children())
        if (item.hasTag("item"))
            m_items.insert(item.attribute("name"), &item);
}

QString BenchDescription::message(const QString& key) const
{
    const qsizetype dot = key.lastIndexOf(u'.');
    if (dot < 0)
        return {};
    const QByteArray tag = key.mid(dot + 1).toUtf8();
    const auto [first, last] = m_items.equal_range(key.left(dot));
    for (auto item = first; item != last; ++item) {
        const XMLElement* found = nullptr;
        for (const XMLElement& text : (*item)->children())
            if (text.tag() == tag)
                found = &text;
        if (found)
            return textOf(*found);
    }
    return {};
}

const QDomDocument& BenchDescription::document()
{
    if (!m_source) {
        m_source = std::make_unique<XmlPP>();
        m_source->load(m_path, {}, false);
    }
    return m_source->document();
}
