#pragma once

#include <cstdint>
#include <cstdio>
#include <string>
#include <vector>

/// One member of an archive: its header's fields, and the file that holds its bytes now.
struct ArchiveChunk2 {
    std::string name; ///< relative path with "/", at most 1024 bytes
    int offset = 0;   ///< of the first byte in sourceFile
    int length = 0;   ///< in bytes
    bool readOnly = false;
    int modificationTime = 0; ///< seconds since 1970, UTC
    std::string sourceFile;   ///< not written to disk
};

/// The container of packages, packaged solutions and native libraries: a directory of named members
/// followed by their bytes, uncompressed. All integers in the file are little-endian.
///
/// A chunk names the file that its bytes come from and where they are in it, so that an archive can
/// be written anew from members of another one, from itself under another name, and from new files.
class Archive2 {
public:
    static constexpr std::uint32_t Magic = 0x4152C3C8;
    static constexpr int FileHeaderLength = 8;
    static constexpr int MemberHeaderLength = 1040;
    static constexpr int NameLength = 1024;

    Archive2() = default;
    ~Archive2() { close(); }
    Archive2(const Archive2&) = delete;
    Archive2& operator=(const Archive2&) = delete;

    /// Reads the directory from the start of the file, which is taken over and stays open for
    /// reading members. Returns 0, also for a null file, which gives an empty archive; 1 when the
    /// header can't be read, the magic differs or the count is negative; 2 when a member header
    /// can't be read.
    int open(std::FILE* file, const char* name);

    /// Appends a member; its name is cut to 1024 bytes.
    void addMember(const char* sourceFile, const char* memberName, int offset, int length,
                   bool readOnly, int modificationTime);

    /// The first member of that name, or null.
    ArchiveChunk2* findMember(const char* name);

    const std::vector<ArchiveChunk2>& members() const { return m_chunks; }

    /// Reads a member's bytes from the open file; false if the file doesn't hold them all.
    bool readMember(const ArchiveChunk2& chunk, std::vector<unsigned char>& bytes) const;

    /// Writes the archive under the name, which may not be a source of its members. Returns 0, or 3
    /// with errorText set and a partly written file left.
    int write(const char* name);

    const std::string& errorText() const { return m_errorText; }

    /// The open file, null when closed.
    std::FILE* file() const { return m_file; }
    const std::string& fileName() const { return m_fileName; }

    void close();
    /// Closes, deletes the file from disk and forgets its name.
    void remove();

private:
    bool writeDirectory(std::FILE* out) const;
    bool copyMember(const ArchiveChunk2& chunk, std::FILE* out);
    bool failReading(const std::string& name);
    bool failWriting(const std::string& name);

    std::vector<ArchiveChunk2> m_chunks;
    std::string m_fileName;
    std::FILE* m_file = nullptr;
    std::string m_errorText;
};

/// Appends the file as a member, with its size, read-only state (no write permission for the owner)
/// and time. False, with nothing added, if it can't be opened or is too long for an archive.
bool addFileToPackage(const char* path, const char* memberName, Archive2& archive);
