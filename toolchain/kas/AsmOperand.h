#pragma once

#include "toolchain/kas/AsmExpression.h"

/// One operand as it was written.
struct AsmOperand {
    enum Mode {
        Register,  ///< Rn
        Indexed,   ///< x(Rn)
        Indirect,  ///< @Rn
        Increment, ///< @Rn+
        Immediate, ///< #x
        Absolute,  ///< &x
        Symbolic,  ///< x: the address itself, reached relative to the PC
        Relative,  ///< x(PC) with a number: a distance from the operand's own word
    };
    Mode mode = Register;
    int reg = 0;
    TOBFExpr* value = nullptr; ///< x
};

/// Reads an operand. Throws AsmError.
AsmOperand parseOperand(AsmTokens& tokens, AsmExpressions& expressions,
                        const SourceLocation& where);

/// Reads a register's name. Throws AsmError.
int parseRegister(AsmTokens& tokens);
