#pragma once

#include "objfile/loadfiles/TextLoadFile.h"

/// Intel Hex, format "ihex", with segment and linear extended addresses.
class IntelHexLoadFile : public TextLoadFile {
public:
    explicit IntelHexLoadFile(const char* path);

protected:
    bool readLine(const char* line) override;
    void reachedEndOfFile() override;

private:
    unsigned int m_extendedSegment = 0;
    unsigned int m_extendedLinear = 0;
};
