#pragma once

#include "objfile/msp430/MSP430Instructions.h"
#include "target/msp430/MSP430Flags.h"
#include "target/msp430/MSP430Operands.h"

#include <utility>

enum class RMode { LeftArithmetic, RightArithmetic, RightThroughCarry, RightUnsigned };

/// The instruction engine as a template, so that each owner's accesses are bound at compile time:
/// MSP430InstructionSetSimulator binds them to virtual operations, the simulator's run loop to
/// plain memory. `Owner` derives from this class and gives what MSP430Operands asks for and
/// `unsupportedOpcode`, `call` and `calla`.
///
/// Nothing is allocated and nothing is thrown.
template <class Owner> class MSP430Core : public MSP430Operands<Owner> {
    using Operands = MSP430Operands<Owner>;
    using Operation = MSP430Operation;

public:
    using Operands::Ifetch;
    using Operands::maskOf;
    using Operands::maskOperand;
    using Operands::readXWord;
    using Operands::signOf;
    using Operands::writeXWord;

    /// Executes the instruction at the PC. Returns its cycles, or 0 for one that can't be executed:
    /// the PC is then past the word and the owner's `unsupportedOpcode` has been called with it.
    unsigned singleStep() { return execute(Ifetch()); }

    /// The rest of an instruction whose first word has just been fetched.
    unsigned execute(unsigned word)
    {
        if (word >= FirstTwoOperand)
            return handlers[(word >> 8 & 0xF0) - (FirstTwoOperand >> 8) + (word >> 4 & 0xF)](*this,
                                                                                             word);
        const Operation operation = msp430OperationOf(word);
        if (operation == Operation::Extension) [[unlikely]]
            return executeExtended(word);
        return dispatch(operation, word, MSP430NoExtension{});
    }

protected:
    using Operands::cutAddress;
    using Operands::destinationOperand;
    using Operands::m_sourceMode;
    using Operands::owner;
    using Operands::PC;
    using Operands::setPC;
    using Operands::setSP;
    using Operands::setSR;
    using Operands::signExtendWord;
    using Operands::sourceOperand;
    using Operands::SP;
    using Operands::SR;
    using Operands::writeBack;

    /// What `calla` does where the owner doesn't see subroutine calls itself.
    void enterA(unsigned target)
    {
        const unsigned sp = SP() - 4;
        setSP(sp);
        writeXWord(sp, PC());
        setPC(target);
    }

    /// What `call` does; the SP has been lowered by the caller.
    void enter(unsigned target)
    {
        owner().writeWord(SP(), PC() & 0xFFFF);
        setPC(target);
    }

    template <VMode vmode>
    void setFlags(OperandSize size, unsigned source, unsigned destination, unsigned result)
    {
        setArithmetic(MSP430Flags::ofResult<vmode>(maskOf(size), source, destination, result));
    }

    template <VMode vmode> void setXFlags(unsigned source, unsigned destination, unsigned result)
    {
        setArithmetic(MSP430Flags::ofAddress<vmode>(source, destination, result));
    }

    void rxxm(RMode mode, bool word, int reg, unsigned count)
    {
        const unsigned mask = word ? 0xFFFF : 0xFFFFF;
        const unsigned sign = (mask >> 1) + 1;
        unsigned value = owner().getRegister(reg) & mask;
        unsigned carry = SR() & MSP430Status::C;
        for (unsigned i = 0; i < count; ++i) {
            const unsigned oldCarry = carry;
            if (mode == RMode::LeftArithmetic) {
                carry = (value & sign) != 0;
                value = value << 1 & mask;
                continue;
            }
            carry = value & 1;
            const bool top = mode == RMode::RightArithmetic
                ? (value & sign) != 0
                : mode == RMode::RightThroughCarry && oldCarry != 0;
            value = value >> 1 | (top ? sign : 0);
        }
        owner().setRegister(reg, value);
        using namespace MSP430Status;
        const unsigned flags = carry | (value == 0 ? Z : 0) | ((value & sign) != 0 ? N : 0);
        setSR((SR() & ~(C | Z | N)) | flags);
    }

private:
    void setArithmetic(unsigned flags) { setSR((SR() & ~MSP430Flags::arithmetic) | flags); }
    bool flag(unsigned bit) { return (SR() & bit) != 0; }

    /// C is what Z isn't: how the logical instructions leave it.
    void setCarryToNotZero()
    {
        const unsigned sr = SR();
        using namespace MSP430Status;
        setSR((sr & ~C) | ((sr & Z) != 0 ? 0 : C));
    }

    static int registerOf(unsigned word) { return static_cast<int>(word & 0xF); }
    static int sourceOf(unsigned word) { return static_cast<int>(word >> 8 & 0xF); }
    static int modeOf(unsigned word) { return static_cast<int>(word >> 4 & 3); }

    template <class Extension> static OperandSize sizeOf(unsigned word, Extension extension)
    {
        const bool bit6 = (word & 0x40) != 0;
        if (extension.notAddress())
            return bit6 ? OperandSize::Byte : OperandSize::Word;
        return bit6 ? OperandSize::Address : OperandSize::Byte;
    }

    unsigned executeExtended(unsigned extensionWord)
    {
        const unsigned word = Ifetch();
        const Operation operation = msp430OperationOf(word);
        if (operation == Operation::Extension)
            return 0;
        if (word >= FirstTwoOperand)
            return dispatchTwoOperand(operation, word, MSP430Extension{extensionWord});
        return dispatch(operation, word, MSP430Extension{extensionWord});
    }

    template <class Extension>
    unsigned dispatch(Operation operation, unsigned word, Extension extension)
    {
        switch (operation) {
        case Operation::Jne: return jump(word, !flag(MSP430Status::Z));
        case Operation::Jeq: return jump(word, flag(MSP430Status::Z));
        case Operation::Jnc: return jump(word, !flag(MSP430Status::C));
        case Operation::Jc: return jump(word, flag(MSP430Status::C));
        case Operation::Jn: return jump(word, flag(MSP430Status::N));
        case Operation::Jge: return jump(word, flag(MSP430Status::N) == flag(MSP430Status::V));
        case Operation::Jl: return jump(word, flag(MSP430Status::N) != flag(MSP430Status::V));
        case Operation::Jmp: return jump(word, true);
        case Operation::Rrc:
        case Operation::Rra:
        case Operation::Swpb:
        case Operation::Sxt: return modify(operation, word, extension);
        case Operation::Push: return push(word, extension);
        case Operation::Call: return callSource(word);
        case Operation::Reti: return reti();
        default: return dispatchX(operation, word);
        }
    }

    unsigned dispatchX(Operation operation, unsigned word)
    {
        switch (operation) {
        case Operation::CallaSource: return callaSource(word);
        case Operation::CallaAbsolute: return calla(readXWord(address20(word & 0xF)), 6);
        case Operation::CallaRelative: return callaRelative();
        case Operation::CallaImmediate: return calla(address20(word & 0xF), 4);
        case Operation::PushmA:
        case Operation::PushmW: return pushMultiple(word, operation == Operation::PushmA);
        case Operation::PopmA:
        case Operation::PopmW: return popMultiple(word, operation == Operation::PopmA);
        case Operation::Rrcm: return rotate(RMode::RightThroughCarry, word);
        case Operation::Rram: return rotate(RMode::RightArithmetic, word);
        case Operation::Rlam: return rotate(RMode::LeftArithmetic, word);
        case Operation::Rrum: return rotate(RMode::RightUnsigned, word);
        case Operation::Unsupported:
        case Operation::Extension: owner().unsupportedOpcode(word); return 0;
        default: return addressInstruction(operation, word);
        }
    }

    // Two operands ------------------------------------------------------------------------------

    /// True for the operations that leave the destination as it is.
    static constexpr bool onlyTests(Operation operation)
    {
        return operation == Operation::Cmp || operation == Operation::Bit;
    }

    static constexpr unsigned FirstTwoOperand = 0x4000;

    unsigned dispatchTwoOperand(Operation operation, unsigned word, MSP430Extension extension)
    {
        switch (operation) {
        case Operation::Mov: return twoOperand<Operation::Mov>(word, word, extension);
        case Operation::Add: return twoOperand<Operation::Add>(word, word, extension);
        case Operation::Addc: return twoOperand<Operation::Addc>(word, word, extension);
        case Operation::Subc: return twoOperand<Operation::Subc>(word, word, extension);
        case Operation::Sub: return twoOperand<Operation::Sub>(word, word, extension);
        case Operation::Cmp: return twoOperand<Operation::Cmp>(word, word, extension);
        case Operation::Dadd: return twoOperand<Operation::Dadd>(word, word, extension);
        case Operation::Bit: return twoOperand<Operation::Bit>(word, word, extension);
        case Operation::Bic: return twoOperand<Operation::Bic>(word, word, extension);
        case Operation::Bis: return twoOperand<Operation::Bis>(word, word, extension);
        case Operation::Xor: return twoOperand<Operation::Xor>(word, word, extension);
        default: return twoOperand<Operation::And>(word, word, extension);
        }
    }

    /// Executes the plain instructions of one opcode with one choice of size and addressing modes,
    /// bits 7 to 4, which the compiler then sees as constants.
    template <Operation operation, unsigned modes>
    static unsigned handle(MSP430Core& core, unsigned word)
    {
        return core.twoOperand<operation>(word, modes << 4, MSP430NoExtension{});
    }

    using Handler = unsigned (*)(MSP430Core&, unsigned);
    template <std::size_t... index>
    static constexpr std::array<Handler, sizeof...(index)>
    makeHandlers(std::index_sequence<index...>)
    {
        constexpr auto first = static_cast<std::size_t>(Operation::Mov);
        return {&handle<static_cast<Operation>(first + index / 16), index % 16>...};
    }
    /// By opcode from 4 on and, within one, by bits 7 to 4.
    static constexpr auto handlers = makeHandlers(std::make_index_sequence<12 * 16>());

    /// `word` gives the registers, bits 7 to 4 of `modes` the size and the addressing modes.
    template <Operation operation, class Extension>
    [[gnu::always_inline]] unsigned twoOperand(unsigned word, unsigned modes, Extension extension)
    {
        const OperandSize size = sizeOf(modes, extension);
        const int destinationMode = static_cast<int>(modes >> 7 & 1);
        const int reg = registerOf(word);
        const unsigned source = sourceOperand(sourceOf(word), modeOf(modes), size, extension);
        const unsigned destination = destinationOperand(reg, destinationMode, size, extension);
        if constexpr (operation == Operation::Dadd) {
            decimalAdd(size, source, destination);
        } else {
            const unsigned result = combine<operation>(size, source, destination);
            if constexpr (!onlyTests(operation))
                writeBack(size, result);
            flagsAfter<operation>(size, source, destination, result);
        }
        return msp430TwoOperandCycles(m_sourceMode, destinationMode != 0,
                                      reg == MSP430Register::PC);
    }

    /// The result, with the carry in the bit above the size. A subtraction adds the complement.
    template <Operation operation>
    unsigned combine(OperandSize size, unsigned source, unsigned destination)
    {
        switch (operation) {
        case Operation::Mov: return source;
        case Operation::Add: return source + destination;
        case Operation::Addc: return source + destination + (SR() & MSP430Status::C);
        case Operation::Subc:
            return (~source & maskOf(size)) + destination + (SR() & MSP430Status::C);
        case Operation::Sub:
        case Operation::Cmp: return (~source & maskOf(size)) + 1 + destination;
        case Operation::Bic: return ~source & destination;
        case Operation::Bis: return source | destination;
        case Operation::Xor: return source ^ destination;
        default: return source & destination;
        }
    }

    template <Operation operation>
    void flagsAfter(OperandSize size, unsigned source, unsigned destination, unsigned result)
    {
        switch (operation) {
        case Operation::Add:
        case Operation::Addc: setFlags<VMode::Add>(size, source, destination, result); break;
        case Operation::Sub:
        case Operation::Subc:
        case Operation::Cmp: setFlags<VMode::Subtract>(size, source, destination, result); break;
        case Operation::Xor:
            setFlags<VMode::ExclusiveOr>(size, source, destination, result);
            setCarryToNotZero();
            break;
        case Operation::Bit:
        case Operation::And:
            setFlags<VMode::Clear>(size, source, destination, result);
            setCarryToNotZero();
            break;
        default: break;
        }
    }

    /// Four digits in every size; a digit above 9 counts by its value.
    static unsigned fromDecimal(unsigned digits)
    {
        return (digits & 0xF) + (digits >> 4 & 0xF) * 10 + (digits >> 8 & 0xF) * 100
            + (digits >> 12 & 0xF) * 1000;
    }
    static unsigned toDecimal(unsigned number)
    {
        return number % 10 | number / 10 % 10 << 4 | number / 100 % 10 << 8
            | number / 1000 % 10 << 12;
    }

    void decimalAdd(OperandSize size, unsigned source, unsigned destination)
    {
        using namespace MSP430Status;
        const unsigned sum = fromDecimal(source) + fromDecimal(destination) + (SR() & C);
        const unsigned digits = toDecimal(sum);
        writeBack(size, digits);
        const unsigned limit = size == OperandSize::Byte ? 100
            : size == OperandSize::Word                  ? 10000
                                                         : 100000;
        const unsigned flags =
            sum == 0 ? Z : ((digits & signOf(size)) != 0 ? N : 0) | (sum >= limit ? C : 0);
        setSR((SR() & ~(C | Z | N)) | flags);
    }

    // Jumps and single operands -----------------------------------------------------------------

    unsigned jump(unsigned word, bool taken)
    {
        if (taken) {
            const auto offset = static_cast<std::int16_t>(word << 6) >> 5;
            setPC(PC() + static_cast<unsigned>(offset & ~1));
        }
        return msp430JumpCycles;
    }

    template <class Extension>
    unsigned modify(Operation operation, unsigned word, Extension extension)
    {
        const OperandSize size = sizeOf(word, extension);
        const int mode = modeOf(word);
        const unsigned operand = destinationOperand(registerOf(word), mode, size, extension);
        if (operation == Operation::Swpb)
            writeBack(size, (operand & 0xF0000) | (operand << 8 & 0xFF00) | (operand >> 8 & 0xFF));
        else if (operation == Operation::Sxt)
            signExtend(size, operand);
        else
            shiftRight(operation, size, operand);
        return msp430ShiftCycles(mode);
    }

    void signExtend(OperandSize size, unsigned operand)
    {
        const auto extended = static_cast<unsigned>(static_cast<std::int8_t>(operand));
        const unsigned result = maskOperand(size, extended);
        writeBack(size, result);
        setFlags<VMode::Clear>(size, 0, 0, result);
        setCarryToNotZero();
    }

    void shiftRight(Operation operation, OperandSize size, unsigned operand)
    {
        using namespace MSP430Status;
        const unsigned top = operand & signOf(size);
        const bool oldCarry = flag(C);
        const bool throughCarry = operation == Operation::Rrc;
        const unsigned result = operand >> 1 | (throughCarry ? (oldCarry ? signOf(size) : 0) : top);
        writeBack(size, result);
        setFlags<VMode::Clear>(size, 0, 0, result);
        const unsigned overflow = throughCarry && top == 0 && oldCarry ? V : 0;
        setSR((SR() & ~C) | (operand & C) | overflow);
    }

    template <class Extension> unsigned push(unsigned word, Extension extension)
    {
        const OperandSize size = sizeOf(word, extension);
        setSP(SP() - (size == OperandSize::Address ? 4 : 2));
        const unsigned value = sourceOperand(registerOf(word), modeOf(word), size, extension);
        this->writeMemory(size, SP(), value);
        return msp430PushCycles(m_sourceMode);
    }

    unsigned callSource(unsigned word)
    {
        setSP(SP() - 2);
        const unsigned target =
            sourceOperand(registerOf(word), modeOf(word), OperandSize::Word, MSP430NoExtension{});
        owner().call(target);
        return msp430CallCycles(m_sourceMode);
    }

    unsigned reti()
    {
        const unsigned sp = SP();
        setSR(owner().readWord(sp));
        setPC(owner().readWord(sp + 2));
        setSP(sp + 4);
        return msp430RetiCycles;
    }

    // MSP430X -----------------------------------------------------------------------------------

    /// The 20-bit number of which `high` are the top four bits and the next word the rest.
    unsigned address20(unsigned high) { return Ifetch() | (high & 0xF) << 16; }

    /// Base register plus the offset in the next word. A PC counts as it was before that word.
    unsigned offsetAddress(int reg)
    {
        const unsigned base = owner().getRegister(reg);
        return cutAddress(base + signExtendWord(Ifetch()));
    }

    unsigned calla(unsigned target, unsigned cycles)
    {
        owner().calla(target);
        return cycles;
    }

    unsigned callaRelative() { return calla(readXWord(offsetAddress(MSP430Register::PC)), 6); }

    unsigned callaSource(unsigned word)
    {
        const int reg = registerOf(word);
        const int mode = modeOf(word);
        unsigned target;
        if (mode == 0)
            target = owner().getRegister(reg);
        else if (mode == 1)
            target = readXWord(offsetAddress(reg));
        else
            target = readXAt(reg, mode == 3);
        return calla(target, msp430CallaCycles(mode));
    }

    unsigned readXAt(int reg, bool increment)
    {
        const unsigned address = owner().getRegister(reg);
        const unsigned value = readXWord(cutAddress(address));
        if (increment)
            owner().setRegister(reg, address + 4);
        return value;
    }

    unsigned pushMultiple(unsigned word, bool address)
    {
        const unsigned count = (word >> 4 & 0xF) + 1;
        unsigned sp = SP();
        for (unsigned i = 0; i < count; ++i) {
            const unsigned value = owner().getRegister(registerOf(word - i));
            sp -= address ? 4 : 2;
            this->writeMemory(address ? OperandSize::Address : OperandSize::Word, sp, value);
        }
        setSP(sp);
        return msp430MultipleCycles(count, address);
    }

    unsigned popMultiple(unsigned word, bool address)
    {
        const unsigned count = (word >> 4 & 0xF) + 1;
        unsigned sp = SP();
        for (unsigned i = 0; i < count; ++i) {
            owner().setRegister(registerOf(word + i),
                                address ? readXWord(sp) : owner().readWord(sp));
            sp += address ? 4 : 2;
        }
        setSP(sp);
        return msp430MultipleCycles(count, address);
    }

    unsigned rotate(RMode mode, unsigned word)
    {
        const unsigned count = (word >> 10 & 3) + 1;
        rxxm(mode, (word & 0x10) != 0, registerOf(word), count);
        return count;
    }

    unsigned move(int destination, unsigned value, unsigned cycles)
    {
        owner().setRegister(destination, maskOperand(OperandSize::Address, value));
        return cycles;
    }

    unsigned store(unsigned address, int source)
    {
        writeXWord(address, owner().getRegister(source));
        return 4;
    }

    unsigned addressInstruction(Operation operation, unsigned word)
    {
        const int source = sourceOf(word);
        const int destination = registerOf(word);
        switch (operation) {
        case Operation::MovaIndirect: return move(destination, readXAt(source, false), 3);
        case Operation::MovaIncrement: return moveIncrement(source, destination);
        case Operation::MovaFromAbsolute:
            return move(destination, readXWord(address20(word >> 8)), 4);
        case Operation::MovaFromIndexed:
            return move(destination, readXWord(offsetAddress(source)), 4);
        case Operation::MovaToAbsolute: return store(address20(word), source);
        case Operation::MovaToIndexed: return store(offsetAddress(destination), source);
        case Operation::MovaImmediate:
            return move(destination, address20(word >> 8),
                        destination == MSP430Register::PC ? 3 : 2);
        case Operation::Mova: return move(destination, owner().getRegister(source), 1);
        case Operation::CmpaImmediate:
        case Operation::AddaImmediate:
        case Operation::SubaImmediate:
            return addressArithmetic(operation, address20(word >> 8), destination, 3);
        default: return addressArithmetic(operation, owner().getRegister(source), destination, 1);
        }
    }

    unsigned moveIncrement(int source, int destination)
    {
        move(destination, readXAt(source, false), 3);
        owner().setRegister(source, owner().getRegister(source) + 4);
        return 3;
    }

    static unsigned signExtendAddress(unsigned value)
    {
        return (value & 0x80000) != 0 ? value | 0xFFF00000 : value & 0xFFFFF;
    }

    unsigned addressArithmetic(Operation operation, unsigned operand, int destination,
                               unsigned cycles)
    {
        const unsigned left = signExtendAddress(owner().getRegister(destination));
        const unsigned right = signExtendAddress(operand);
        if (operation == Operation::Adda || operation == Operation::AddaImmediate) {
            move(destination, left + right, cycles);
            setXFlags<VMode::Add>(right, left, left + right);
            return cycles;
        }
        if (operation == Operation::Suba || operation == Operation::SubaImmediate)
            move(destination, left - right, cycles);
        setXFlags<VMode::Subtract>(right, left, left - right);
        return cycles;
    }
};
