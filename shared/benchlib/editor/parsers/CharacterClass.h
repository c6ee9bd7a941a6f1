#pragma once

/// What parsers ask of characters, which are told apart by their low byte as those of the "C"
/// locale.
namespace CharacterClass {

inline char low(char16_t c) { return static_cast<char>(c & 0xff); }
inline bool isDigit(char16_t c) { return low(c) >= '0' && low(c) <= '9'; }
inline bool isAlpha(char16_t c)
{
    const char letter = static_cast<char>(low(c) | 0x20);
    return letter >= 'a' && letter <= 'z';
}
inline bool isAlnum(char16_t c) { return isAlpha(c) || isDigit(c); }
/// Of names in most languages.
inline bool isNamePart(char16_t c) { return isAlnum(c) || low(c) == '_'; }
inline bool isHexDigit(char16_t c)
{
    const char letter = static_cast<char>(low(c) | 0x20);
    return isDigit(c) || (letter >= 'a' && letter <= 'f');
}
inline bool isSpace(char16_t c) { return low(c) == ' ' || (low(c) >= '\t' && low(c) <= '\r'); }
inline bool isPunct(char16_t c) { return low(c) > ' ' && low(c) < 0x7f && !isAlnum(c); }

} // namespace CharacterClass
