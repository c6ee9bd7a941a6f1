#pragma once

#include <cstdint>

/// What stands behind an opcode in the code. Each operand has two bytes, the high one first.
enum class ESOperand : std::uint8_t {
    None,
    Number,      ///< index into the numbers of the code
    String,      ///< index into the pool of strings
    Count,       ///< of arguments or elements
    Address,     ///< offset in the same code
    Function,    ///< index of a function's code
    Slot,        ///< of a variable
    StringCount, ///< a string, then a count
    SlotCount    ///< a slot, then a count
};

/// The instructions of the machine, as OP(mnemonic, value, operand). Operator codes and their forms
/// for members (X) lie side by side: the member form is the operator's value plus 1.
// clang-format off
#define ES_OPCODES(OP) \
    OP(NUM, 0x00, Number) OP(NUM_0, 0x01, None) OP(NUM_1, 0x02, None) OP(NUM_2, 0x03, None) \
    OP(NUM_3, 0x04, None) OP(NUM_4, 0x05, None) OP(NUM_M1, 0x06, None) OP(NULL_, 0x07, None) \
    OP(TRUE_, 0x08, None) OP(FALSE_, 0x09, None) OP(UNDEFINED, 0x0a, None) OP(THIS, 0x0b, None) \
    OP(STR, 0x0c, String) OP(NEW, 0x0d, None) OP(NEWA, 0x0e, Count) OP(DROP, 0x0f, None) \
    OP(DUP, 0x10, None) OP(VOID_, 0x11, None) OP(TYPEOF, 0x12, None) OP(ENUM, 0x13, None) \
    OP(NEXT, 0x14, Address) OP(CLOSURE, 0x15, Function) OP(MKARRAY, 0x16, Count) \
    OP(NEWOBJ, 0x17, None) OP(WITH, 0x18, None) OP(ENDWITH, 0x19, None) OP(INITF, 0x1a, String) \
    OP(CALLW, 0x1b, StringCount) OP(CALLF, 0x1c, StringCount) OP(CALLG, 0x1d, SlotCount) \
    OP(CALLA, 0x1e, SlotCount) OP(CALLAM, 0x1f, SlotCount) OP(CALLL, 0x20, SlotCount) \
    OP(CALLLM, 0x21, SlotCount) OP(CALLX, 0x22, Count) OP(GETW, 0x23, String) \
    OP(GETF, 0x24, String) OP(GETG, 0x25, Slot) OP(GETA, 0x26, Slot) OP(GETL, 0x27, Slot) \
    OP(GETAM, 0x28, Slot) OP(GETLM, 0x29, Slot) OP(GETX, 0x2a, None) OP(PUTW, 0x2b, String) \
    OP(PUTF, 0x2c, String) OP(PUTG, 0x2d, Slot) OP(PUTA, 0x2e, Slot) OP(PUTL, 0x2f, Slot) \
    OP(PUTAM, 0x30, Slot) OP(PUTLM, 0x31, Slot) OP(PUTX, 0x32, None) OP(ADD, 0x33, None) \
    OP(ADDX, 0x34, None) OP(SUB, 0x35, None) OP(SUBX, 0x36, None) OP(MUL, 0x37, None) \
    OP(MULX, 0x38, None) OP(DIV, 0x39, None) OP(DIVX, 0x3a, None) OP(MOD, 0x3b, None) \
    OP(MODX, 0x3c, None) OP(BITAND, 0x3d, None) OP(BITANDX, 0x3e, None) OP(BITOR, 0x3f, None) \
    OP(BITORX, 0x40, None) OP(BITXOR, 0x41, None) OP(BITXORX, 0x42, None) OP(SHL, 0x43, None) \
    OP(SHLX, 0x44, None) OP(SHR, 0x45, None) OP(SHRX, 0x46, None) OP(USHR, 0x47, None) \
    OP(USHRX, 0x48, None) OP(INC, 0x49, None) OP(INCG, 0x4a, Slot) OP(INCA, 0x4b, Slot) \
    OP(INCL, 0x4c, Slot) OP(INCM, 0x4d, Slot) OP(INCLM, 0x4e, Slot) OP(DEC, 0x4f, None) \
    OP(DECG, 0x50, Slot) OP(DECA, 0x51, Slot) OP(DECL, 0x52, Slot) OP(DECAM, 0x53, Slot) \
    OP(DECLM, 0x54, Slot) OP(PREINCX, 0x55, None) OP(POSTINCX, 0x56, None) \
    OP(PREDECX, 0x57, None) OP(POSTDECX, 0x58, None) OP(DELETEW, 0x59, String) \
    OP(DELETEX, 0x5a, None) OP(LT, 0x5b, None) OP(LE, 0x5c, None) OP(EQ, 0x5d, None) \
    OP(NE, 0x5e, None) OP(IDENTITY, 0x5f, None) OP(NOTIDENTITY, 0x60, None) \
    OP(LOGNOT, 0x61, None) OP(BITNOT, 0x62, None) OP(POS, 0x63, None) OP(NEG, 0x64, None) \
    OP(LOGAND, 0x65, Address) OP(LOGOR, 0x66, Address) OP(J, 0x67, Address) OP(JT, 0x68, Address) \
    OP(JF, 0x69, Address) OP(JT_DROP, 0x6a, Address) OP(JLT, 0x6b, Address) OP(RET, 0x6c, None) \
    OP(RETU, 0x6d, None) \
    /* A call of a value: the arguments are on the stack, the function in the accumulator. */ \
    OP(CALLV, 0x6e, Count) \
    /* Throws the accumulator. TRY names what takes over when something is thrown before ENDTRY; \
       the value is loaded there. */ \
    OP(THROW, 0x6f, None) OP(TRY, 0x70, Address) OP(ENDTRY, 0x71, None) \
    /* Loads an object that holds the arguments of the running function. */ \
    OP(ARGUMENTS, 0x72, None) \
    /* As PREINCX and its sisters, of the member whose object lies below its key. */ \
    OP(PREINCE, 0x73, None) OP(POSTINCE, 0x74, None) OP(PREDECE, 0x75, None) \
    OP(POSTDECE, 0x76, None)
// clang-format on

enum class ESVmOpcode : std::uint8_t {
#define ES_OPCODE(name, value, operand) name = value,
    ES_OPCODES(ES_OPCODE)
#undef ES_OPCODE
};

struct ESOpcodeInfo {
    const char* mnemonic;
    ESOperand operand;
};
/// Null for a value that is no opcode.
const ESOpcodeInfo* esOpcodeInfo(std::uint8_t opcode);
