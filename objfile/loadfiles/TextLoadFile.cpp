#include "objfile/loadfiles/TextLoadFile.h"

#include "base/HException.h"

namespace {

int hexDigit(char c)
{
    if (c >= '0' && c <= '9')
        return c - '0';
    if (c >= 'A' && c <= 'F')
        return c - 'A' + 10;
    if (c >= 'a' && c <= 'f')
        return c - 'a' + 10;
    throw HException("invalid ASCII encoded byte");
}

} // namespace

unsigned char getAsciiHexByte(const char*& cursor, unsigned char* checksum)
{
    // One after the other: the first digit may be the text's terminator.
    const int high = hexDigit(cursor[0]);
    const int low = hexDigit(cursor[1]);
    const auto byte = static_cast<unsigned char>(high << 4 | low);
    cursor += 2;
    if (checksum != nullptr)
        *checksum = static_cast<unsigned char>(*checksum + byte);
    return byte;
}

void TextLoadFile::read(const char* path, int bufferSize)
{
    const std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(std::fopen(path, "rt"), std::fclose);
    if (!file)
        throw HException(std::string("cannot open ") + path);
    std::vector<char> buffer(static_cast<std::size_t>(bufferSize));
    int line = 0;
    try {
        readLines(file.get(), buffer.data(), bufferSize, line);
    } catch (const HException& error) {
        if (std::ferror(file.get()) != 0)
            throw HException(std::string("cannot read ") + path);
        throw HException(error.message() + " : line " + std::to_string(line));
    }
    if (std::ferror(file.get()) != 0)
        throw HException(std::string("cannot read ") + path);
}

void TextLoadFile::readLines(std::FILE* file, char* buffer, int bufferSize, int& line)
{
    for (;;) {
        ++line;
        if (std::fgets(buffer, bufferSize, file) == nullptr) {
            reachedEndOfFile();
            return;
        }
        if (!readLine(buffer))
            return;
    }
}

void TextLoadFile::readBytes(const char*& cursor, unsigned int address, unsigned int count,
                             unsigned char* checksum)
{
    unsigned char* bytes = append(address, count);
    for (unsigned int i = 0; i < count; ++i)
        bytes[i] = getAsciiHexByte(cursor, checksum);
}

unsigned char* TextLoadFile::append(unsigned int address, unsigned int count)
{
    if (count == 0)
        return nullptr;
    const bool goesOn = m_current != nullptr
        && std::uint64_t{m_current->address()} + m_current->length() == address;
    if (!goesOn) {
        auto section = std::make_unique<ExpandingLoadFileSection>("", address);
        m_current = section.get();
        m_sections.add(std::move(section));
    }
    return m_current->expand(count);
}
