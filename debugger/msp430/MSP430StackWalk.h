#pragma once

#include "target/msp430/MSP430Registers.h"

#include <functional>
#include <memory>
#include <vector>

class TargetMemoryInterface;
class TOBFInsn;

/// Finds the callers of a function. MSP430 code keeps no chain of frames: the stack is scanned from
/// the stack pointer upward, and a slot counts as a return address if the instruction ahead of that
/// address is a call. A handler of an interrupt was called from anywhere; its caller is found if it
/// is known how much the handler has on the stack.
class MSP430StackWalk {
public:
    struct Limits {
        unsigned ramEnd; ///< the last byte that a stack can have
        unsigned depth;  ///< how many are looked at
    };
    /// The item of the program at an address, or null.
    using InsnAt = std::function<TOBFInsn*(unsigned address)>;
    /// Where a function saves registers: bytes from its return address slot up to the first, and a
    /// bit for each. No bits if it is not known.
    struct Function {
        int savedOffset = 0;
        unsigned savedMask = 0;
        bool isInterruptHandler = false;
    };
    using FunctionAt = std::function<Function(unsigned pc)>;
    using Callers = std::vector<std::unique_ptr<MSP430Registers>>;

    /// The memory must outlive this object; null for none, in which nothing is found.
    MSP430StackWalk(TargetMemoryInterface* memory, InsnAt insnAt, FunctionAt functionAt);

    /// The registers of the callers as they will be when they go on, the nearest one's first.
    Callers callers(MSP430Registers& innermost, Limits limits);

private:
    /// Where the walk has come to.
    struct Position {
        unsigned pc;
        unsigned sp;   ///< the slot that is looked at
        bool isReturn; ///< it is known to be that of the function's return address
    };

    bool findCaller(MSP430Registers& innermost, Position& position, Callers& found);
    bool findInterrupted(MSP430Registers& innermost, Position& position, Callers& found);
    unsigned peekWord(unsigned address);
    void fillMemoryCache(unsigned address, unsigned size);
    unsigned returnAddressAt(unsigned sp, bool extended);
    TOBFInsn* callBefore(unsigned returnAddress, bool extended) const;
    MSP430Registers& addCaller(const MSP430Registers& innermost, const Position& position,
                               unsigned returnAddress, unsigned sp, Callers& found);

    TargetMemoryInterface* m_memory;
    InsnAt m_insnAt;
    FunctionAt m_functionAt;
    std::vector<unsigned char> m_cache;
    unsigned m_cacheStart = 0;
};
