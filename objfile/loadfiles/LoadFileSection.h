#pragma once

#include <memory>
#include <string>
#include <vector>

/// A run of bytes at an address of the target's memory.
class LoadFileSectionInterface {
public:
    virtual ~LoadFileSectionInterface() = default;

    virtual const std::string& name() const = 0;
    virtual unsigned int address() const = 0;
    /// In bytes.
    virtual unsigned int length() const = 0;
    /// The bytes, null if the section has none. With `patched`, the patch if one has been made.
    virtual const unsigned char* data(bool patched) const = 0;
    /// A copy of the bytes that may be altered for one download, made on the first call.
    virtual unsigned char* createPatch() = 0;
    virtual void clearPatch() = 0;
};

/// True for the same address and length with, where either has data, the same bytes.
bool operator==(const LoadFileSectionInterface& a, const LoadFileSectionInterface& b);

/// A section over bytes that somebody else keeps and that outlive it.
class StandardLoadFileSection : public LoadFileSectionInterface {
public:
    StandardLoadFileSection(const char* name, unsigned int address, unsigned int length,
                            unsigned char* data);

    const std::string& name() const override { return m_name; }
    unsigned int address() const override { return m_address; }
    unsigned int length() const override { return m_length; }
    const unsigned char* data(bool patched) const override;
    unsigned char* createPatch() override;
    void clearPatch() override { m_patch.reset(); }

protected:
    void setBytes(unsigned char* data, unsigned int length);

private:
    std::string m_name;
    unsigned int m_address;
    unsigned int m_length;
    unsigned char* m_data;
    std::unique_ptr<unsigned char[]> m_patch;
};

/// A section that owns its bytes and starts with none.
class ExpandingLoadFileSection : public StandardLoadFileSection {
public:
    ExpandingLoadFileSection(const char* name, unsigned int address);

    /// Grows the section by n bytes and returns where they are. Earlier pointers to its data end.
    unsigned char* expand(unsigned int n);

private:
    std::vector<unsigned char> m_bytes;
};
