#include "objfile/loadfiles/SRecordLoadFile.h"

#include "base/HException.h"

namespace {

constexpr int LineBuffer = 530;

enum class Role { Other, Header, Data, Count, Start };

struct RecordKind {
    Role role;
    int addressBytes;
};

/// By the digit behind the "S".
constexpr RecordKind Kinds[] = {
    {Role::Header, 0}, {Role::Data, 2},  {Role::Data, 3},  {Role::Data, 4},  {Role::Other, 0},
    {Role::Count, 2},  {Role::Other, 0}, {Role::Start, 4}, {Role::Start, 3}, {Role::Start, 2},
};

} // namespace

SRecordLoadFile::SRecordLoadFile(const char* path) { read(path, LineBuffer); }

bool SRecordLoadFile::readLine(const char* line)
{
    if (line[0] != 'S')
        throw HException("no leading 'S' character");
    const char digit = line[1];
    const RecordKind kind =
        digit >= '0' && digit <= '9' ? Kinds[digit - '0'] : RecordKind{Role::Other, 0};
    const char* cursor = digit != '\0' ? line + 2 : line + 1;
    unsigned char checksum = 0;
    const int count = getAsciiHexByte(cursor, &checksum);
    unsigned int address = 0;
    for (int i = 0; i < kind.addressBytes; ++i)
        address = address << 8 | getAsciiHexByte(cursor, &checksum);
    const int remaining = count - 1 - kind.addressBytes;
    if (remaining < 0 && kind.role != Role::Other)
        throw HException("invalid ASCII encoded byte");
    switch (kind.role) {
    case Role::Header:
        for (int i = 0; i < remaining; ++i)
            getAsciiHexByte(cursor, &checksum);
        break;
    case Role::Data:
        readBytes(cursor, address, static_cast<unsigned int>(remaining), &checksum);
        ++m_dataRecords;
        break;
    case Role::Count:
        if (address != m_dataRecords)
            throw HException("incorrect data record count");
        break;
    case Role::Start: setEntryPoint(address); break;
    case Role::Other: break;
    }
    const unsigned char expected = getAsciiHexByte(cursor, nullptr);
    if (expected != static_cast<unsigned char>(~checksum))
        throw HException("invalid checksum");
    return true;
}
