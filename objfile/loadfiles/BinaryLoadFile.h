#pragma once

#include "objfile/loadfiles/LoadFile.h"

#include <vector>

/// A file of plain bytes, format "bin": one section named "data" at the load address.
class BinaryLoadFile : public StandardLoadFile {
public:
    /// Throws HException "cannot open PATH" or "cannot read PATH".
    explicit BinaryLoadFile(const char* path);

    bool hasLoadAddress() const override { return false; }
    void setLoadAddress(unsigned long address) override;
    bool createLoadFileSections() override;

private:
    std::vector<unsigned char> m_bytes;
    unsigned int m_loadAddress = 0;
};
