#pragma once

#include "objfile/model/TOBFInsn.h"
#include "objfile/model/TOBFModule.h"

/// A number of 1 to 4 bytes, the value of an expression.
class TOBFDefBytesInsn final : public TOBFInsn {
public:
    TOBFDefBytesInsn(TOBFExpr* value, int size) : TOBFInsn(TOBFKind::DefBytesInsn), m_size(size)
    {
        setOperand(0, value);
    }

    int length() override { return m_size; }
    std::string printString() override;
    void encode() override;
    void externalize(TOBFWriter* writer) override;

private:
    std::int32_t m_size;
};

/// An address: the value of an expression in the processor's address size.
class TOBFDefAddrInsn final : public TOBFInsn {
public:
    explicit TOBFDefAddrInsn(TOBFExpr* value) : TOBFInsn(TOBFKind::DefAddrInsn)
    {
        setOperand(0, value);
    }

    int length() override { return TOBFModule::processorAddressSize(); }
    std::string printString() override;
    void encode() override;
    void externalize(TOBFWriter* writer) override;
};

/// A copy of the bytes of another section: the image from which start-up code fills that section.
class TOBFInitInsn final : public TOBFInsn {
public:
    TOBFInitInsn(HString* section, TOBFModule* module)
        : TOBFInsn(TOBFKind::InitInsn),
          m_sectionName(section)
    {
        m_module = module;
    }

    HString* sectionName() const { return m_sectionName; }
    /// The size of the named section; 0 while no such section is found.
    int length() override;
    int getByte(int index) override;
    std::string printString() override;
    void encode() override { }
    void externalize(TOBFWriter* writer) override;

    /// Finds the named section; null by default, and then the module's own map serves.
    static TOBFSection* (*findSection)(HString* name);

private:
    TOBFSection* section();

    HString* m_sectionName;
    TOBFSection* m_section = nullptr;
    unsigned char* m_copy = nullptr;
    int m_copySize = 0;
};

/// Items from here to the matching ENDLINKIF stand only if the condition holds when linking.
class TOBFLinkIf final : public TOBFInsn {
public:
    explicit TOBFLinkIf(TOBFExpr* condition) : TOBFInsn(TOBFKind::LinkIf)
    {
        setOperand(0, condition);
    }

    int length() override { return 0; }
    std::string printString() override;
    void encode() override { }
    void externalize(TOBFWriter* writer) override;
};

class TOBFEndLinkIf final : public TOBFInsn {
public:
    TOBFEndLinkIf() : TOBFInsn(TOBFKind::EndLinkIf) { }

    int length() override { return 0; }
    std::string printString() override;
    void encode() override { }
    void externalize(TOBFWriter* writer) override;
};

/// Zero bytes up to the next multiple of the alignment, in bytes.
class TOBFAlignInsn final : public TOBFInsn {
public:
    explicit TOBFAlignInsn(int alignment)
        : TOBFInsn(TOBFKind::AlignInsn),
          m_alignment(alignment) { }

    int alignment() const { return m_alignment; }
    int length() override;
    int getByte(int) override { return 0; }
    std::string printString() override;
    void encode() override { }
    void externalize(TOBFWriter* writer) override;

private:
    std::int32_t m_alignment;
};

/// What follows stands at this offset from the start of the section's memory.
class TOBFOriginInsn final : public TOBFInsn {
public:
    explicit TOBFOriginInsn(int origin) : TOBFInsn(TOBFKind::OriginInsn), m_origin(origin) { }

    int origin() const { return m_origin; }
    int length() override { return 0; }
    int getByte(int) override { return 0; }
    std::string printString() override;
    void encode() override { }
    void externalize(TOBFWriter* writer) override;

private:
    std::int32_t m_origin;
};

class TOBFFillInsn final : public TOBFInsn {
public:
    TOBFFillInsn(int count, int fill)
        : TOBFInsn(TOBFKind::FillInsn),
          m_count(count),
          m_fill(static_cast<unsigned char>(fill))
    {
    }

    int length() override { return m_count; }
    int getByte(int) override { return m_fill; }
    std::string printString() override;
    void encode() override { }
    void externalize(TOBFWriter* writer) override;

private:
    std::int32_t m_count;
    unsigned char m_fill;
};

/// The start of a fragment that has an address.
class TOBFBreakInsn final : public TOBFInsn {
public:
    TOBFBreakInsn() : TOBFInsn(TOBFKind::BreakInsn) { }

    int length() override { return 0; }
    int getByte(int) override { return 0; }
    std::string printString() override { return {}; }
    void encode() override { }
    void markReachable(bool reachable) override { mark(reachable); }
    void externalize(TOBFWriter* writer) override;
};

/// Reserved memory. As content of a loaded section its bytes are zero.
class TOBFSpaceInsn final : public TOBFInsn {
public:
    explicit TOBFSpaceInsn(TOBFExpr* size) : TOBFInsn(TOBFKind::SpaceInsn) { setOperand(0, size); }

    int length() override;
    int getByte(int) override { return 0; }
    std::string printString() override;
    void encode() override { }
    void markReachable(bool reachable) override;
    void externalize(TOBFWriter* writer) override;
};

/// A local symbol of assembly code and where it lives.
class TOBFLocalInsn final : public TOBFInsn {
public:
    explicit TOBFLocalInsn(TOBFExpr* symbol) : TOBFInsn(TOBFKind::LocalInsn)
    {
        setOperand(0, symbol);
    }

    int length() override { return 0; }
    std::string printString() override;
    void encode() override { }
    void externalize(TOBFWriter* writer) override;
};

/// From here on no source position is in force.
class TOBFResetLocusInsn final : public TOBFInsn {
public:
    TOBFResetLocusInsn() : TOBFInsn(TOBFKind::ResetLocusInsn) { }

    int length() override { return 0; }
    std::string printString() override { return {}; }
    void encode() override { }
    void externalize(TOBFWriter* writer) override;
};
