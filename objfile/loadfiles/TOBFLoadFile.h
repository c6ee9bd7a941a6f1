#pragma once

#include "objfile/loadfiles/LoadFile.h"

#include <vector>

class TOBFModule;
class TOBFSection;

/// A native executable, format "kvx": the placed bytes of every section that a load writes.
class TOBFLoadFile : public LoadFileInterface {
public:
    /// Throws HException if the file can't be read as a native one.
    explicit TOBFLoadFile(const char* path);
    ~TOBFLoadFile() override;

    TOBFModule* module() const { return m_module; }

    bool hasEntryPoint() const override { return false; }
    void setEntryPoint(unsigned long) override { }
    unsigned long entryPoint() override { return 0; }
    bool hasLoadAddress() const override { return true; }
    void setLoadAddress(unsigned long) override { }
    bool hasSymbols() override { return true; }
    /// False if the sections are longer than any memory could be.
    bool createLoadFileSections() override;

private:
    void addSection(TOBFSection& section, unsigned char*& next);

    TOBFModule* m_module;
    std::vector<unsigned char> m_bytes;
};
