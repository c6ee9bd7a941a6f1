#pragma once

#include <cstddef>
#include <string>
#include <string_view>

/// An interned string: one shared, immortal record per distinct text, so that two names are equal
/// exactly when their pointers are. The text may hold any byte and is followed by a zero byte.
///
/// Records are laid out in the order of their making, so that containers ordered by pointer have
/// the same order in every run over the same input.
class HString {
public:
    /// Low nibble: the case. High nibble: the path separator.
    enum Modifier {
        UpperCase = 0,
        LowerCase = 1,
        Unchanged = 2,
        BackslashToSlash = 0x10,
        SlashToBackslash = 0x20,
    };

    static HString* intern(const char* text, Modifier modifier = Unchanged);
    static HString* intern(const char* text, int length, Modifier modifier = Unchanged);
    static HString* intern(const std::string& text, Modifier modifier = Unchanged);
    static HString* intern(std::string_view text);
    /// The decimal form of a number.
    static HString* intern(long number);

    const char* text() const { return m_text; }
    std::size_t length() const { return m_length; }
    std::string_view view() const { return {m_text, m_length}; }
    std::string str() const { return {m_text, m_length}; }

    HString(const HString&) = delete;
    HString& operator=(const HString&) = delete;

private:
    friend class HStringTable;
    HString(HString* next, const char* text, std::size_t length, std::size_t hash)
        : m_next(next),
          m_text(text),
          m_length(length),
          m_hash(hash)
    {
    }

    HString* m_next;
    const char* m_text;
    std::size_t m_length;
    std::size_t m_hash;
};
