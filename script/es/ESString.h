#pragma once

#include <QHash>
#include <QString>

#include <deque>
#include <vector>

/// An interned text: two of the same text are the same object. Byte code names those that programs
/// mention by an index.
struct ESString {
    int index = -1; ///< -1 for a text that no program has mentioned
    QString text;
    /// The number that the text is the canonical decimal form of, from 0 to 0x7ffffffe; -1 for
    /// none. Element names of arrays are told by it.
    int element = -1;
};

/// The interned strings of the process. They live as long as it.
class ESStringPool {
public:
    static ESString* intern(const QString& text);
    /// The index of a string, which gets one if it has none.
    static int indexOf(ESString* string);
    static ESString* get(int index) { return m_stringVector[static_cast<std::size_t>(index)]; }
    /// The decimal text of a number; those below 100 are at hand.
    static ESString* number(int value);
    static ESString* number(unsigned value);
    /// The text of one character.
    static ESString* character(QChar c);
    /// How many strings have an index.
    static int size() { return static_cast<int>(m_stringVector.size()); }

private:
    static constexpr int SmallNumbers = 100;

    static QHash<QString, ESString*> s_byText;
    static std::deque<ESString> s_strings;
    static std::vector<ESString*> m_stringVector;
    static ESString* g_numstr[SmallNumbers];
};
