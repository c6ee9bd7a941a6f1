#pragma once

#include "objfile/model/TOBFInsn.h"

#include <span>

/// Whether code is made for the 20-bit address space. Set by the toolchain; the debugger asks its
/// target instead.
extern bool g_msp430x;

/// An MSP430 or MSP430X machine instruction. The low half of the opcode is the instruction word; a
/// high half of 0x1800 or more is the extension word that stands ahead of it. The first operand is
/// the source or the only one, the second the destination; an operand is null where the addressing
/// mode needs no word.
class TOBFMSP430Insn final : public TOBFProcessorInsn {
public:
    /// With `optimise`, immediates that the constant generator makes take its form.
    TOBFMSP430Insn(std::uint32_t opcode, TOBFExpr* first, TOBFExpr* second, bool optimise);

    std::string printString() override;
    std::string printPC() override;
    int length() override;
    int estimatedLength() override;
    int recode(std::list<TOBFInsn*>& list, std::list<TOBFInsn*>::iterator& position) override;
    void encode() override;
    void externalize(TOBFWriter* writer) override;

    /// Two operands.
    bool formatI() const { return word() >= 0x4000; }
    /// One operand.
    bool formatII() const { return word() >= 0x1000 && word() <= 0x17FF; }
    /// A jump.
    bool formatIII() const { return word() >= 0x2000 && word() <= 0x3FFF; }

    /// Whether the operand's word holds a distance, from that word on.
    bool isRelative(int index) const;

    /// Appends a branch to an address.
    void encodeBranch(unsigned value);

    struct GeneratedConstant;

private:
    std::uint32_t word() const { return m_opcode & 0xFFFF; }
    bool hasExtension() const { return m_opcode >> 16 >= 0x1800; }
    bool hasLegacyHighHalf() const { return m_opcode > 0xFFFF && !hasExtension(); }

    void selectConstant();
    void selectGenerated(std::uint32_t fieldMask, std::uint32_t allOnes,
                         std::span<const GeneratedConstant> constants);
    unsigned jumpOffset(unsigned mask) const;
    void encodeWord16(unsigned value) { encodeWord(value, 2, false); }
    unsigned operandValue(int index) const;
    unsigned relativeTo(unsigned value, int bytesBefore) const;
    void encodeAddressForm();
    void encodeCallForm();
    void encodeOperands();
    std::string printExtensionPrefix() const;
    char sizeLetter() const;
    std::string printSource(unsigned mode, unsigned reg) const;
    std::string printDestination() const;
    std::string printFormatI() const;
    std::string printFormatII() const;
    std::string printPushPop() const;
    std::string printAddressForm() const;
};
