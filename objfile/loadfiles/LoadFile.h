#pragma once

#include "objfile/loadfiles/LoadFileSections.h"

/// What is written to a target: address ranges with bytes. Every failure is an HException.
class LoadFileInterface {
public:
    /// The widest span in bytes, from the first to the last byte, that is filled up into one image
    /// unless the file itself is longer: the MSP430's address space has a megabyte, so that a wider
    /// one can only come from a wrecked file.
    static constexpr std::uint64_t MaximumContiguousSpan = 0x1000000;

    LoadFileInterface() = default;
    virtual ~LoadFileInterface() = default;
    LoadFileInterface(const LoadFileInterface&) = delete;
    LoadFileInterface& operator=(const LoadFileInterface&) = delete;

    virtual bool hasEntryPoint() const = 0;
    virtual void setEntryPoint(unsigned long address) = 0;
    virtual unsigned long entryPoint() = 0;
    /// True if the file carries its own addresses, so that no load address is to be given.
    virtual bool hasLoadAddress() const = 0;
    virtual void setLoadAddress(unsigned long address) = 0;
    /// Replaces the ordinary sections by one that covers them all, with the gaps filled.
    virtual void makeContiguous(unsigned char fill);
    virtual void sortLoadFileSections();
    virtual bool hasSymbols() { return false; }
    /// Makes the sections anew; false if they can't be read.
    virtual bool createLoadFileSections() = 0;

    /// The sections, made on the first call.
    LoadFileSections& loadFileSections();
    void invalidateLoadFileSections();
    void clearPatches();

protected:
    LoadFileSections m_sections;

private:
    bool m_sectionsValid = false;
};

/// A load file that can have an entry point.
class StandardLoadFile : public LoadFileInterface {
public:
    bool hasEntryPoint() const override { return m_hasEntryPoint; }
    void setEntryPoint(unsigned long address) override;
    unsigned long entryPoint() override { return m_entryPoint; }

private:
    unsigned int m_entryPoint = 0;
    bool m_hasEntryPoint = false;
};
