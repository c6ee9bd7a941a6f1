#pragma once

#include "objfile/loadfiles/LoadFile.h"

#include <cstdio>

/// Reads two hexadecimal digits at the cursor, of either case, and moves it behind them. The value
/// is added to `checksum` if one is given. Throws HException "invalid ASCII encoded byte".
unsigned char getAsciiHexByte(const char*& cursor, unsigned char* checksum);

/// The common shape of the load files that are lines of text: the constructor of a concrete class
/// calls `read`, so that the sections stand from then on, in the order of the file. Contiguous
/// records make one section; any break in the addresses starts the next one.
class TextLoadFile : public StandardLoadFile {
public:
    bool hasLoadAddress() const override { return true; }
    void setLoadAddress(unsigned long) override { }
    bool createLoadFileSections() override { return true; }

protected:
    /// Gives each line to readLine. Lines are taken as fgets does with a buffer of `bufferSize`
    /// bytes: a longer one arrives in pieces that count as lines. Throws HException "cannot open
    /// PATH", or with the message of a failed line and " : line %d" behind it, counted from 1.
    void read(const char* path, int bufferSize);

    /// Reads one line, end of line included; false if it ends the file.
    virtual bool readLine(const char* line) = 0;
    /// Called when the file ends before a line has ended it.
    virtual void reachedEndOfFile() { }

    /// Reads `count` bytes at the cursor into the section that goes on at the address.
    void readBytes(const char*& cursor, unsigned int address, unsigned int count,
                   unsigned char* checksum);
    /// Room for `count` more bytes at the address; no section is started for none.
    unsigned char* append(unsigned int address, unsigned int count);

private:
    void readLines(std::FILE* file, char* buffer, int bufferSize, int& line);

    ExpandingLoadFileSection* m_current = nullptr;
};
