#pragma once

#include "objfile/loadfiles/TextLoadFile.h"

/// TI-TXT, format "tihex": "@" address lines, lines of blank-separated bytes, "q" at the end.
class TIHexLoadFile : public TextLoadFile {
public:
    explicit TIHexLoadFile(const char* path);

protected:
    bool readLine(const char* line) override;
    void reachedEndOfFile() override;

private:
    unsigned int m_address = 0;
};
