#include "objfile/msp430/TOBFMSP430Reader.h"

#include "objfile/msp430/TOBFMSP430Insn.h"

TOBFInsn* TOBFMSP430Reader::makeInsn()
{
    const auto opcode = static_cast<std::uint32_t>(popConst());
    TOBFExpr* second = popExpr(AllowNull);
    TOBFExpr* first = popExpr(AllowNull);
    return new TOBFMSP430Insn(opcode, first, second, false);
}
