#pragma once

#include "debugger/core/TOBFDebugger.h"
#include "objfile/msp430/MSP430Disassembler.h"

/// The debugger for MSP430 and MSP430X.
class MSP430Debugger final : public TOBFDebugger {
public:
    /// The default of the depth of a call stack, in stack slots looked at.
    static constexpr unsigned DefaultMaximumBacktraceCalls = 100;

    explicit MSP430Debugger(DebuggerHelperFunctions* helper);

    void setMaximumBacktraceCalls(unsigned calls) { m_maximumCalls = calls; }

    int getAddressSizeInBytes() override { return 3; }
    int getWordSizeInBytes() override { return 2; }
    void setInterruptsEnabled(bool enabled) override;
    bool getInterruptsEnabled() override;
    void getRegisters(Frame* frame, VariableListBuilder* builder) override;
    int getRegisterNumber(const QString& name) override;
    bool getRegisterValue(Frame* frame, unsigned number, unsigned kind, bool isRegister,
                          unsigned long long& value) override;
    bool setRegisterValue(Frame* frame, unsigned number, unsigned kind, unsigned long long value,
                          bool isRegister) override;

protected:
    std::vector<std::unique_ptr<TargetRegisterInterface>>
    callersOf(TargetRegisterInterface* innermost) override;
    unsigned nextInstruction(TargetRegisterInterface* registers, bool over, unsigned start,
                             unsigned length) override;
    std::unique_ptr<TargetRegisterInterface> createRegisters(const unsigned* values) override;
    std::unique_ptr<TargetRegisterInterface> createRegisters(unsigned pc) override;
    TargetMemoryInterface* getMemorySegment(const QString& name) override;
    bool debugOperationUsesBreakpoint() override;
    DisassembledInstruction disassemble(unsigned address) override;
    unsigned getEntryPoint() override;
    int registerNameToNumber(const QString& name) override { return getRegisterNumber(name); }
    QString registerNumberToName(unsigned number) override;

private:
    bool isInterruptHandler(unsigned pc);
    bool hasMSP430X() const;
    unsigned ramEnd() const;
    void addStatusRegister(Frame* frame, VariableListBuilder* builder, const QString& name);

    unsigned m_maximumCalls = DefaultMaximumBacktraceCalls;
    MSP430Disassembler m_disassembler;
};
