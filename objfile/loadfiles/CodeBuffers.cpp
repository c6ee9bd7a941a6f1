#include "objfile/loadfiles/CodeBuffers.h"

#include "base/HException.h"
#include "objfile/loadfiles/LoadFile.h"

#include <algorithm>

namespace {

template <typename Writer> std::unique_ptr<CodeBuffer> create(const std::string& fileName)
{
    return std::make_unique<Writer>(fileName);
}

struct Format {
    const char* id;
    std::unique_ptr<CodeBuffer> (*create)(const std::string& fileName);
};

constexpr Format Formats[] = {
    {"hex", create<IntelHexBuffer>}, {"lst", create<HexBuffer>},    {"srec", create<SRecordBuffer>},
    {"bin", create<BinaryBuffer>},   {"tek", create<TekHexBuffer>}, {"txt", create<TIHexBuffer>},
};

void appendNumber(std::vector<unsigned char>& bytes, unsigned int value, int size)
{
    for (int i = size - 1; i >= 0; --i)
        bytes.push_back(static_cast<unsigned char>(value >> 8 * i));
}

unsigned char sum(const std::vector<unsigned char>& bytes)
{
    unsigned int total = 0;
    for (const unsigned char byte : bytes)
        total += byte;
    return static_cast<unsigned char>(total);
}

/// The bytes that hold an address in an S-record: 2, 3 or 4.
int addressWidth(unsigned int address)
{
    if (address < 0x10000)
        return 2;
    return address < 0x1000000 ? 3 : 4;
}

} // namespace

std::unique_ptr<CodeBuffer> CodeBuffer::make(const std::string& format, const std::string& fileName)
{
    const auto* found = std::find_if(std::begin(Formats), std::end(Formats),
                                     [&](const Format& f) { return format == f.id; });
    return found == std::end(Formats) ? nullptr : found->create(fileName);
}

void IntelHexBuffer::writeRecord(unsigned int address, Bytes bytes)
{
    if (address >> 16 != m_upper) {
        m_upper = address >> 16;
        std::vector<unsigned char> upper;
        appendNumber(upper, m_upper, 2);
        write(0, 4, upper);
    }
    write(address & 0xFFFF, 0, bytes);
}

void IntelHexBuffer::writeEnd(unsigned int entryPoint)
{
    if (entryPoint != 0) {
        std::vector<unsigned char> start;
        appendNumber(start, entryPoint, 4);
        write(0, 5, start);
    }
    write(0, 1, {});
}

void IntelHexBuffer::write(unsigned int address, unsigned char type, Bytes bytes)
{
    std::vector<unsigned char> record{static_cast<unsigned char>(bytes.size())};
    appendNumber(record, address, 2);
    record.push_back(type);
    record.insert(record.end(), bytes.begin(), bytes.end());
    record.push_back(static_cast<unsigned char>(-sum(record)));
    printText(":" + hexText(record) + "\n");
}

SRecordBuffer::SRecordBuffer(const std::string& fileName) : CodeBuffer(fileName)
{
    write('0', 2, 0, {});
}

void SRecordBuffer::writeRecord(unsigned int address, Bytes bytes)
{
    const int width = addressWidth(address);
    write(static_cast<char>('0' + width - 1), width, address, bytes);
}

void SRecordBuffer::writeEnd(unsigned int entryPoint)
{
    const int width = addressWidth(entryPoint);
    write(static_cast<char>('9' + 2 - width), width, entryPoint, {});
}

void SRecordBuffer::write(char type, int addressBytes, unsigned int address, Bytes bytes)
{
    std::vector<unsigned char> record{
        static_cast<unsigned char>(static_cast<std::size_t>(addressBytes) + bytes.size() + 1)};
    appendNumber(record, address, addressBytes);
    record.insert(record.end(), bytes.begin(), bytes.end());
    record.push_back(static_cast<unsigned char>(~sum(record)));
    printText(std::string("S") + type + hexText(record) + "\n");
}

void TekHexBuffer::writeRecord(unsigned int address, Bytes bytes) { write('6', address, bytes); }

void TekHexBuffer::writeEnd(unsigned int entryPoint) { write('8', entryPoint, {}); }

void TekHexBuffer::write(char type, unsigned int address, Bytes bytes)
{
    std::vector<unsigned char> number;
    appendNumber(number, address, 4);
    const std::string body = "8" + hexText(number) + hexText(bytes);
    // Two digits of length, one of type, two of checksum stand in front of the body.
    const std::string length = hexText(std::array{static_cast<unsigned char>(body.size() + 5)});
    unsigned int total = 0;
    for (const char c : length + type + body)
        total += static_cast<unsigned int>(c <= '9' ? c - '0' : c - 'A' + 10);
    const std::string checksum = hexText(std::array{static_cast<unsigned char>(total)});
    printText("%" + length + type + checksum + body + "\n");
}

void HexBuffer::writeRecord(unsigned int address, Bytes bytes)
{
    print("%08X", address);
    printText(" " + hexText(bytes, " ") + "\n");
}

void TIHexBuffer::writeRecord(unsigned int address, Bytes bytes)
{
    if (m_next != address)
        print("@%05X\n", address & 0xFFFFF);
    m_next = static_cast<unsigned int>(address + bytes.size());
    printText(hexText(bytes, " ") + "\n");
}

void TIHexBuffer::writeEnd(unsigned int) { printText("q\n"); }

void BinaryBuffer::writeRecord(unsigned int address, Bytes bytes)
{
    if (!m_first)
        m_first = address;
    if (address < *m_first)
        throw HException("a binary file has to be written from its lowest address up");
    const std::uint64_t offset = address - *m_first;
    if (offset > m_length + LoadFileInterface::MaximumContiguousSpan)
        throw HException("addresses are too far apart for a binary file");
    std::fseek(file(), static_cast<long>(offset), SEEK_SET);
    std::fwrite(bytes.data(), 1, bytes.size(), file());
    m_length = std::max(m_length, offset + bytes.size());
}
