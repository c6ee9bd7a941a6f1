// The listing text of a machine instruction.

#include "objfile/model/TOBFExpr.h"
#include "objfile/msp430/TOBFMSP430Insn.h"

namespace {

const char* const twoOperandNames[] = {"MOV",  "ADD", "ADDC", "SUBC", "SUB", "CMP",
                                       "DADD", "BIT", "BIC",  "BIS",  "XOR", "AND"};
const char* const twoOperandNamesX[] = {"MOVX",  "ADDX", "ADDCX", "SUBCX", "SUBX", "CMPX",
                                        "DADDX", "BITX", "BICX",  "BISX",  "XORX", "ANDX"};
const char* const oneOperandNames[] = {"RRC", "SWPB", "RRA", "SXT", "PUSH", "CALL"};
const char* const jumpNames[] = {"JNZ", "JZ", "JNC", "JC", "JN", "JGE", "JL", "JMP"};
const char* const rotateNames[] = {"RRCM", "RRAM", "RLAM", "RRUM"};
const char* const pushPopNames[] = {"PUSHM.A", "PUSHM.W", "POPM.A", "POPM.W"};
const char* const Unknown = "???";

std::string regName(unsigned number)
{
    static const char* const special[] = {"PC", "SP", "SR"};
    return number < 3 ? special[number] : "R" + std::to_string(number);
}

std::string text(TOBFExpr* expr)
{
    return expr != nullptr ? expr->printString() : std::string("?");
}

} // namespace

std::string TOBFMSP430Insn::printString()
{
    const std::string prefix = printExtensionPrefix();
    if (formatI())
        return prefix + printFormatI();
    if (formatIII()) {
        const std::string target = operand(0) != nullptr
            ? operand(0)->printString()
            : "$" + std::to_string((static_cast<int>(word() << 22) >> 22) * 2 + 2);
        return std::string("\t") + jumpNames[word() >> 10 & 7] + "\t" + target;
    }
    if (word() >= 0x1400 && word() <= 0x17FF)
        return printPushPop();
    if (formatII())
        return prefix + printFormatII();
    return word() <= 0x0FFF ? printAddressForm() : std::string("\t") + Unknown;
}

std::string TOBFMSP430Insn::printExtensionPrefix() const
{
    const unsigned extension = m_opcode >> 16;
    if (!hasExtension() || operand(0) != nullptr || operand(1) != nullptr)
        return {};
    const unsigned repeat = extension & 0xF;
    if ((extension & 0x80) != 0)
        return "\tRPT " + regName(repeat) + " || ";
    return repeat != 0 ? "\tRPT #" + std::to_string(repeat + 1) + " || " : std::string();
}

char TOBFMSP430Insn::sizeLetter() const
{
    const bool byte = (m_opcode & 0x40) != 0;
    if (!hasExtension())
        return byte ? 'B' : 'W';
    if ((m_opcode & 0x400000) != 0)
        return byte ? 'B' : 'W';
    return byte ? 'A' : '?';
}

std::string TOBFMSP430Insn::printSource(unsigned mode, unsigned reg) const
{
    static const char* const fromR3[] = {"#0", "#1", "#2", "#-1"};
    if (reg == 3)
        return fromR3[mode];
    if (reg == 2 && mode >= 2)
        return mode == 2 ? "#4" : "#8";
    switch (mode) {
    case 0: return regName(reg);
    case 1: return reg == 2 ? "&" + text(operand(0)) : text(operand(0)) + "(" + regName(reg) + ")";
    case 2: return "@" + regName(reg);
    default: return reg == 0 ? "#" + text(operand(0)) : "@" + regName(reg) + "+";
    }
}

std::string TOBFMSP430Insn::printDestination() const
{
    const unsigned reg = m_opcode & 0xF;
    if ((m_opcode & 0x80) == 0)
        return regName(reg);
    const std::string address = text(operand(1));
    return reg == 2 ? "&" + address : address + "(" + regName(reg) + ")";
}

std::string TOBFMSP430Insn::printFormatI() const
{
    const auto& names = hasExtension() ? twoOperandNamesX : twoOperandNames;
    return std::string("\t") + names[(word() >> 12) - 4] + "." + sizeLetter() + "\t"
        + printSource(m_opcode >> 4 & 3, m_opcode >> 8 & 0xF) + ", " + printDestination();
}

std::string TOBFMSP430Insn::printFormatII() const
{
    const unsigned reg = m_opcode & 0xF;
    const unsigned mode = m_opcode >> 4 & 3;
    switch (word() & 0xFFF0) {
    case 0x1300: return "\tRETI";
    case 0x1340:
    case 0x1350:
    case 0x1360:
    case 0x1370: return "\tCALLA\t" + printSource(mode, reg);
    case 0x1380: return "\tCALLA\t&" + text(operand(0));
    case 0x1390: return "\tCALLA\t" + text(operand(0)) + "(PC)";
    case 0x13B0: return "\tCALLA\t#" + text(operand(0));
    default: break;
    }
    const unsigned number = word() >> 7 & 7;
    if (number >= std::size(oneOperandNames))
        return std::string("\t") + Unknown;
    std::string name = std::string("\t") + oneOperandNames[number];
    if (hasExtension())
        name += "X";
    if (number % 2 == 0 || hasExtension())
        name += std::string(".") + sizeLetter();
    return name + "\t" + printSource(mode, reg);
}

std::string TOBFMSP430Insn::printPushPop() const
{
    const unsigned form = word() >> 8 & 3;
    const unsigned first = word() & 0xF;
    const unsigned more = word() >> 4 & 0xF;
    const unsigned last = form < 2 ? first - more : first + more;
    return std::string("\t") + pushPopNames[form] + "\t" + regName(first) + "-"
        + regName(last & 0xF);
}

std::string TOBFMSP430Insn::printAddressForm() const
{
    const unsigned source = m_opcode >> 8 & 0xF;
    const std::string from = regName(source);
    const std::string to = regName(m_opcode & 0xF);
    TOBFExpr* const only = operand(1) != nullptr ? operand(1) : operand(0);
    const std::string value = text(only);
    switch (m_opcode & 0xF0) {
    case 0x00: return "\tMOVA\t@" + from + ", " + to;
    case 0x10: return word() == 0x0110 ? "\tRETA" : "\tMOVA\t@" + from + "+, " + to;
    case 0x20: return "\tMOVA\t&" + value + ", " + to;
    case 0x30: return "\tMOVA\t" + value + "(" + from + "), " + to;
    case 0x40:
    case 0x50:
        return std::string("\t") + rotateNames[m_opcode >> 8 & 3]
            + ((m_opcode & 0x10) != 0 ? ".W\t#" : ".A\t#")
            + std::to_string((m_opcode >> 10 & 3) + 1) + ", " + to;
    case 0x60: return "\tMOVA\t" + from + ", &" + value;
    case 0x70: return "\tMOVA\t" + from + ", " + value + "(" + to + ")";
    case 0x80: return "\tMOVA\t#" + value + ", " + to;
    case 0x90: return "\tCMPA\t#" + value + ", " + to;
    case 0xA0: return "\tADDA\t#" + value + ", " + to;
    case 0xB0: return "\tSUBA\t#" + value + ", " + to;
    case 0xC0: return "\tMOVA\t" + from + ", " + to;
    case 0xD0: return "\tCMPA\t" + from + ", " + to;
    case 0xE0: return "\tADDA\t" + from + ", " + to;
    default: return "\tSUBA\t" + from + ", " + to;
    }
}
