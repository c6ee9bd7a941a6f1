#pragma once

#include "base/Endian.h"
#include "objfile/loadfiles/AddressRanges.h"

#include <QString>

#include <cstdint>

/// One address space of a target. Addresses and lengths are bytes unless the name says otherwise.
/// A failure is an HException; the simulator's memory reports faults of the debugger's accesses by
/// reading zeros and dropping writes.
class TargetMemoryInterface {
public:
    /// "No preference" of the optimum fragment sizes.
    static constexpr unsigned AnyFragment = 0xFFFFFFFF;

    TargetMemoryInterface(Endian::EndianType endian, unsigned wordLength, bool erase = false)
        : m_endian(endian),
          m_wordLength(wordLength),
          m_erase(erase),
          m_displayWidth(2 * wordLength)
    {
    }
    virtual ~TargetMemoryInterface();

    virtual bool supportsDifferentialDownloading() const { return false; }
    virtual bool eraseAllSupported() const { return true; }
    virtual bool eraseRangeSupported() const { return true; }
    virtual bool eraseRequiredForDownload() const { return true; }
    virtual bool lockAllSupported() const { return true; }
    virtual bool lockRangeSupported() const { return true; }
    virtual bool unlockAllSupported() const { return true; }
    virtual bool unlockRangeSupported() const { return true; }
    virtual bool verifySupported() const { return true; }
    virtual bool peekSupported() const { return true; }

    virtual void pokeBytes(unsigned address, unsigned length, const unsigned char* data) = 0;
    virtual void peekBytes(unsigned address, unsigned length, unsigned char* data) = 0;
    /// The characters up to a zero byte, at most `maxLength`.
    virtual QString peekString(unsigned address, unsigned maxLength);
    /// The road of bulk loading.
    virtual void downloadBytes(unsigned address, unsigned length, const unsigned char* data);
    /// `last` is true for the final block of a load.
    virtual void downloadBytes(unsigned address, unsigned length, const unsigned char* data,
                               bool last);
    virtual void uploadBytes(unsigned address, unsigned length, unsigned char* data);
    virtual void memsetBytes(unsigned address, unsigned length, unsigned char value);
    /// True if the memory holds `data`; true for length 0.
    virtual bool verifyBytes(unsigned address, unsigned length, const unsigned char* data);
    virtual void eraseBytesBegin() { }
    virtual void eraseBytesEnd() { }
    /// What was erased goes to the out-parameters, either of which may be null.
    virtual void eraseBytes(unsigned address, unsigned length, unsigned* erasedStart,
                            unsigned* erasedLength);
    virtual void eraseAll() { }
    /// True if the memory has to be erased before it is written.
    virtual bool erase() const { return m_erase; }
    virtual void lockBytes(unsigned, unsigned) { }
    virtual void lockAll() { }
    virtual void unlockBytes(unsigned, unsigned) { }
    virtual void unlockAll() { }

    // Numbers in the memory's byte order; `count` is in units of the number.
    virtual void pokeMultUint16(unsigned address, unsigned count, const unsigned short* values);
    virtual void peekMultUint16(unsigned address, unsigned count, unsigned short* values);
    virtual void memsetUint16(unsigned address, unsigned count, unsigned short value);
    virtual void pokeMultUint32(unsigned address, unsigned count, const unsigned* values);
    virtual void peekMultUint32(unsigned address, unsigned count, unsigned* values);
    virtual void memsetUint32(unsigned address, unsigned count, unsigned value);
    virtual void pokeByte(unsigned address, unsigned char value);
    virtual unsigned char peekByte(unsigned address);
    virtual void pokeUint16(unsigned address, unsigned short value);
    virtual unsigned short peekUint16(unsigned address);
    virtual void pokeUint32(unsigned address, unsigned value);
    virtual unsigned peekUint32(unsigned address);
    /// A number of `wordLength()` bytes.
    virtual void pokeWord(unsigned address, std::uint64_t value);
    virtual std::uint64_t peekWord(unsigned address);
    /// A number of 1, 2, 4 or 8 bytes.
    virtual void pokeNumber(unsigned address, unsigned size, std::uint64_t value);
    virtual std::uint64_t peekNumber(unsigned address, unsigned size);

    virtual Endian::EndianType endian() const { return m_endian; }
    /// True if one valid range holds both ends of the span.
    virtual bool memoryExists(unsigned address, unsigned length);
    /// Empty until connected, which means that nothing can be checked.
    virtual AddressRanges& addressRanges() { return m_ranges; }
    /// Writes out what is cached.
    virtual void flush() { }

    // Bulk loops cut their requests to these sizes, in bytes, to keep progress and cancel
    // responsive.
    virtual unsigned optimumPokeBytesFragment() const { return AnyFragment; }
    virtual unsigned optimumDownloadBytesFragment() const { return AnyFragment; }
    virtual unsigned optimumUploadBytesFragment() const { return AnyFragment; }
    virtual unsigned optimumPeekBytesFragment() const { return AnyFragment; }
    virtual unsigned optimumMemsetBytesFragment() const { return AnyFragment; }
    virtual unsigned optimumEraseBytesFragment() const { return AnyFragment; }
    virtual unsigned optimumLockBytesFragment() const { return AnyFragment; }
    virtual unsigned optimumUnlockBytesFragment() const { return AnyFragment; }
    virtual unsigned optimumVerifyBytesFragment() const { return AnyFragment; }

    void setEndian(Endian::EndianType endian) { m_endian = endian; }
    unsigned wordLength() const { return m_wordLength; }
    void setDisplayWidthInCharacters(unsigned width) { m_displayWidth = width; }
    unsigned addressDisplayWidthInCharacters() const { return m_displayWidth; }

private:
    Endian::EndianType m_endian;
    unsigned m_wordLength;
    AddressRanges m_ranges;
    bool m_erase;
    unsigned m_displayWidth;
};
