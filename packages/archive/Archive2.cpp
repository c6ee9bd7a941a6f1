#include "packages/archive/Archive2.h"

#include "base/Endian.h"

#include <sys/stat.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <limits>
#include <memory>

namespace {

// The header of a member.
constexpr unsigned OffsetAt = 1024;
constexpr unsigned LengthAt = 1028;
constexpr unsigned ReadOnlyAt = 1032;
constexpr unsigned TimeAt = 1036;

constexpr std::size_t CopyBlock = 1024;

using MemberHeader = std::array<unsigned char, Archive2::MemberHeaderLength>;

struct FileCloser {
    void operator()(std::FILE* file) const { std::fclose(file); }
};
using File = std::unique_ptr<std::FILE, FileCloser>;

int readInt(const unsigned char* bytes, unsigned offset)
{
    return Endian::unpackINT32(bytes, offset, Endian::Little);
}

void writeInt(unsigned char* bytes, unsigned offset, int value)
{
    Endian::packINT32(bytes, offset, value, Endian::Little);
}

/// The length of an open file, -1 if it has none; its position moves to the end.
long fileLength(std::FILE* file)
{
    return std::fseek(file, 0, SEEK_END) == 0 ? std::ftell(file) : -1;
}

MemberHeader encode(const ArchiveChunk2& chunk, int offset)
{
    MemberHeader header{};
    std::memcpy(header.data(), chunk.name.data(), chunk.name.size());
    writeInt(header.data(), OffsetAt, offset);
    writeInt(header.data(), LengthAt, chunk.length);
    header[ReadOnlyAt] = chunk.readOnly ? 1 : 0;
    writeInt(header.data(), TimeAt, chunk.modificationTime);
    return header;
}

} // namespace

int Archive2::open(std::FILE* file, const char* name)
{
    close();
    m_chunks.clear();
    m_fileName = name;
    m_file = file;
    if (file == nullptr)
        return 0;
    const long length = fileLength(file);
    std::rewind(file);
    std::array<unsigned char, FileHeaderLength> header;
    if (std::fread(header.data(), header.size(), 1, file) != 1)
        return 1;
    const int count = readInt(header.data(), 4);
    if (Endian::unpackUINT32(header.data(), 0, Endian::Little) != Magic || count < 0)
        return 1;
    // A directory that is longer than the file isn't worth reading up to the point where it breaks.
    if (count > (length - FileHeaderLength) / MemberHeaderLength)
        return 2;
    for (int i = 0; i < count; ++i) {
        MemberHeader member;
        if (std::fread(member.data(), member.size(), 1, file) != 1)
            return 2;
        const auto* text = reinterpret_cast<const char*>(member.data());
        const std::string memberName(text, strnlen(text, NameLength));
        addMember(name, memberName.c_str(), readInt(member.data(), OffsetAt),
                  readInt(member.data(), LengthAt), member[ReadOnlyAt] != 0,
                  readInt(member.data(), TimeAt));
    }
    return 0;
}

void Archive2::addMember(const char* sourceFile, const char* memberName, int offset, int length,
                         bool readOnly, int modificationTime)
{
    m_chunks.push_back({std::string(memberName, strnlen(memberName, NameLength)), offset, length,
                        readOnly, modificationTime, sourceFile});
}

ArchiveChunk2* Archive2::findMember(const char* name)
{
    const auto found = std::find_if(m_chunks.begin(), m_chunks.end(),
                                    [name](const ArchiveChunk2& c) { return c.name == name; });
    return found == m_chunks.end() ? nullptr : &*found;
}

bool Archive2::readMember(const ArchiveChunk2& chunk, std::vector<unsigned char>& bytes) const
{
    bytes.clear();
    if (m_file == nullptr || chunk.offset < 0 || chunk.length < 0)
        return false;
    if (fileLength(m_file) < long{chunk.offset} + chunk.length)
        return false;
    bytes.resize(static_cast<std::size_t>(chunk.length));
    return std::fseek(m_file, chunk.offset, SEEK_SET) == 0
        && std::fread(bytes.data(), 1, bytes.size(), m_file) == bytes.size();
}

int Archive2::write(const char* name)
{
    m_errorText.clear();
    File out(std::fopen(name, "wb"));
    if (!out || !writeDirectory(out.get())) {
        failWriting(name);
        return 3;
    }
    for (const ArchiveChunk2& chunk : m_chunks)
        if (!copyMember(chunk, out.get()))
            return 3;
    if (std::fclose(out.release()) != 0) {
        failWriting(name);
        return 3;
    }
    return 0;
}

bool Archive2::writeDirectory(std::FILE* out) const
{
    std::int64_t offset = FileHeaderLength + std::int64_t(m_chunks.size()) * MemberHeaderLength;
    std::array<unsigned char, FileHeaderLength> header;
    Endian::packUINT32(header.data(), 0, Magic, Endian::Little);
    writeInt(header.data(), 4, static_cast<int>(m_chunks.size()));
    if (std::fwrite(header.data(), header.size(), 1, out) != 1)
        return false;
    for (const ArchiveChunk2& chunk : m_chunks) {
        if (offset > std::numeric_limits<int>::max())
            return false;
        const MemberHeader member = encode(chunk, static_cast<int>(offset));
        if (std::fwrite(member.data(), member.size(), 1, out) != 1)
            return false;
        offset += chunk.length;
    }
    return true;
}

bool Archive2::copyMember(const ArchiveChunk2& chunk, std::FILE* out)
{
    const File in(std::fopen(chunk.sourceFile.c_str(), "rb"));
    if (!in || chunk.length < 0 || std::fseek(in.get(), chunk.offset, SEEK_SET) != 0)
        return failReading(chunk.sourceFile);
    std::array<unsigned char, CopyBlock> block;
    for (auto left = static_cast<std::size_t>(chunk.length); left > 0;) {
        const std::size_t size = std::min(left, block.size());
        if (std::fread(block.data(), 1, size, in.get()) != size)
            return failReading(chunk.sourceFile);
        if (std::fwrite(block.data(), 1, size, out) != size)
            return failWriting(chunk.sourceFile);
        left -= size;
    }
    return true;
}

bool Archive2::failReading(const std::string& name)
{
    m_errorText = "FATAL: read error on " + name + ".\n";
    return false;
}

bool Archive2::failWriting(const std::string& name)
{
    m_errorText = "FATAL: write error on " + name + ".\n";
    return false;
}

void Archive2::close()
{
    if (m_file != nullptr)
        std::fclose(m_file);
    m_file = nullptr;
}

void Archive2::remove()
{
    close();
    std::remove(m_fileName.c_str());
    m_fileName.clear();
}

bool addFileToPackage(const char* path, const char* memberName, Archive2& archive)
{
    const File file(std::fopen(path, "rb"));
    struct stat status = {};
    if (!file || fstat(fileno(file.get()), &status) != 0 || !S_ISREG(status.st_mode))
        return false;
    const long length = fileLength(file.get());
    if (length < 0 || length > std::numeric_limits<int>::max())
        return false;
    archive.addMember(path, memberName, 0, static_cast<int>(length),
                      (status.st_mode & S_IWUSR) == 0, static_cast<int>(status.st_mtime));
    return true;
}
