#pragma once

#include <QHash>
#include <QString>

#include <deque>

/// An interned text: two of the same text are the same object. Numbered from 0 in the order of
/// their making, which is how byte code names them.
struct ESString {
    int index = 0;
    QString text;
    /// The number that the text is the canonical decimal form of, from 0 to 0x7ffffffe; -1 for
    /// none. Element names of arrays are told by it.
    int element = -1;
};

/// The interned strings of the process. They live until the pool is cleared.
class ESStringPool {
public:
    static ESString* intern(const QString& text);
    static ESString* get(int index) { return &s_strings[static_cast<std::size_t>(index)]; }
    /// The decimal text of a number; those below 100 are at hand.
    static ESString* number(int value);
    static ESString* number(unsigned value);
    /// Frees all strings. No context may be alive.
    static void clear();
    static int size() { return static_cast<int>(s_strings.size()); }

private:
    static constexpr int SmallNumbers = 100;

    static QHash<QString, ESString*> s_byText;
    static std::deque<ESString> s_strings;
    static ESString* s_numbers[SmallNumbers];
};
