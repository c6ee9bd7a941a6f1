#include "debugger/msp430/MSP430StackWalk.h"

#include "objfile/msp430/TOBFMSP430Insn.h"
#include "target/TargetMemoryInterface.h"

#include <algorithm>
#include <array>

namespace {

constexpr unsigned SP = 1;
constexpr unsigned SR = 2;
constexpr unsigned FirstSavedRegister = 2;
/// Peripherals lie below; reading them may change them.
constexpr unsigned FirstCachedAddress = 0x200;
constexpr unsigned CacheSize = 256;
constexpr unsigned Unreadable = 0xFFFF;

unsigned slotSize(bool extended) { return extended ? 4 : 2; }

bool isCall(const TOBFInsn* item, bool extended)
{
    const auto* insn = dynamic_cast<const TOBFMSP430Insn*>(item);
    if (!insn)
        return false;
    constexpr unsigned CALL = 0x1280;
    constexpr std::array<unsigned, 7> CALLA = {0x1340, 0x1350, 0x1360, 0x1370,
                                               0x1380, 0x1390, 0x13B0};
    const unsigned opcode = insn->opcode();
    if (insn->formatII() && opcode >> 6 == CALL >> 6)
        return true;
    return extended && std::find(CALLA.begin(), CALLA.end(), opcode & 0xFFF0) != CALLA.end();
}

bool hasAdjustment(const TOBFInsn* item)
{
    return item && item->stackAdjustment() != TOBFInsn::UnknownStackAdjustment;
}

} // namespace

MSP430StackWalk::MSP430StackWalk(TargetMemoryInterface* memory, InsnAt insnAt,
                                 FunctionAt functionAt)
    : m_memory(memory),
      m_insnAt(std::move(insnAt)),
      m_functionAt(std::move(functionAt))
{
}

MSP430StackWalk::Callers MSP430StackWalk::callers(MSP430Registers& innermost, Limits limits)
{
    Callers found;
    Position at = {innermost.getPC(), innermost.getSP(), false};
    if (const TOBFInsn* item = m_insnAt(at.pc); hasAdjustment(item)) {
        at.sp -= static_cast<unsigned>(item->stackAdjustment());
        at.isReturn = true;
    }
    for (unsigned slot = 0; slot < limits.depth && at.sp <= limits.ramEnd + 1; ++slot)
        if (!findInterrupted(innermost, at, found) && !findCaller(innermost, at, found))
            break;
    return found;
}

/// Takes one slot. False if the stack ends there.
bool MSP430StackWalk::findCaller(MSP430Registers& innermost, Position& at, Callers& found)
{
    const bool extended = innermost.extended();
    const unsigned step = slotSize(extended);
    const unsigned returnAddress = returnAddressAt(at.sp, extended);
    const TOBFInsn* const call = callBefore(returnAddress, extended);
    if (call) {
        addCaller(innermost, at, returnAddress, at.sp + step, found);
        at.pc = returnAddress;
        at.sp += step;
    }
    const unsigned before = at.sp;
    at.isReturn = hasAdjustment(call);
    at.sp += at.isReturn ? 0U - static_cast<unsigned>(call->stackAdjustment()) : step;
    return at.sp >= before;
}

/// A handler returns to an address of the program; the status register lies below it, and has its
/// upper bits.
bool MSP430StackWalk::findInterrupted(MSP430Registers& innermost, Position& at, Callers& found)
{
    if (!at.isReturn || !m_functionAt(at.pc).isInterruptHandler)
        return false;
    const unsigned status = peekWord(at.sp - 2);
    unsigned returnAddress = peekWord(at.sp);
    if (innermost.extended())
        returnAddress |= (status & 0xF000) << 4;
    const TOBFInsn* const interrupted = m_insnAt(returnAddress);
    if (!interrupted)
        return false;
    addCaller(innermost, at, returnAddress, at.sp + 2, found).setValue(SR, status & 0x0FFF);
    const unsigned depth =
        hasAdjustment(interrupted) ? 0U - static_cast<unsigned>(interrupted->stackAdjustment()) : 0;
    at = {returnAddress, at.sp + 2 + depth, hasAdjustment(interrupted)};
    return true;
}

unsigned MSP430StackWalk::returnAddressAt(unsigned sp, bool extended)
{
    const unsigned low = peekWord(sp);
    return extended ? low | (peekWord(sp + 2) & 0xF) << 16 : low;
}

TOBFInsn* MSP430StackWalk::callBefore(unsigned returnAddress, bool extended) const
{
    TOBFInsn* item = m_insnAt(returnAddress - 2);
    if (!item)
        item = m_insnAt(returnAddress - 4);
    return isCall(item, extended) ? item : nullptr;
}

MSP430Registers& MSP430StackWalk::addCaller(const MSP430Registers& innermost, const Position& at,
                                            unsigned returnAddress, unsigned sp, Callers& found)
{
    auto registers = std::make_unique<MSP430Registers>(innermost);
    registers->setValue(SP, sp);
    registers->setPC(returnAddress);
    const Function function = m_functionAt(at.pc);
    unsigned address = at.sp + static_cast<unsigned>(function.savedOffset);
    for (unsigned number = FirstSavedRegister; number < MSP430Registers::Count; ++number)
        if (function.savedMask >> number & 1) {
            registers->setValue(number, peekWord(address));
            address += 2;
        }
    return *found.emplace_back(std::move(registers));
}

/// A word of the stack. What can't be read is no return address.
unsigned MSP430StackWalk::peekWord(unsigned address)
{
    const auto cached = [&] {
        return address >= m_cacheStart && address + 2 < m_cacheStart + m_cache.size();
    };
    if (!m_memory)
        return Unreadable;
    if (address < FirstCachedAddress)
        return m_memory->memoryExists(address, 2) ? m_memory->peekUint16(address) : Unreadable;
    if (!cached())
        fillMemoryCache(address, CacheSize);
    if (!cached())
        return Unreadable;
    const unsigned char* const bytes = &m_cache[address - m_cacheStart];
    return bytes[0] | unsigned(bytes[1]) << 8;
}

void MSP430StackWalk::fillMemoryCache(unsigned address, unsigned size)
{
    m_cache.assign(size, 0);
    m_cacheStart = address;
    m_memory->peekBytes(address, size, m_cache.data());
}
