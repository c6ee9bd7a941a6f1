#include "objfile/loadfiles/IntelHexLoadFile.h"

#include "base/HException.h"

namespace {

constexpr int LineBuffer = 530;

enum RecordType {
    Data = 0,
    EndOfFile = 1,
    ExtendedSegmentAddress = 2,
    StartSegmentAddress = 3,
    ExtendedLinearAddress = 4,
    StartLinearAddress = 5,
};

unsigned int number(const char*& cursor, int bytes, unsigned char& checksum)
{
    unsigned int value = 0;
    for (int i = 0; i < bytes; ++i)
        value = value << 8 | getAsciiHexByte(cursor, &checksum);
    return value;
}

} // namespace

IntelHexLoadFile::IntelHexLoadFile(const char* path) { read(path, LineBuffer); }

bool IntelHexLoadFile::readLine(const char* line)
{
    if (line[0] != ':')
        throw HException("missing record mark in hex file");
    const char* cursor = line + 1;
    unsigned char checksum = 0;
    const unsigned int count = number(cursor, 1, checksum);
    const unsigned int address = number(cursor, 2, checksum);
    const unsigned int type = number(cursor, 1, checksum);
    switch (type) {
    case Data:
        readBytes(cursor, (m_extendedLinear << 16) + (m_extendedSegment << 4) + address, count,
                  &checksum);
        break;
    case ExtendedSegmentAddress: m_extendedSegment = number(cursor, 2, checksum); break;
    case ExtendedLinearAddress: m_extendedLinear = number(cursor, 2, checksum); break;
    case StartSegmentAddress:
    case StartLinearAddress: setEntryPoint(number(cursor, 4, checksum)); break;
    default: break;
    }
    const unsigned char expected = getAsciiHexByte(cursor, nullptr);
    if (expected != static_cast<unsigned char>(-checksum))
        throw HException("invalid checksum");
    return type != EndOfFile;
}

void IntelHexLoadFile::reachedEndOfFile() { throw HException("invalid end of file in hex file"); }
