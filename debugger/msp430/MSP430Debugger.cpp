#include "debugger/msp430/MSP430Debugger.h"

#include "debugger/msp430/MSP430NextInstructionCalculator.h"
#include "debugger/msp430/MSP430StackWalk.h"
#include "objfile/model/TOBFSymbol.h"
#include "objfile/model/TOBFType.h"
#include "objfile/msp430/TOBFMSP430Insn.h"
#include "target/HMonitor.h"
#include "target/msp430/MSP430MonitorInterface.h"

#include <iterator>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr unsigned ResetVector = 0xFFFE;
constexpr unsigned SR = 2;
constexpr unsigned RETI = 0x1300;
constexpr unsigned RET = 0x4130;
constexpr unsigned InterruptEnable = 1U << 3;

/// The status register by its flags, as an expression, and the bit of each.
constexpr const char* StatusExpression =
    "((register 2 C 0 1 Z 1 1 N 2 1 GIE 3 1 CPUoff 4 1 OSCoff 5 1 SCG0 6 1 SCG1 7 1 V 8 1;)@SR)";
constexpr const char* StatusFlags[] = {"C",      "Z",    "N",    "GIE", "CPUoff",
                                       "OSCoff", "SCG0", "SCG1", "V"};

MSP430Registers& asMSP430(TargetRegisterInterface* registers)
{
    return *static_cast<MSP430Registers*>(registers);
}

} // namespace

MSP430Debugger::MSP430Debugger(DebuggerHelperFunctions* helper)
    : TOBFDebugger(helper),
      m_disassembler([this](unsigned address) { return peekPC(address); })
{
}

bool MSP430Debugger::hasMSP430X() const
{
    TargetRegisterInterface* const registers = monitor() ? monitor()->registers() : nullptr;
    return registers && asMSP430(registers).extended();
}

/// That of the memory which a stack can lie in.
unsigned MSP430Debugger::ramEnd() const
{
    const auto* const target = dynamic_cast<MSP430MonitorInterface*>(monitor());
    const MSP430DevicesInterface* const devices = target ? target->devices() : nullptr;
    if (!devices)
        return 0;
    return devices->ram2End() != 0 ? devices->ram2End() : devices->ramEnd();
}

// Registers

std::unique_ptr<TargetRegisterInterface> MSP430Debugger::createRegisters(const unsigned* values)
{
    auto registers = std::make_unique<MSP430Registers>(hasMSP430X());
    registers->copy(
        std::span<const std::uint32_t, MSP430Registers::Count>(values, MSP430Registers::Count));
    return registers;
}

std::unique_ptr<TargetRegisterInterface> MSP430Debugger::createRegisters(unsigned pc)
{
    auto registers = std::make_unique<MSP430Registers>(hasMSP430X());
    registers->setPC(pc);
    return registers;
}

int MSP430Debugger::getRegisterNumber(const QString& name)
{
    return MSP430Registers().nameToNumber(name);
}

QString MSP430Debugger::registerNumberToName(unsigned number)
{
    return MSP430Registers().numberToName(number);
}

bool MSP430Debugger::getRegisterValue(Frame* frame, unsigned number, unsigned kind, bool isRegister,
                                      unsigned long long& value)
{
    if (isRegister) {
        if (!frame)
            return false;
        value = frame->registers->getValue(number);
        return true;
    }
    TargetMemoryInterface* const memory = dataMemory();
    if (!memory || kind > 2)
        return false;
    value = kind == 1 ? memory->peekByte(number) : memory->peekUint16(number);
    return true;
}

bool MSP430Debugger::setRegisterValue(Frame* frame, unsigned number, unsigned kind,
                                      unsigned long long value, bool isRegister)
{
    if (isRegister) {
        if (frame)
            frame->registers->setValue(number, static_cast<unsigned>(value));
        return frame != nullptr;
    }
    TargetMemoryInterface* const memory = dataMemory();
    if (memory && kind == 1)
        memory->pokeByte(number, static_cast<unsigned char>(value));
    else if (memory && kind <= 2)
        memory->pokeUint16(number, static_cast<unsigned short>(value));
    return true;
}

void MSP430Debugger::setInterruptsEnabled(bool enabled)
{
    TargetRegisterInterface* const registers = liveRegisters();
    if (!registers)
        return;
    const unsigned before = registers->getValue(SR);
    const unsigned value = enabled ? before | InterruptEnable : before & ~InterruptEnable;
    registers->setValue(SR, value);
    monitor()->registers()->setValue(SR, value);
}

bool MSP430Debugger::getInterruptsEnabled()
{
    TargetRegisterInterface* const registers = liveRegisters();
    return registers && (registers->getValue(SR) & InterruptEnable) != 0;
}

void MSP430Debugger::getRegisters(Frame* frame, VariableListBuilder* builder)
{
    if (!frame)
        return;
    initExpressionParser({frame, Path(), 0});
    for (unsigned number = 0; number < frame->registers->numRegisters(); ++number) {
        const QString name = frame->registers->numberToName(number);
        if (name.isEmpty())
            continue;
        if (number == SR) {
            addStatusRegister(frame, builder, name);
            continue;
        }
        const QString expression = u'@' + name;
        const ExpressionType place = parseAndEvaluate(expression.toUtf8().constData());
        const ExpressionType value(
            static_cast<unsigned long long>(frame->registers->getValue(number)),
            hasMSP430X() ? 3U : 2U, 0U);
        builder->addPrimitive(name, expression, value, value.TypeToString(), place.getMarker());
    }
}

void MSP430Debugger::addStatusRegister(Frame* frame, VariableListBuilder* builder,
                                       const QString& name)
{
    const unsigned long long value = frame->registers->getValue(SR);
    const QString expression = QString::fromLatin1(StatusExpression);
    const ExpressionType place = parseAndEvaluate(StatusExpression);
    const ExpressionType whole(value, 2U, 0U);
    void* const handle =
        builder->beginObject(name, expression, whole, whole.TypeToString(), place.getMarker(), 2);
    for (std::size_t bit = 0; bit < std::size(StatusFlags); ++bit) {
        const QString flag = QString::fromLatin1(StatusFlags[bit]);
        const QString flagExpression = expression + u'.' + flag;
        const ExpressionType flagPlace = parseAndEvaluate(flagExpression.toUtf8().constData());
        builder->addPrimitive(flag, flagExpression, ExpressionType(value >> bit & 1, 2U, 1U),
                              QString(), flagPlace.getMarker());
    }
    builder->endObject(handle);
}

// Code

std::vector<std::unique_ptr<TargetRegisterInterface>>
MSP430Debugger::callersOf(TargetRegisterInterface* innermost)
{
    MSP430StackWalk walk(
        dataMemory(), [this](unsigned address) { return getInsnAt(address); },
        [this](unsigned pc) -> MSP430StackWalk::Function {
            const TOBFSymbol* const function = findFunctionSymbol(pc);
            if (!function || !function->type() || !function->type()->isFunction())
                return {};
            const auto* const type = static_cast<TOBFFunctionType*>(function->type());
            return {type->savedOffset(), static_cast<unsigned>(type->savedMask()),
                    isInterruptHandler(pc)};
        });
    std::vector<std::unique_ptr<TargetRegisterInterface>> callers;
    for (auto& registers : walk.callers(asMSP430(innermost), {ramEnd(), m_maximumCalls}))
        callers.push_back(std::move(registers));
    return callers;
}

/// Whether the function returns as handlers do, as the code from the PC on tells.
bool MSP430Debugger::isInterruptHandler(unsigned pc)
{
    const TOBFSymbol* const function = findFunctionSymbol(pc);
    for (TOBFInsn* item = getInsnAt(pc); item && item->length() > 0;
         item = getInsnAt(pc += static_cast<unsigned>(item->length()))) {
        auto* const insn = dynamic_cast<TOBFMSP430Insn*>(item);
        if (insn && insn->opcode() == RETI)
            return findFunctionSymbol(pc) == function;
        if (insn && insn->opcode() == RET)
            return false;
    }
    return false;
}

unsigned MSP430Debugger::nextInstruction(TargetRegisterInterface* registers, bool over,
                                         unsigned start, unsigned length)
{
    MSP430NextInstructionCalculator calculator(asMSP430(registers), dataMemory(), over);
    return calculator.run(start, length);
}

TargetMemoryInterface* MSP430Debugger::getMemorySegment(const QString&) { return codeMemory(); }

bool MSP430Debugger::debugOperationUsesBreakpoint()
{
    auto* const target = dynamic_cast<MSP430MonitorInterface*>(monitor());
    return target && target->enableSoftwareBreakpoints();
}

DisassembledInstruction MSP430Debugger::disassemble(unsigned address)
{
    const MSP430DisassemblyLine line = m_disassembler.disassemble(address);
    return {QString::fromStdString(line.text), line.length, line.isTransfer, line.target};
}

unsigned MSP430Debugger::getEntryPoint()
{
    return codeMemory() ? codeMemory()->peekUint16(ResetVector) : 0;
}
