#include "script/es/ESString.h"

QHash<QString, ESString*> ESStringPool::s_byText;
std::deque<ESString> ESStringPool::s_strings;
ESString* ESStringPool::s_numbers[SmallNumbers];

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
    s_strings.push_back({static_cast<int>(s_strings.size()), text, elementOf(text)});
    ESString* made = &s_strings.back();
    s_byText.insert(made->text, made);
    return made;
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
    ESString*& known = s_numbers[value];
    if (!known)
        known = intern(QString::number(value));
    return known;
}

void ESStringPool::clear()
{
    s_byText.clear();
    s_strings.clear();
    std::fill(std::begin(s_numbers), std::end(s_numbers), nullptr);
}
