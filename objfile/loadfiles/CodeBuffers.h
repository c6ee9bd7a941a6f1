#pragma once

#include "objfile/loadfiles/CodeBuffer.h"

#include <optional>
#include <vector>

/// Intel Hex, with an extended linear address record where the upper 16 bits change and a start
/// linear address record for an entry point.
class IntelHexBuffer : public CodeBuffer {
public:
    explicit IntelHexBuffer(const std::string& fileName) : CodeBuffer(fileName) { }

protected:
    void writeRecord(unsigned int address, Bytes bytes) override;
    void writeEnd(unsigned int entryPoint) override;

private:
    void write(unsigned int address, unsigned char type, Bytes bytes);

    unsigned int m_upper = 0;
};

/// Motorola S-records with the address width that each address needs.
class SRecordBuffer : public CodeBuffer {
public:
    explicit SRecordBuffer(const std::string& fileName);

protected:
    void writeRecord(unsigned int address, Bytes bytes) override;
    void writeEnd(unsigned int entryPoint) override;

private:
    void write(char type, int addressBytes, unsigned int address, Bytes bytes);
};

/// Extended Tektronix Hex (Tektronix, "8560 series" formats): "%", two digits of the length of what
/// follows, the type, two digits of checksum, the address behind a digit with its number of digits.
class TekHexBuffer : public CodeBuffer {
public:
    explicit TekHexBuffer(const std::string& fileName) : CodeBuffer(fileName) { }

protected:
    void writeRecord(unsigned int address, Bytes bytes) override;
    void writeEnd(unsigned int entryPoint) override;

private:
    void write(char type, unsigned int address, Bytes bytes);
};

/// Eight digits of address, then each byte behind a blank.
class HexBuffer : public CodeBuffer {
public:
    explicit HexBuffer(const std::string& fileName) : CodeBuffer(fileName) { }

protected:
    void writeRecord(unsigned int address, Bytes bytes) override;
};

/// TI-TXT; addresses have 20 bits.
class TIHexBuffer : public CodeBuffer {
public:
    explicit TIHexBuffer(const std::string& fileName) : CodeBuffer(fileName) { }

protected:
    void writeRecord(unsigned int address, Bytes bytes) override;
    void writeEnd(unsigned int entryPoint) override;

private:
    std::optional<unsigned int> m_next;
};

/// The bytes themselves, from the first address on, with zeros in the gaps. Throws HException for
/// an address below the first one, and for one that is LoadFileInterface::MaximumContiguousSpan
/// behind the last.
class BinaryBuffer : public CodeBuffer {
public:
    explicit BinaryBuffer(const std::string& fileName) : CodeBuffer(fileName) { }

protected:
    void writeRecord(unsigned int address, Bytes bytes) override;

private:
    std::optional<unsigned int> m_first;
    std::uint64_t m_length = 0;
};
