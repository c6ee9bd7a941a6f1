#include "projects/settings/BenchDescription.h"

using namespace Qt::Literals::StringLiterals;

bool BenchDescription::load(const QString& path, QString* errorText, int* errorLine,
                            int* errorColumn)
{
    XmlPP source;
    if (!source.load(path, {}, false, errorText, errorLine, errorColumn))
        return false;
    m_source = source;
    m_messages.clear();
    addScheme("messagescheme"_L1);
    addScheme("keyscheme"_L1);
    return true;
}

/// Takes in the first scheme of that kind.
void BenchDescription::addScheme(QLatin1StringView tag)
{
    const QDomElement scheme = document().elementsByTagName(tag).at(0).toElement();
    for (QDomElement item = scheme.firstChildElement(u"item"_s); !item.isNull();
         item = item.nextSiblingElement(u"item"_s)) {
        const QString name = item.attribute(u"name"_s);
        for (QDomElement text = item.firstChildElement(); !text.isNull();
             text = text.nextSiblingElement())
            m_messages.insert(name + u'.' + text.tagName(), text.text());
    }
}
