#include "debugger/msp430/MSP430StackWalk.h"

#include "objfile/msp430/TOBFMSP430Insn.h"
#include "target/TargetMemoryInterface.h"

#include <algorithm>
#include <array>

namespace {

constexpr unsigned SP = 1;
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

MSP430StackWalk::MSP430StackWalk(TargetMemoryInterface* memory, InsnAt insnAt, SavedBy savedBy)
    : m_memory(memory),
      m_insnAt(std::move(insnAt)),
      m_savedBy(std::move(savedBy))
{
}

MSP430StackWalk::Callers MSP430StackWalk::callers(MSP430Registers& innermost, Limits limits)
{
    Callers found;
    const bool extended = innermost.extended();
    const unsigned step = slotSize(extended);
    unsigned pc = innermost.getPC();
    unsigned sp = innermost.getSP();
    if (const TOBFInsn* item = m_insnAt(pc); hasAdjustment(item))
        sp -= static_cast<unsigned>(item->stackAdjustment());
    for (unsigned slot = 0; slot < limits.depth && sp <= limits.ramEnd + 1; ++slot) {
        const unsigned returnAddress = returnAddressAt(sp, extended);
        const TOBFInsn* const call = callBefore(returnAddress, extended);
        if (call) {
            found.push_back(callerOf(innermost, pc, sp, returnAddress));
            pc = returnAddress;
            sp += step;
        }
        const unsigned before = sp;
        sp += hasAdjustment(call) ? 0U - static_cast<unsigned>(call->stackAdjustment()) : step;
        if (sp < before)
            break;
    }
    return found;
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

std::unique_ptr<MSP430Registers> MSP430StackWalk::callerOf(const MSP430Registers& innermost,
                                                           unsigned pc, unsigned sp,
                                                           unsigned returnAddress)
{
    auto registers = std::make_unique<MSP430Registers>(innermost);
    registers->setValue(SP, sp + slotSize(innermost.extended()));
    registers->setPC(returnAddress);
    const SavedRegisters saved = m_savedBy(pc);
    unsigned address = sp + static_cast<unsigned>(saved.offset);
    for (unsigned number = FirstSavedRegister; number < MSP430Registers::Count; ++number)
        if (saved.mask >> number & 1) {
            registers->setValue(number, peekWord(address));
            address += 2;
        }
    return registers;
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
