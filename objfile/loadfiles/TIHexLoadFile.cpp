#include "objfile/loadfiles/TIHexLoadFile.h"

#include "base/HException.h"

#include <charconv>
#include <cstring>

namespace {

constexpr int LineBuffer = 64;

unsigned int parseAddress(const char* digits)
{
    const char* end = digits;
    while (static_cast<unsigned char>(*end) > ' ')
        ++end;
    unsigned int address = 0;
    const auto [stopped, error] = std::from_chars(digits, end, address, 16);
    if (error != std::errc() || stopped != end)
        throw HException("invalid address");
    return address;
}

} // namespace

TIHexLoadFile::TIHexLoadFile(const char* path) { read(path, LineBuffer); }

bool TIHexLoadFile::readLine(const char* line)
{
    if (line[0] == 'q')
        return false;
    if (line[0] == '@') {
        m_address = parseAddress(line + 1);
        return true;
    }
    const auto count = static_cast<unsigned int>(std::strlen(line) / 3);
    unsigned char* bytes = append(m_address, count);
    for (unsigned int i = 0; i < count; ++i) {
        bytes[i] = getAsciiHexByte(line, nullptr);
        ++line; // the separator, whatever it is
    }
    m_address += count;
    return true;
}

void TIHexLoadFile::reachedEndOfFile() { throw HException("unexpected end of file"); }
