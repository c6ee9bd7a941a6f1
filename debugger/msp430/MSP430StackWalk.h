#pragma once

#include "target/msp430/MSP430Registers.h"

#include <functional>
#include <memory>
#include <vector>

class TargetMemoryInterface;
class TOBFInsn;

/// Finds the callers of a function. MSP430 code keeps no chain of frames: the stack is scanned from
/// the stack pointer upward, and a slot counts as a return address if the instruction ahead of that
/// address is a call.
class MSP430StackWalk {
public:
    struct Limits {
        unsigned ramEnd; ///< the last byte that a stack can have
        unsigned depth;  ///< how many are looked at
    };
    /// The item of the program at an address, or null.
    using InsnAt = std::function<TOBFInsn*(unsigned address)>;
    /// Where the function at a PC saves registers: bytes from its return address slot up to the
    /// first, and a bit for each. No bits if it is not known.
    struct SavedRegisters {
        int offset = 0;
        unsigned mask = 0;
    };
    using SavedBy = std::function<SavedRegisters(unsigned pc)>;
    using Callers = std::vector<std::unique_ptr<MSP430Registers>>;

    /// The memory must outlive this object; null for none, in which nothing is found.
    MSP430StackWalk(TargetMemoryInterface* memory, InsnAt insnAt, SavedBy savedBy);

    /// The registers of the callers as they will be when they go on, the nearest one's first.
    Callers callers(MSP430Registers& innermost, Limits limits);

private:
    unsigned peekWord(unsigned address);
    void fillMemoryCache(unsigned address, unsigned size);
    unsigned returnAddressAt(unsigned sp, bool extended);
    TOBFInsn* callBefore(unsigned returnAddress, bool extended) const;
    std::unique_ptr<MSP430Registers> callerOf(const MSP430Registers& innermost, unsigned pc,
                                              unsigned sp, unsigned returnAddress);

    TargetMemoryInterface* m_memory;
    InsnAt m_insnAt;
    SavedBy m_savedBy;
    std::vector<unsigned char> m_cache;
    unsigned m_cacheStart = 0;
};
