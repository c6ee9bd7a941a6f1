#pragma once

#include <QString>

/// Turns bytes of an object file into text, without a target: the debugger.
class ObjectDisassembler {
public:
    virtual ~ObjectDisassembler() = default;

    /// Takes a copy of the bytes as what memory holds from `address` on.
    virtual void setDisassembleRange(unsigned address, unsigned size,
                                     const unsigned char* bytes) = 0;
    /// The instruction at the address; a null string if there is none to show.
    virtual QString disassembleInstructionWithoutMemoryAccess(unsigned address) = 0;

    /// The one in use; null until one is installed.
    static ObjectDisassembler* active;
};
