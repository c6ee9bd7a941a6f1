#pragma once

#include <array>
#include <cstdarg>
#include <cstdint>
#include <cstdio>
#include <memory>
#include <span>
#include <string>

/// Writes an image in a load-file format, in records of up to 16 bytes. Call setAddress wherever
/// the addresses break, addByte for each byte, and endRecord once at the end.
class CodeBuffer {
public:
    static constexpr std::size_t RecordLength = 16;

    /// The writer for "hex" (Intel Hex), "lst" (plain hex listing), "srec", "bin", "tek" or "txt"
    /// (TI-TXT); null for another format. Throws HException "cannot open PATH".
    static std::unique_ptr<CodeBuffer> make(const std::string& format, const std::string& fileName);

    virtual ~CodeBuffer() = default;
    CodeBuffer(const CodeBuffer&) = delete;
    CodeBuffer& operator=(const CodeBuffer&) = delete;

    virtual void setAddress(unsigned int address);
    virtual void addByte(unsigned int byte);
    /// Ends the file, with the address of its entry point, 0 for none, where the format has one.
    /// Throws HException "cannot write PATH" if anything failed to be written.
    virtual void endRecord(unsigned int entryPoint);

protected:
    using Bytes = std::span<const unsigned char>;

    explicit CodeBuffer(const std::string& fileName);

    /// Writes one record; called with 1 to 16 bytes that don't cross a boundary of 64 KB.
    virtual void writeRecord(unsigned int address, Bytes bytes) = 0;
    /// Writes what stands behind the last record.
    virtual void writeEnd(unsigned int entryPoint);

    void print(const char* format, ...) __attribute__((format(printf, 2, 3)));
    void printText(const std::string& text);
    std::FILE* file() const { return m_file.get(); }

private:
    void breakRecord();

    std::string m_fileName;
    std::unique_ptr<std::FILE, int (*)(std::FILE*)> m_file;
    unsigned int m_recordAddress = 0;
    std::size_t m_length = 0;
    std::array<unsigned char, RecordLength> m_record{};
};

/// The bytes in upper-case hexadecimal, with the separator in front of each but the first.
std::string hexText(std::span<const unsigned char> bytes, const char* separator = "");
