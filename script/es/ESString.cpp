#include "script/es/ESString.h"

#include "script/es/ESMemory.h"

QHash<QString, ESString*> ESStringPool::s_byText;
std::deque<ESString> ESStringPool::s_strings;
std::vector<ESString*> ESStringPool::m_stringVector;
ESString* ESStringPool::g_numstr[SmallNumbers];

namespace {

int elementOf(const QString& text)
{
    constexpr int LongestElement = 10; // digits of 0x7ffffffe
    if (text.isEmpty() || text.size() > LongestElement || (text[0] == u'0' && text.size() > 1))
        return -1;
    qint64 value = 0;
    for (const QChar c : text) {
        if (c < u'0' || c > u'9')
            return -1;
        value = value * 10 + (c.unicode() - u'0');
    }
    return value <= 0x7ffffffe ? static_cast<int>(value) : -1;
}

} // namespace

ESString* ESStringPool::intern(const QString& text)
{
    const auto known = s_byText.constFind(text);
    if (known != s_byText.constEnd())
        return *known;
    // The pool never shrinks.
    static ESMemory memory;
    constexpr qsizetype PerString = 2 * sizeof(ESString);
    memory.charge(PerString + text.size() * qsizetype(sizeof(QChar)));
    s_strings.push_back({-1, text, elementOf(text)});
    ESString* made = &s_strings.back();
    s_byText.insert(made->text, made);
    return made;
}

int ESStringPool::indexOf(ESString* string)
{
    if (string->index < 0) {
        string->index = size();
        m_stringVector.push_back(string);
    }
    return string->index;
}

ESString* ESStringPool::number(int value)
{
    if (value < 0)
        return intern(QString::number(value));
    return number(static_cast<unsigned>(value));
}

ESString* ESStringPool::number(unsigned value)
{
    if (value >= SmallNumbers)
        return intern(QString::number(value));
    ESString*& known = g_numstr[value];
    if (!known)
        known = intern(QString::number(value));
    return known;
}

ESString* ESStringPool::character(QChar c)
{
    static ESString* latin[256] = {};
    if (c.unicode() >= std::size(latin))
        return intern(QString(c));
    ESString*& known = latin[c.unicode()];
    if (!known)
        known = intern(QString(c));
    return known;
}
