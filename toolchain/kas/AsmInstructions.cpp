#include "toolchain/kas/AsmInstructions.h"

#include "objfile/model/TOBFExpr.h"
#include "objfile/msp430/MSP430Instructions.h"
#include "objfile/msp430/TOBFMSP430Insn.h"
#include "toolchain/kas/AsmLine.h"
#include "toolchain/kas/AsmSections.h"

#include <algorithm>
#include <cctype>

namespace {

constexpr int PC = 0, SP = 1;

constexpr unsigned ByteBit = 0x40;
constexpr unsigned Extension = 0x1800;
constexpr unsigned ExtensionZeroCarry = 0x100;
constexpr unsigned ExtensionRepeatRegister = 0x80;
constexpr unsigned ExtensionNotAddress = 0x40; // A/L
constexpr unsigned RepeatMark = 0x10000;

using Operation = MSP430Operation;

constexpr unsigned Move = msp430OpcodeOf(Operation::Mov);
constexpr unsigned MoveImmediate = msp430OpcodeOf(Operation::MovaImmediate);
/// What turns the immediate form of an address instruction into that between registers.
constexpr unsigned RegisterForm = msp430OpcodeOf(Operation::Mova) - MoveImmediate;
/// What turns the 20-bit form of an instruction on several registers into that on words.
constexpr unsigned WordForm = msp430OpcodeOf(Operation::PushmW) - msp430OpcodeOf(Operation::PushmA);
constexpr unsigned RotateWordForm = 0x0010;

constexpr std::int64_t Words = 0x10000, Addresses = 0x100000, Bytes = 0x100;

constexpr unsigned opcode(Operation operation) { return msp430OpcodeOf(operation); }

void requireRange(TOBFExpr* expr, std::int64_t size, const char* what)
{
    const auto value = knownValue(expr);
    if (value && (*value < -size / 2 || *value >= size))
        throw AsmError{std::string(what) + " " + std::to_string(*value) + " is out of range"};
}

AsmOperand constantOperand(int value)
{
    return {AsmOperand::Immediate, PC, new TOBFConstExpr(value)};
}

AsmOperand registerOperand(int reg) { return {AsmOperand::Register, reg, nullptr}; }

unsigned bits(int reg, int position = 0) { return static_cast<unsigned>(reg) << position; }

std::string lowerCase(std::string text)
{
    std::transform(text.begin(), text.end(), text.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return text;
}

} // namespace

void AsmInstructions::assemble(const std::string& word, AsmTokens& tokens,
                               const SourceLocation& where)
{
    m_tokens = &tokens;
    m_where = &where;
    const Form form = resolve(lowerCase(word));
    if (m_sections.atOddAddress())
        throw AsmError{"instruction at an odd address"};
    if (m_repeat != 0 && !form.extended) {
        m_repeat = 0;
        throw AsmError{"'" + word + "' can't be repeated"};
    }
    assembleShape(form);
    m_tokens->expectEnd();
}

AsmInstructions::Form AsmInstructions::resolve(const std::string& word) const
{
    const std::size_t dot = word.find('.');
    const std::string name = word.substr(0, dot);
    Form form{findMnemonic(name), false, Size::Word};
    if (form.mnemonic == nullptr && name.ends_with('x')) {
        form.mnemonic = findMnemonic(std::string_view(name).substr(0, name.size() - 1));
        form.extended = true;
        if (form.mnemonic != nullptr && !form.mnemonic->extendable)
            form.mnemonic = nullptr;
    }
    if (form.mnemonic == nullptr)
        throw AsmError{"unknown instruction '" + word + "'"};
    if (form.mnemonic->shape == AsmShape::RotateUnsigned)
        form.extended = true;
    if ((form.extended || form.mnemonic->needsX) && !m_msp430x)
        throw AsmError{"'" + word + "' needs the option -mcpux"};
    if (dot != std::string::npos)
        form.size = parseSize(word, word.substr(dot + 1), *form.mnemonic, form.extended);
    return form;
}

AsmInstructions::Size AsmInstructions::parseSize(const std::string& word, const std::string& suffix,
                                                 const AsmMnemonic& mnemonic, bool extended) const
{
    const AsmSizes sizes = mnemonic.sizes;
    const bool address = sizes == AsmSizes::WordAddress || extended;
    if (suffix == "w" && sizes != AsmSizes::None)
        return Size::Word;
    if (suffix == "b" && sizes == AsmSizes::ByteWord)
        return Size::Byte;
    if (suffix == "a" && address)
        return Size::Address;
    if (suffix == "a" && mnemonic.extendable)
        throw AsmError{"'" + word + "' has to be written with an x, as '"
                       + std::string(mnemonic.name) + "x.a'"};
    throw AsmError{"'" + word + "' has a size that the instruction doesn't have"};
}

void AsmInstructions::assembleShape(const Form& form)
{
    const AsmMnemonic& mnemonic = *form.mnemonic;
    switch (mnemonic.shape) {
    case AsmShape::TwoOperand: {
        const AsmOperand source = operand();
        m_tokens->expect(",");
        return twoOperand(form, source, destinationOperand());
    }
    case AsmShape::Constant:
        return twoOperand(form, constantOperand(mnemonic.constant), destinationOperand());
    case AsmShape::Twice: {
        const AsmOperand both = destinationOperand();
        return twoOperand(form, both, both);
    }
    case AsmShape::Pop:
        return twoOperand(form, {AsmOperand::Increment, SP, nullptr}, destinationOperand());
    case AsmShape::Branch: return twoOperand(form, operand(), registerOperand(PC));
    case AsmShape::OneOperand:
    case AsmShape::RotateUnsigned:
    case AsmShape::Push:
    case AsmShape::Call: return oneOperand(form, operand());
    case AsmShape::Jump: return jump(form);
    case AsmShape::Fixed: return emit(mnemonic.opcode, nullptr, nullptr, mnemonic.transfer);
    case AsmShape::Address: {
        const AsmOperand source = operand();
        m_tokens->expect(",");
        return address(form, source, operand());
    }
    case AsmShape::AddressConstant:
        return address(form, constantOperand(mnemonic.constant), operand());
    case AsmShape::AddressBranch: return address(form, operand(), registerOperand(PC));
    case AsmShape::AddressCall: return addressCall(operand());
    case AsmShape::PushMultiple:
    case AsmShape::PopMultiple:
    case AsmShape::RotateMultiple: return multiple(form);
    case AsmShape::Repeat: return repeat();
    }
}

AsmOperand AsmInstructions::destinationOperand()
{
    AsmOperand destination = operand();
    if (destination.mode == AsmOperand::Immediate || destination.mode == AsmOperand::Increment)
        throw AsmError{"operand can't be a destination"};
    // The hardware has no @Rn there, but its meaning is that of 0(Rn).
    if (destination.mode == AsmOperand::Indirect)
        return {AsmOperand::Indexed, destination.reg, new TOBFConstExpr(0)};
    return destination;
}

void AsmInstructions::twoOperand(const Form& form, const AsmOperand& source,
                                 const AsmOperand& destination)
{
    const Source from = encodeSource(source, form);
    checkValue(destination, form);
    // The constant 0 comes from a register, R3, without any mode bits.
    const bool fromRegister = source.mode == AsmOperand::Register
        || (source.mode == AsmOperand::Immediate && knownValue(source.value) == 0);
    const bool registersOnly = fromRegister && destination.mode == AsmOperand::Register;
    const std::uint32_t prefix = form.extended ? extension(form, registersOnly) : 0;
    const bool byte = form.extended ? form.size != Size::Word : form.size == Size::Byte;
    const std::uint32_t opcode = prefix | form.mnemonic->opcode | bits(from.reg, 8) | from.mode << 4
        | (byte ? ByteBit : 0) | bits(destination.reg)
        | (destination.mode == AsmOperand::Register ? 0 : 0x80);
    TOBFExpr* second = destination.value;
    if (destination.mode == AsmOperand::Relative) {
        // Whether the source takes a word is known when its constant has been chosen.
        const TOBFMSP430Insn probe(opcode, from.word, second, true);
        second = relativeWord(destination,
                              (form.extended ? 4 : 2) + (probe.operand(0) != nullptr ? 2 : 0));
    }
    const bool move = form.mnemonic->opcode == Move;
    emit(opcode, from.word, second,
         move && destination.mode == AsmOperand::Register && destination.reg == PC);
}

void AsmInstructions::oneOperand(const Form& form, const AsmOperand& operand)
{
    const AsmShape shape = form.mnemonic->shape;
    const bool written = shape == AsmShape::OneOperand || shape == AsmShape::RotateUnsigned;
    if (written && operand.mode == AsmOperand::Immediate)
        throw AsmError{"operand can't be a destination"};
    if (shape == AsmShape::RotateUnsigned && operand.mode != AsmOperand::Register)
        throw AsmError{"'rrux' takes a register"};
    const Source source = encodeSource(operand, form);
    std::uint32_t opcode = form.mnemonic->opcode | source.mode << 4 | bits(source.reg);
    if (form.extended)
        opcode |= extension(form, operand.mode == AsmOperand::Register);
    if (shape == AsmShape::RotateUnsigned)
        opcode |= ExtensionZeroCarry << 16;
    // SWPBX.A and SXTX.A keep the byte bit clear: A/L alone tells their size.
    const bool sized = form.mnemonic->sizes == AsmSizes::ByteWord;
    if (sized && (form.size == Size::Byte || (form.extended && form.size == Size::Address)))
        opcode |= ByteBit;
    emit(opcode, source.word);
}

AsmInstructions::Source AsmInstructions::encodeSource(const AsmOperand& operand, const Form& form)
{
    checkValue(operand, form);
    switch (operand.mode) {
    case AsmOperand::Register: return {0, operand.reg, nullptr};
    case AsmOperand::Indirect: return {2, operand.reg, nullptr};
    case AsmOperand::Increment: return {3, operand.reg, nullptr};
    case AsmOperand::Immediate: return {3, PC, operand.value};
    case AsmOperand::Relative: return {1, PC, relativeWord(operand, form.extended ? 4 : 2)};
    default: return {1, operand.reg, operand.value};
    }
}

void AsmInstructions::checkValue(const AsmOperand& operand, const Form& form) const
{
    if (operand.value == nullptr)
        return;
    if (operand.mode == AsmOperand::Immediate)
        requireRange(operand.value,
                     form.size == Size::Byte       ? Bytes
                         : form.size == Size::Word ? Words
                                                   : Addresses,
                     "value");
    else
        requireRange(operand.value,
                     form.extended || operand.mode == AsmOperand::Symbolic ? Addresses : Words,
                     operand.mode == AsmOperand::Indexed ? "offset" : "address");
}

/// The extension word in the high half of an opcode. Only between registers does it have room for a
/// repeat count, which is used up by this.
std::uint32_t AsmInstructions::extension(const Form& form, bool registersOnly)
{
    std::uint32_t word = Extension | (form.size == Size::Address ? 0 : ExtensionNotAddress);
    if (m_repeat != 0) {
        word |= m_repeat & 0xFFFF;
        m_repeat = 0;
        if (!registersOnly)
            throw AsmError{"only an instruction between registers can be repeated"};
    }
    return word << 16;
}

/// What makes the operand's word, which is taken relative to its own place, come out as written.
TOBFExpr* AsmInstructions::relativeWord(const AsmOperand& operand, int wordOffset)
{
    TOBFExpr* place =
        TOBFBinaryExpr::make(TAG_ADD, m_expressions.here(), new TOBFConstExpr(wordOffset));
    return TOBFBinaryExpr::make(TAG_ADD, place, new TOBFConstExpr(*knownValue(operand.value)));
}

void AsmInstructions::jump(const Form& form)
{
    TOBFExpr* target = m_expressions.parse(*m_tokens, *m_where);
    requireRange(target, Addresses, "address");
    emit(form.mnemonic->opcode, target, nullptr,
         form.mnemonic->opcode == msp430OpcodeOf(Operation::Jmp));
}

void AsmInstructions::address(const Form& form, const AsmOperand& source,
                              const AsmOperand& destination)
{
    const unsigned opcode = form.mnemonic->opcode;
    const bool toRegister = destination.mode == AsmOperand::Register;
    if (source.mode == AsmOperand::Immediate)
        requireRange(source.value, Addresses, "value");
    if (toRegister && source.mode == AsmOperand::Immediate)
        return emit(opcode | bits(destination.reg), source.value, nullptr,
                    opcode == MoveImmediate && destination.reg == PC);
    if (toRegister && source.mode == AsmOperand::Register)
        return emit(opcode | RegisterForm | bits(source.reg, 8) | bits(destination.reg), nullptr,
                    nullptr, opcode == MoveImmediate && destination.reg == PC);
    if (opcode != MoveImmediate)
        throw AsmError{"'" + std::string(form.mnemonic->name)
                       + "' takes a register or a value, and a register"};
    move(source, destination);
}

void AsmInstructions::move(const AsmOperand& source, const AsmOperand& destination)
{
    const auto distance = [&](const AsmOperand& operand) {
        TOBFExpr* value =
            operand.mode == AsmOperand::Symbolic ? addressDistance(operand) : operand.value;
        requireRange(value, Words, "offset");
        return value;
    };
    if (destination.mode == AsmOperand::Register) {
        const unsigned to = bits(destination.reg);
        const bool transfer = destination.reg == PC;
        const unsigned from = bits(source.reg, 8);
        switch (source.mode) {
        case AsmOperand::Indirect:
            return emit(opcode(Operation::MovaIndirect) | from | to, nullptr, nullptr, transfer);
        case AsmOperand::Increment:
            return emit(opcode(Operation::MovaIncrement) | from | to, nullptr, nullptr, transfer);
        case AsmOperand::Absolute:
            requireRange(source.value, Addresses, "address");
            return emit(opcode(Operation::MovaFromAbsolute) | to, source.value, nullptr, transfer);
        default:
            return emit(opcode(Operation::MovaFromIndexed) | from | to, distance(source), nullptr,
                        transfer);
        }
    }
    if (source.mode != AsmOperand::Register)
        throw AsmError{"'mova' takes a register on one side"};
    switch (destination.mode) {
    case AsmOperand::Absolute:
        requireRange(destination.value, Addresses, "address");
        return emit(opcode(Operation::MovaToAbsolute) | bits(source.reg, 8), nullptr,
                    destination.value);
    case AsmOperand::Indirect:
        return emit(opcode(Operation::MovaToIndexed) | bits(source.reg, 8) | bits(destination.reg),
                    nullptr, new TOBFConstExpr(0));
    case AsmOperand::Immediate:
    case AsmOperand::Increment: throw AsmError{"operand can't be a destination"};
    default:
        return emit(opcode(Operation::MovaToIndexed) | bits(source.reg, 8) | bits(destination.reg),
                    nullptr, distance(destination));
    }
}

/// The distance of an address from the word that holds it, behind the instruction word.
TOBFExpr* AsmInstructions::addressDistance(const AsmOperand& operand)
{
    TOBFExpr* word = TOBFBinaryExpr::make(TAG_ADD, m_expressions.here(), new TOBFConstExpr(2));
    return TOBFBinaryExpr::make(TAG_SUB, operand.value, word);
}

void AsmInstructions::addressCall(const AsmOperand& operand)
{
    switch (operand.mode) {
    case AsmOperand::Immediate:
        requireRange(operand.value, Addresses, "value");
        return emit(opcode(Operation::CallaImmediate), operand.value);
    case AsmOperand::Absolute:
        requireRange(operand.value, Addresses, "address");
        return emit(opcode(Operation::CallaAbsolute), operand.value);
    case AsmOperand::Symbolic: return emit(opcode(Operation::CallaRelative), operand.value);
    case AsmOperand::Relative:
        return emit(opcode(Operation::CallaRelative), relativeWord(operand, 2));
    case AsmOperand::Indexed:
        requireRange(operand.value, Words, "offset");
        return emit(opcode(Operation::CallaSource) | 1 << 4 | bits(operand.reg), operand.value);
    case AsmOperand::Register: return emit(opcode(Operation::CallaSource) | bits(operand.reg));
    case AsmOperand::Indirect:
        return emit(opcode(Operation::CallaSource) | 2 << 4 | bits(operand.reg));
    case AsmOperand::Increment:
        return emit(opcode(Operation::CallaSource) | 3 << 4 | bits(operand.reg));
    }
}

/// PUSHM and POPM of up to 16 registers, and the rotations by up to 4 bits.
void AsmInstructions::multiple(const Form& form)
{
    const AsmShape shape = form.mnemonic->shape;
    const bool rotate = shape == AsmShape::RotateMultiple;
    const std::int64_t count = countOperand(rotate ? 4 : 16);
    m_tokens->expect(",");
    const int reg = parseRegister(*m_tokens);
    const auto field = static_cast<unsigned>(count - 1);
    const bool word = form.size == Size::Word;
    if (rotate)
        return emit(form.mnemonic->opcode | (word ? RotateWordForm : 0) | field << 10 | bits(reg));
    if (count > reg + 1)
        throw AsmError{"there are not that many registers from 'R" + std::to_string(reg)
                       + "' down"};
    // POPM names the last register that is filled and encodes the first.
    const int first = shape == AsmShape::PopMultiple ? reg - static_cast<int>(count) + 1 : reg;
    emit(form.mnemonic->opcode | (word ? WordForm : 0) | field << 4 | bits(first));
}

std::int64_t AsmInstructions::countOperand(int highest)
{
    m_tokens->expect("#");
    const auto count = knownValue(m_expressions.parseWithoutLogical(*m_tokens, *m_where));
    if (!count)
        throw AsmError{"count has to be known while assembling"};
    if (*count < 1 || *count > highest)
        throw AsmError{"count " + std::to_string(*count) + " isn't from 1 to "
                       + std::to_string(highest)};
    return *count;
}

/// `RPT #n` or `RPT Rn`, with the instruction behind it, behind "||", or in the next statement.
void AsmInstructions::repeat()
{
    if (m_tokens->sees("#"))
        m_repeat = RepeatMark | static_cast<unsigned>(countOperand(16) - 1);
    else
        m_repeat = RepeatMark | ExtensionRepeatRegister | bits(parseRegister(*m_tokens));
    m_tokens->accept("||");
    if (!m_tokens->atEnd())
        assemble(m_tokens->expectName("instruction"), *m_tokens, *m_where);
}

void AsmInstructions::emit(std::uint32_t opcode, TOBFExpr* first, TOBFExpr* second, bool transfer)
{
    m_sections.add(new TOBFMSP430Insn(opcode, first, second, true),
                   transfer ? AsmSections::Flow::Transfer : AsmSections::Flow::Code);
}
