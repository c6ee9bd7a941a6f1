#pragma once

#include "objfile/loadfiles/TextLoadFile.h"

/// A plain hex listing, format "hex": eight digits of address, then each byte behind a blank.
class HexLoadFile : public TextLoadFile {
public:
    explicit HexLoadFile(const char* path);

protected:
    bool readLine(const char* line) override;
};
