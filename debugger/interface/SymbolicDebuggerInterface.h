#pragma once

#include "debugger/breakpoints/BreakpointDebugger.h"
#include "debugger/expressions/ExpressionContext.h"
#include "debugger/expressions/ExpressionType.h"
#include "debugger/interface/DebuggerHelperFunctions.h"
#include "debugger/interface/Frame.h"
#include "debugger/interface/MemoryDump.h"
#include "debugger/interface/VariableListBuilder.h"

#include <QStringList>

#include <list>
#include <set>

class ProjectElement;
class TargetInterface;
class TargetIOServer;

/// The one face of the debugger towards windows, scripts and the command line.
///
/// There is no thread: whoever drives the debugger asks `isStopped` now and then while the target
/// runs. Addresses are byte addresses, lines of source files and of disassembly count from 1. A
/// failure of the target is an HException, one of an expression a ParserException, a breakpoint
/// that can't be set a DebuggerBreakpointFailure.
class SymbolicDebuggerInterface : public BreakpointDebugger {
public:
    using BreakpointSet = std::set<DebuggerBreakpoint*>;
    static constexpr unsigned None = 0xFFFFFFFF;

    explicit SymbolicDebuggerInterface(DebuggerHelperFunctions* helper) : m_helper(helper) { }
    SymbolicDebuggerInterface(const SymbolicDebuggerInterface&) = delete;
    SymbolicDebuggerInterface& operator=(const SymbolicDebuggerInterface&) = delete;

    DebuggerHelperFunctions& helper() const { return *m_helper; }
    /// Whether the program has come past its start-up code.
    bool startupComplete() const { return m_startupComplete; }
    void setStartupComplete(bool complete) { m_startupComplete = complete; }

    virtual void setTargetInterface(TargetInterface* target) = 0;
    virtual void setTargetIOServer(TargetIOServer* server) = 0;

    // The call stack, innermost first.
    virtual int numcalls() = 0;
    /// Null past the end and for -1.
    virtual Frame* getFrame(int index) = 0;

    // Disassembly. It is text with the addresses that its lines show.
    virtual QStringList getDisassemblyModes() { return {}; }
    virtual void setDisassemblyMode(const QString&) { }
    virtual QString getDisassemblyMode() { return {}; }
    virtual void clearDisassemblyText() = 0;
    virtual void getDisassemblyText(QStringList& lines) = 0;
    /// Goes on upward or downward.
    virtual void moreDisassemblyText(bool up) = 0;
    /// -1 if no line shows the address.
    virtual int getDisassemblyLineNumber(unsigned address) = 0;
    /// None if the line shows no address.
    virtual unsigned getDisassemblyLineAddress(int line) = 0;
    /// The text goes around the address.
    virtual void locateDisassembly(unsigned address) = 0;
    virtual void setDisassemblyExecution(unsigned address) = 0;

    /// Where a frame stands. False without a frame; only `pc` is set if no executable is loaded.
    virtual bool locate(Frame* frame, QString& module, Path& file, QString& function, int& line,
                        unsigned& pc) = 0;
    virtual void setNextStatement(Frame* frame, const Path& file, int line) = 0;
    virtual QStringList executableNames() = 0;
    virtual QStringList sourceFileNames(const QString& executable) = 0;
    virtual void lineNumbers(const QString& executable, const QString& file,
                             std::list<unsigned>& lines) = 0;
    /// Of functions, or of all other symbols.
    virtual QStringList symbolNames(const QString& executable, bool functions) = 0;
    /// Ends a session: forgets breakpoints, frames, executables and the target.
    virtual void clear() = 0;

    // Breakpoints; see BreakpointDebugger.
    using BreakpointDebugger::setBreakpoint;
    virtual QStringList getBreakTriggers() { return {}; }
    virtual QStringList getBreakActions() { return {}; }
    virtual QStringList getHardwareBreakPoints() { return {}; }
    /// True if the line has code; `existing` is then a breakpoint at its address, or null.
    virtual bool canBreakAt(const QString& name, const Path& file, int line,
                            DebuggerBreakpoint*& existing) = 0;
    QString lastMatchedException() override { return {}; }

    virtual int getAddressSizeInBytes() = 0;
    virtual int getWordSizeInBytes() { return getAddressSizeInBytes(); }
    virtual QString formatPC(unsigned pc) = 0;
    /// None if the line has no code.
    virtual unsigned getLineAddress(const QString& name, const Path& file, int line) = 0;
    /// -1 for an address without a line.
    virtual int getAddressLine(unsigned pc, Path& file) = 0;

    // What the target counts and records.
    virtual void resetExecutionCount() { }
    virtual void setExecutionCountEnabled(bool) { }
    virtual bool getExecutionCountEnabled() { return false; }
    virtual void iterateExecutionCount() { }
    virtual bool getExecutionCount(unsigned& /*address*/, unsigned& /*count*/, unsigned& /*extra*/,
                                   QString& /*text*/)
    {
        return false;
    }
    virtual void resetTrace() { }
    virtual void setTraceEnabled(bool) { }
    virtual bool getTraceEnabled() { return false; }
    virtual void iterateTrace() { }
    virtual bool getTrace(unsigned& /*address*/, unsigned& /*cycles*/, QString& /*text*/)
    {
        return false;
    }
    virtual bool canAccessInterruptsEnables() { return true; }
    virtual void setInterruptsEnabled(bool enabled) = 0;
    virtual bool getInterruptsEnabled() = 0;

    // Running.
    virtual void syncSettingsWithProject(ProjectElement*, const QString&) { }
    /// Starts at an entry: a hexadecimal number behind "0x", a symbol, or the reset vector for an
    /// empty text. With `stayStopped` the program doesn't run yet.
    virtual void start(const QString& entry, bool stayStopped) = 0;
    virtual void attach() { }
    virtual void go() = 0;
    virtual void stop() = 0;
    /// By instruction, or by statement.
    virtual void stepinto(bool instruction) = 0;
    virtual void stepover(bool instruction) = 0;
    /// Runs until that frame, the caller's, goes on.
    virtual void stepout(Frame* frame) = 0;
    /// Serves what the program asks of the host, and decides what a stop means.
    virtual bool isStopped() = 0;

    // Values.
    virtual void getGlobalVariables(Frame* frame, VariableListBuilder* builder) = 0;
    virtual void getLocalVariables(Frame* frame, VariableListBuilder* builder) = 0;
    virtual void getParameters(Frame* frame, VariableListBuilder* builder) = 0;
    virtual void getRegisters(Frame* frame, VariableListBuilder* builder) = 0;
    virtual int getRegisterNumber(const QString& name) = 0;
    virtual bool getRegisterValue(Frame* frame, unsigned number, unsigned kind, bool isRegister,
                                  unsigned long long& value) = 0;
    virtual bool setRegisterValue(Frame* frame, unsigned number, unsigned kind,
                                  unsigned long long value, bool isRegister) = 0;
    virtual void evaluateExpression(const ExpressionContext& context, const QString& name,
                                    const QString& expression, VariableListBuilder* builder) = 0;
    virtual void evaluateExpression(const ExpressionContext& context, const QString& expression,
                                    ExpressionType& value) = 0;
    virtual void setExpression(const ExpressionContext& context, const QString& expression,
                               const ExpressionType& value) = 0;

    // Memory. Sizes are bytes, units 1, 2 or 4.
    virtual QStringList getMemorySpaces() = 0;
    /// Whether the address lies in the memory, and the bytes up to the end of its range.
    virtual unsigned getMemoryRange(const QString& space, unsigned address) = 0;
    virtual void dumpMemory(const QString& space, unsigned address, unsigned size, unsigned unit,
                            bool byUnits, MemoryDump* dump) = 0;
    virtual void setMemory(const QString& space, unsigned address, unsigned value,
                           unsigned unit) = 0;
    virtual void getMemory(const QString& space, unsigned address, unsigned size,
                           unsigned char* bytes) = 0;
    virtual void setMemory(const QString& space, unsigned address, unsigned size,
                           const unsigned char* bytes) = 0;

    virtual void loadSymbols(const Path& executable, unsigned offset) = 0;
    virtual void unloadSymbols(const Path& executable) = 0;

    QStringList getExceptionClasses() override { return {}; }
    QStringList getExceptionTypes(unsigned) override { return {}; }
    bool targetHasExceptionClass(unsigned) override { return false; }
    void setExceptionEnabled(const QString&, bool) override { }

    /// The stack is walked from the target's registers, from saved ones, or from an address.
    virtual void locate() = 0;
    virtual void locate(const unsigned* registers) = 0;
    virtual void locate(unsigned pc) = 0;

    /// Addresses stay within what the target has.
    virtual unsigned addressSubtract(unsigned address, unsigned by)
    {
        return address < by ? 0 : address - by;
    }
    virtual unsigned addressAdd(unsigned address, unsigned by)
    {
        return by > None - address ? None : address + by;
    }

private:
    DebuggerHelperFunctions* m_helper;
    bool m_startupComplete = true;
};

/// The debugger of the process; null until its owner sets it.
inline SymbolicDebuggerInterface* debugger = nullptr;
