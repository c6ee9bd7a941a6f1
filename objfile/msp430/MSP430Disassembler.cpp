#include "objfile/msp430/MSP430Disassembler.h"

#include "objfile/msp430/MSP430Instructions.h"

#include <cstdarg>
#include <cstdint>
#include <cstdio>

namespace {

constexpr unsigned MnemonicColumn = 20;
constexpr unsigned OperandColumn = 30;
/// Some address instructions have their operand closer to the mnemonic.
constexpr unsigned NearOperandColumn = 28;
const char* const Unknown = "????????";

constexpr unsigned ProgramCounter = 0;
constexpr unsigned StackPointer = 1;
constexpr unsigned StatusRegister = 2;
constexpr unsigned ConstantRegister = 3;
constexpr unsigned Indexed = 1;
constexpr unsigned DestinationMode = 0x80;
constexpr unsigned AddressMask = 0xFFFFF;

[[gnu::format(printf, 1, 2)]] std::string formatted(const char* format, ...)
{
    char text[64];
    va_list arguments;
    va_start(arguments, format);
    std::vsnprintf(text, sizeof text, format, arguments);
    va_end(arguments);
    return text;
}

std::string numberedName(unsigned number) { return "R" + std::to_string(number); }

std::string registerName(unsigned number)
{
    return number == ProgramCounter ? "PC" : number == StackPointer ? "SP" : numberedName(number);
}

std::string address20(unsigned value) { return formatted("0x%05x", value); }

/// What behind an emulated form's name becomes the operand.
enum class Shown { Nothing, Source, Destination, Register };

/// What an emulated form asks for beyond its fixed bits.
enum class Condition { None, SameRegister, DestinationNotR3 };

struct Emulation {
    unsigned mask, bits;
    const char* name;
    bool hasSize;
    Shown operand;
    Condition condition = Condition::None;
};

/// In the order in which they are tried. CLRC, CLRN and CLRZ are told by the destination register
/// alone, whatever its mode; a word of the destination is still theirs.
constexpr Emulation emulations[] = {
    {0xFF30, 0x6300, "ADC", true, Shown::Destination},
    {0xF0B0, 0x6000, "RLC", true, Shown::Register, Condition::SameRegister},
    {0xF0B0, 0x5000, "RLA", true, Shown::Register, Condition::SameRegister},
    {0xF08F, 0x4000, "BR", false, Shown::Source},
    {0xFFBF, 0x4303, "NOP", false, Shown::Nothing},
    {0xFF30, 0x4300, "CLR", true, Shown::Destination, Condition::DestinationNotR3},
    {0xFF30, 0x4130, "POP", true, Shown::Destination},
    {0xFF3F, 0xC312, "CLRC", false, Shown::Nothing},
    {0xFF3F, 0xC222, "CLRN", false, Shown::Nothing},
    {0xFF3F, 0xC322, "CLRZ", false, Shown::Nothing},
    {0xFFBF, 0xC232, "DINT", false, Shown::Nothing},
    {0xFF30, 0xA300, "DADC", true, Shown::Destination},
    {0xFFBF, 0xD232, "EINT", false, Shown::Nothing},
    {0xFFBF, 0xD312, "SETC", false, Shown::Nothing},
    {0xFFBF, 0xD222, "SETN", false, Shown::Nothing},
    {0xFFBF, 0xD322, "SETZ", false, Shown::Nothing},
};

constexpr const char* jumpNames[] = {"JNZ", "JZ", "JNC", "JC", "JN", "JGE", "JL", "JMP"};

/// Decodes the instruction at one address.
class Decoder {
public:
    Decoder(const MSP430Disassembler::WordReader& readWord, unsigned address)
        : m_readWord(readWord),
          m_first(address),
          m_next(address)
    {
    }

    MSP430DisassemblyLine decode();

private:
    struct Operand {
        std::string text;
        unsigned value = 0; ///< of the operand word, if there is one
    };

    unsigned nextWord();
    void takeExtension();
    void decodeWord();
    void twoOperand();
    void emulated(const Emulation& emulation);
    void oneOperand();
    void shiftOrCall();
    void callAddress();
    void multiple();
    void jump();
    void addressInstruction();
    void addressLoad(const std::string& operand, unsigned column = OperandColumn);
    void addressImmediate();
    void addressRegister();
    void addressRotate();

    unsigned sourceRegister() const { return m_word >> 8 & 0xF; }
    unsigned lowRegister() const { return m_word & 0xF; }
    unsigned mode() const { return m_word >> 4 & 3; }
    const char* tableName(unsigned word) const;
    bool matches(const Emulation& emulation) const;
    std::string sizeSuffix() const;
    std::string wordText(unsigned value) const;
    Operand source(unsigned number);
    std::string destination();

    void put(const std::string& name, const std::string& operand, unsigned column = OperandColumn);
    void transferTo(unsigned target);
    void branchTo(const Operand& operand, unsigned number);

    const MSP430Disassembler::WordReader& m_readWord;
    const unsigned m_first;
    unsigned m_next;
    unsigned m_word = 0;
    bool m_extended = false;
    bool m_isWordOrByte = false; ///< the A/L bit
    unsigned m_sourceHigh = 0;
    unsigned m_destinationHigh = 0;
    MSP430DisassemblyLine m_line;
};

MSP430DisassemblyLine Decoder::decode()
{
    m_word = nextWord();
    if ((m_word & 0xF800) == 0x1800)
        takeExtension();
    decodeWord();
    m_line.length = m_next - m_first;
    return std::move(m_line);
}

/// Consumes a word; its hexadecimal goes ahead of what has been decoded so far.
unsigned Decoder::nextWord()
{
    const unsigned word = m_readWord(m_next) & 0xFFFF;
    if (m_line.text.empty())
        m_line.text.assign(MnemonicColumn, ' ');
    m_line.text.replace((m_next - m_first) * 2, 4, formatted("%02x%02x", word & 0xFF, word >> 8));
    m_next += 2;
    return word;
}

void Decoder::takeExtension()
{
    m_extended = true;
    m_isWordOrByte = (m_word & 0x40) != 0;
    m_sourceHigh = (m_word >> 7 & 0xF) << 16;
    m_destinationHigh = (m_word & 0xF) << 16;
    m_word = nextWord();
}

void Decoder::decodeWord()
{
    if (m_word == 0x4130)
        m_line.text += "RET";
    else if (m_word == 0x0110)
        m_line.text += "RETA";
    else if (m_word >= 0x4000)
        twoOperand();
    else if (m_word >= 0x2000)
        jump();
    else if (m_word >= 0x1800)
        m_line.text += Unknown;
    else if (m_word >= 0x1400)
        multiple();
    else if (m_word >= 0x1000)
        oneOperand();
    else
        addressInstruction();
}

void Decoder::twoOperand()
{
    for (const Emulation& emulation : emulations)
        if (matches(emulation))
            return emulated(emulation);
    const std::string from = source(sourceRegister()).text;
    put(tableName(m_word) + sizeSuffix(), from + ", " + destination());
}

bool Decoder::matches(const Emulation& emulation) const
{
    if ((m_word & emulation.mask) != emulation.bits)
        return false;
    switch (emulation.condition) {
    case Condition::SameRegister: return sourceRegister() == lowRegister();
    case Condition::DestinationNotR3: return lowRegister() != ConstantRegister;
    default: return true;
    }
}

void Decoder::emulated(const Emulation& emulation)
{
    const std::string name = emulation.name + (emulation.hasSize ? sizeSuffix() : std::string());
    switch (emulation.operand) {
    case Shown::Nothing:
        if ((m_word & DestinationMode) != 0)
            nextWord();
        m_line.text += name;
        break;
    case Shown::Destination: put(name, destination()); break;
    case Shown::Register: put(name, registerName(lowRegister())); break;
    case Shown::Source: {
        const Operand operand = source(sourceRegister());
        put(name, operand.text);
        branchTo(operand, sourceRegister());
    }
    }
}

void Decoder::oneOperand()
{
    switch (m_word & 0xFFF0) {
    case 0x1300: m_line.text += "RETI"; break;
    case 0x1340:
    case 0x1350:
    case 0x1360:
    case 0x1370: {
        const Operand operand = source(lowRegister());
        put("CALLA", operand.text);
        transferTo(operand.value);
        break;
    }
    case 0x1380:
    case 0x1390:
    case 0x13B0: callAddress(); break;
    default: shiftOrCall();
    }
}

void Decoder::callAddress()
{
    const bool isRelative = (m_word & 0xFFF0) == 0x1390;
    const char* const prefix = isRelative ? "" : (m_word & 0xFFF0) == 0x1380 ? "&" : "#";
    unsigned target = (m_word & 0xF) << 16;
    target += nextWord();
    if (isRelative)
        target += m_next;
    put("CALLA", prefix + address20(target));
    transferTo(target);
}

void Decoder::shiftOrCall()
{
    const unsigned number = m_word >> 7 & 7;
    if (number >= 6) {
        m_line.text = Unknown;
        return;
    }
    std::string name = tableName(m_word & 0xFF80);
    if (m_extended || number % 2 == 0)
        name += sizeSuffix();
    const Operand operand = source(lowRegister());
    put(name, operand.text);
    if (msp430OperationOf(m_word & 0xFF80) == MSP430Operation::Call)
        branchTo(operand, lowRegister());
}

void Decoder::multiple()
{
    const int first = static_cast<int>(lowRegister());
    const int more = static_cast<int>(m_word >> 4 & 0xF);
    const bool isPush = m_word < 0x1600;
    put(tableName(m_word), formatted("R%d-R%d", first, isPush ? first - more : first + more));
}

void Decoder::jump()
{
    const int offset = static_cast<int>((m_word & 0x3FF) ^ 0x200) - 0x200;
    const unsigned target = (m_next + static_cast<unsigned>(2 * offset)) & AddressMask;
    put(jumpNames[m_word >> 10 & 7], address20(target));
    transferTo(target);
}

void Decoder::addressInstruction()
{
    const unsigned r = sourceRegister();
    const unsigned d = lowRegister();
    switch (m_word & 0xF0) {
    case 0x00: addressLoad(d == 0 ? registerName(r) : "@" + numberedName(r)); break;
    case 0x10: addressLoad("@" + numberedName(r) + "+"); break;
    case 0x20: addressLoad("&" + address20(nextWord() + (r << 16)), NearOperandColumn); break;
    case 0x30: addressLoad(formatted("%d(R%u)", static_cast<std::int16_t>(nextWord()), r)); break;
    case 0x40:
    case 0x50: addressRotate(); break;
    case 0x60: put("MOVA", formatted("R%u, &0x%05x", r, nextWord() + (d << 16))); break;
    case 0x70:
        put("MOVA", formatted("R%u, %d(R%u)", r, static_cast<std::int16_t>(nextWord()), d));
        break;
    case 0x80:
    case 0x90:
    case 0xA0:
    case 0xB0: addressImmediate(); break;
    default: addressRegister();
    }
}

/// MOVA to a register, of which the PC makes it a branch.
void Decoder::addressLoad(const std::string& operand, unsigned column)
{
    if (lowRegister() == ProgramCounter)
        put("BRA", operand, column);
    else
        put("MOVA", operand + ", " + numberedName(lowRegister()), column);
}

void Decoder::addressImmediate()
{
    const unsigned value = nextWord() + (sourceRegister() << 16);
    const std::string text = "#" + address20(value);
    switch (msp430OperationOf(m_word)) {
    case MSP430Operation::MovaImmediate:
        if (value == 0 && lowRegister() != ProgramCounter)
            put("CLRA", numberedName(lowRegister()));
        else
            addressLoad(text);
        break;
    case MSP430Operation::SubaImmediate:
        put("SUBA", text + ", " + numberedName(lowRegister()));
        break;
    default: put(tableName(m_word), text + ", " + numberedName(lowRegister()), NearOperandColumn);
    }
}

void Decoder::addressRegister()
{
    const std::string from = registerName(sourceRegister());
    if (msp430OperationOf(m_word) == MSP430Operation::Mova && lowRegister() == ProgramCounter)
        put("BRA", from);
    else
        put(tableName(m_word), from + ", " + registerName(lowRegister()));
}

void Decoder::addressRotate()
{
    put(tableName(m_word), formatted("#%u, R%u", (m_word >> 10 & 3) + 1, lowRegister()));
}

const char* Decoder::tableName(unsigned word) const
{
    return findMSP430Instruction(static_cast<std::uint16_t>(word))->mnemonic;
}

/// The dot and size letter, behind the "X" of an instruction with an extension word.
std::string Decoder::sizeSuffix() const
{
    const bool isByte = (m_word & 0x40) != 0;
    if (!m_extended)
        return isByte ? ".B" : ".W";
    if (m_isWordOrByte)
        return isByte ? "X.B" : "X.W";
    return isByte ? "X.A" : "X.?";
}

std::string Decoder::wordText(unsigned value) const
{
    return m_extended ? address20(value) : formatted("0x%04x", value);
}

Decoder::Operand Decoder::source(unsigned number)
{
    static constexpr const char* fromR3[] = {"#0", "#1", "#2", "#-1"};
    if (number == ConstantRegister)
        return {fromR3[mode()]};
    if (number == StatusRegister && mode() > Indexed)
        return {mode() == 2 ? "#4" : "#8"};
    if (mode() == 0)
        return {registerName(number)};
    if (mode() == 2)
        return {"@" + numberedName(number)};
    if (mode() == 3 && number != ProgramCounter)
        return {"@" + numberedName(number) + "+"};
    const unsigned value = nextWord() + m_sourceHigh;
    const std::string text = wordText(value);
    if (mode() == 3)
        return {"#" + text, value};
    if (number == ProgramCounter)
        return {text, value};
    return {number == StatusRegister ? "&" + text : text + "(" + numberedName(number) + ")", value};
}

std::string Decoder::destination()
{
    const unsigned number = lowRegister();
    if ((m_word & DestinationMode) == 0)
        return registerName(number);
    const unsigned value = nextWord() + m_destinationHigh;
    switch (number) {
    case ProgramCounter: return wordText(value);
    case StackPointer: return wordText(value) + "(SP)";
    case StatusRegister: return "&" + wordText(value);
    default: return formatted("0x%04x(R%u)", value, number);
    }
}

void Decoder::put(const std::string& name, const std::string& operand, unsigned column)
{
    m_line.text += name;
    m_line.text.resize(column, ' ');
    m_line.text += operand;
}

void Decoder::transferTo(unsigned target)
{
    m_line.isTransfer = true;
    m_line.target = target;
}

/// An operand word that is indexed on the PC counts from its own end.
void Decoder::branchTo(const Operand& operand, unsigned number)
{
    const bool isRelative = mode() == Indexed && number == ProgramCounter;
    transferTo(operand.value + (isRelative ? m_next : 0));
}

} // namespace

MSP430DisassemblyLine MSP430Disassembler::disassemble(unsigned address) const
{
    return Decoder(m_readWord, address).decode();
}
