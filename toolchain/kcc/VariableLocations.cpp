#include "toolchain/kcc/VariableLocations.h"

#include "objfile/model/TOBFExpr.h"
#include "toolchain/kcc/dwarf/DwarfCursor.h"

#include <optional>

namespace {

constexpr unsigned SP = 1;
constexpr unsigned R4 = 4;
constexpr int RegisterSize = 2;

/// A place relative to a register. The stack pointer counts from where it was at the function's
/// entry, since the debugger adds what each instruction's stack adjustment tells.
TOBFExpr* relativeTo(unsigned reg, std::int64_t offset, const FunctionFrame& frame)
{
    if (reg == SP && frame.stack != nullptr)
        offset -= frame.stack->body;
    return TOBFBinaryExpr::make(TAG_BASE_OFFSET, new TOBFRegisterExpr(static_cast<int>(reg)),
                                new TOBFConstExpr(offset));
}

TOBFExpr* frameRelative(std::int64_t offset, const FunctionFrame& frame)
{
    // The compiler counts from the frame as if nothing had been pushed behind setting R4.
    if (frame.frameRegister == R4 && frame.stack != nullptr)
        offset -= 2 * frame.stack->pushedBehindFramePointer;
    return relativeTo(frame.frameRegister, offset, frame);
}

class LocationReader {
public:
    LocationReader(ObjectConverter& converter, const DwarfUnit& unit, const FunctionFrame& frame,
                   std::span<const std::uint8_t> expression)
        : m_converter(converter),
          m_unit(unit),
          m_frame(frame),
          m_bytes(expression),
          m_cursor(expression)
    {
    }

    TOBFExpr* read(int size)
    {
        if (m_cursor.atEnd())
            return nullptr;
        if (readRegisters())
            return m_registerBytes == size || m_pieces == 0 ? m_result : nullptr;
        if (!readFirst())
            return nullptr;
        return readRest() ? m_result : nullptr;
    }

private:
    /// One register, or pieces that fill consecutive ones.
    bool readRegisters()
    {
        std::optional<unsigned> next;
        while (!m_cursor.atEnd()) {
            const unsigned opcode = m_cursor.u8();
            if (opcode < Dwarf::OpReg0 || opcode > Dwarf::OpReg31)
                return restart();
            const unsigned reg = opcode - Dwarf::OpReg0;
            if (next.has_value() && reg != *next)
                return restart();
            if (!next.has_value())
                m_result = new TOBFRegisterExpr(static_cast<int>(reg));
            next = reg + 1;
            if (m_cursor.atEnd())
                return m_pieces == 0;
            if (m_cursor.u8() != Dwarf::OpPiece)
                return restart();
            ++m_pieces;
            m_registerBytes += static_cast<int>(m_cursor.uleb());
            if (m_registerBytes > m_pieces * RegisterSize)
                return restart();
        }
        return m_pieces > 0;
    }

    bool restart()
    {
        m_cursor = DwarfCursor(m_bytes);
        m_result = nullptr;
        m_pieces = 0;
        return false;
    }

    bool readFirst()
    {
        const unsigned opcode = m_cursor.u8();
        if (opcode >= Dwarf::OpBreg0 && opcode <= Dwarf::OpBreg31) {
            m_result = relativeTo(opcode - Dwarf::OpBreg0, m_cursor.sleb(), m_frame);
            m_isRelative = true;
        } else if (opcode >= Dwarf::OpLit0 && opcode <= Dwarf::OpLit31) {
            m_constant = opcode - Dwarf::OpLit0;
        } else {
            readOperation(opcode);
        }
        return m_result != nullptr || m_constant.has_value();
    }

    void readOperation(unsigned opcode)
    {
        switch (opcode) {
        case Dwarf::OpAddress:
            m_place = m_unit.addressField(m_bytes.data() + m_cursor.at());
            m_cursor.skip(2);
            m_result = m_converter.address(m_place);
            break;
        case Dwarf::OpAddrx:
            m_place = m_unit.address(m_cursor.uleb());
            m_result = m_converter.address(m_place);
            break;
        case Dwarf::OpFbreg:
            m_result = frameRelative(m_cursor.sleb(), m_frame);
            m_isRelative = true;
            break;
        case Dwarf::OpConst1u: m_constant = m_cursor.u8(); break;
        case Dwarf::OpConst2u: m_constant = m_cursor.u16(); break;
        case Dwarf::OpConst4u: m_constant = m_cursor.u32(); break;
        case Dwarf::OpConstu: m_constant = static_cast<std::int64_t>(m_cursor.uleb()); break;
        case Dwarf::OpConsts: m_constant = m_cursor.sleb(); break;
        default: break;
        }
    }

    /// What may stand behind: a distance, or the mark that the value itself was given.
    bool readRest()
    {
        while (!m_cursor.atEnd()) {
            const unsigned opcode = m_cursor.u8();
            if (opcode == Dwarf::OpPlusUconst && m_result != nullptr && !m_isRelative) {
                m_place.offset += static_cast<std::int64_t>(m_cursor.uleb());
                m_result = m_converter.address(m_place);
            } else if (opcode == Dwarf::OpStackValue && m_constant.has_value()
                       && m_cursor.atEnd()) {
                m_result = new TOBFConstExpr(*m_constant);
            } else {
                return false;
            }
        }
        return m_result != nullptr;
    }

    ObjectConverter& m_converter;
    const DwarfUnit& m_unit;
    const FunctionFrame& m_frame;
    std::span<const std::uint8_t> m_bytes;
    DwarfCursor m_cursor;
    TOBFExpr* m_result = nullptr;
    ElfPlace m_place;
    std::optional<std::int64_t> m_constant;
    bool m_isRelative = false;
    int m_pieces = 0;
    int m_registerBytes = 0;
};

} // namespace

unsigned frameRegister(const DwarfEntry& function)
{
    const DwarfValue* base = function.find(Dwarf::AtFrameBase);
    if (base == nullptr || base->block.empty())
        return SP;
    const unsigned opcode = base->block[0];
    const bool isRegister = opcode >= Dwarf::OpReg0 && opcode <= Dwarf::OpReg31;
    return isRegister ? opcode - Dwarf::OpReg0 : SP;
}

TOBFExpr* convertLocation(ObjectConverter& converter, const DwarfUnit& unit,
                          const FunctionFrame& frame, std::span<const std::uint8_t> expression,
                          int size)
{
    return LocationReader(converter, unit, frame, expression).read(size);
}
