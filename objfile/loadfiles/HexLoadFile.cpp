#include "objfile/loadfiles/HexLoadFile.h"

#include "base/HException.h"

#include <cstring>

namespace {

constexpr int LineBuffer = 64;
constexpr std::size_t ShortestLine = 9; // the address and the end of line

} // namespace

HexLoadFile::HexLoadFile(const char* path) { read(path, LineBuffer); }

bool HexLoadFile::readLine(const char* line)
{
    const std::size_t length = std::strlen(line);
    if (length < ShortestLine)
        throw HException("invalid address");
    unsigned int address = 0;
    for (int i = 0; i < 4; ++i)
        address = address << 8 | getAsciiHexByte(line, nullptr);
    const auto count = static_cast<unsigned int>((length - ShortestLine) / 3);
    unsigned char* bytes = append(address, count);
    for (unsigned int i = 0; i < count; ++i) {
        if (*line++ != ' ')
            throw HException("invalid seperator");
        bytes[i] = getAsciiHexByte(line, nullptr);
    }
    return true;
}
