#pragma once

#include "objfile/model/TOBFObject.h"

#include <array>
#include <list>
#include <string>

class TOBFExpr;
class TOBFFragment;
class TOBFLocus;

/// One item of a section: a machine instruction, a data definition, an alignment, a label, a source
/// position.
class TOBFInsn : public TOBFObject {
public:
    /// A stack adjustment that the compiler did not record.
    static constexpr std::int32_t UnknownStackAdjustment = 1;

    using TOBFObject::TOBFObject;

    /// The item as the listing shows it.
    virtual std::string printString() = 0;
    virtual std::string printPC();
    virtual std::string printOpCode();
    /// Final size in bytes.
    virtual int length() = 0;
    /// What layout may use while not all addresses are known.
    virtual int estimatedLength() { return length(); }
    /// A byte of the item; 0 behind those that were encoded.
    virtual int getByte(int index) { return index < m_byteCount ? m_bytes[index] : 0; }
    virtual void setPC(long pc) { m_pc = static_cast<std::int32_t>(pc); }
    /// May replace the item at `position` of its list by others; non-zero if it did. The position
    /// is then that of the last one inserted.
    virtual int recode(std::list<TOBFInsn*>& list, std::list<TOBFInsn*>::iterator& position);
    /// Computes the item's bytes.
    virtual void encode() = 0;
    virtual void writeInstrumentationData(TOBFWriter* writer);
    virtual void externalize(TOBFWriter* writer) = 0;

    void markReachable(bool reachable) override;

    TOBFFragment* fragment() const { return m_fragment; }
    void setFragment(TOBFFragment* fragment) { m_fragment = fragment; }
    /// The source position in force for this item, or null.
    TOBFLocus* locus() const { return m_locus; }
    void setLocus(TOBFLocus* locus) { m_locus = locus; }

    /// The address; -1 when not placed.
    std::int32_t pc() const { return m_pc; }
    /// The stack pointer's distance from the return address slot as a negative number of bytes.
    std::int32_t stackAdjustment() const { return m_stackAdjustment; }
    void setStackAdjustment(std::int32_t adjustment) { m_stackAdjustment = adjustment; }
    bool isHidden() const { return m_hidden; }
    void setHidden() { m_hidden = true; }
    std::uint16_t extensionWord() const { return static_cast<std::uint16_t>(m_extensionWord); }
    void setExtensionWord(std::int64_t word) { m_extensionWord = static_cast<std::uint16_t>(word); }
    void setInstrumentationData(std::int32_t data) { m_instrumentationData = data; }

    int byteCount() const { return m_byteCount; }
    const unsigned char* bytes() const { return m_bytes; }
    void clearBytes() { m_byteCount = 0; }
    void appendBytes(const unsigned char* bytes, int count);
    void encodeByte(unsigned value);
    /// Appends the low `count` bytes of `value`; the most significant first if `bigEndian` (then
    /// for counts from 1 to 4 only).
    void encodeWord(unsigned value, int count, bool bigEndian);

    TOBFExpr* operand(int index) const { return m_operands[static_cast<std::size_t>(index)]; }
    void setOperand(int index, TOBFExpr* expr)
    {
        m_operands[static_cast<std::size_t>(index)] = expr;
    }

protected:
    /// What stands before the records of most items: the address and the stack adjustment.
    void writeCommon(TOBFWriter* writer);
    void writeBytes(TOBFWriter* writer);

private:
    TOBFFragment* m_fragment = nullptr;
    TOBFLocus* m_locus = nullptr;
    std::int32_t m_byteCount = 0;
    std::int32_t m_byteCapacity = 0;
    unsigned char* m_bytes = nullptr;
    bool m_hidden = false;
    std::int32_t m_stackAdjustment = UnknownStackAdjustment;
    std::int32_t m_extensionWord = 0;
    std::int32_t m_instrumentationData = 0;
    std::int32_t m_pc = -1;
    std::array<TOBFExpr*, 4> m_operands{};
};

/// A machine instruction; the processor's own class gives length, encoding and text.
class TOBFProcessorInsn : public TOBFInsn {
public:
    TOBFProcessorInsn(std::uint32_t opcode, TOBFExpr* first, TOBFExpr* second)
        : TOBFInsn(TOBFKind::ProcessorInsn),
          m_opcode(opcode)
    {
        setOperand(0, first);
        setOperand(1, second);
    }

    std::uint32_t opcode() const { return m_opcode; }

protected:
    std::uint32_t m_opcode;
};
