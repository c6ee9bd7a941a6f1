#pragma once

#include "debugger/breakpoints/TOBFBreakpoint.h"
#include "debugger/disassembly/DisassemblyInfo.h"
#include "debugger/expressions/TOBFExpressionEvaluator.h"
#include "debugger/interface/SymbolicDebuggerInterface.h"
#include "objfile/query/ObjectDisassembler.h"

#include <memory>
#include <optional>
#include <vector>

class HMonitor;
class SymbolicDebug;
class TargetMemoryInterface;
class TargetRegisterInterface;
class TOBFInsn;
class TOBFSection;

/// The debugger for programs of the native object format, but for what depends on the processor.
class TOBFDebugger : public SymbolicDebuggerInterface,
                     public ObjectDisassembler,
                     protected TOBFExpressionEvaluator {
public:
    /// The newest one is the disassembler of object files.
    explicit TOBFDebugger(DebuggerHelperFunctions* helper);
    ~TOBFDebugger() override;

    void setTargetInterface(TargetInterface* target) override;
    void setTargetIOServer(TargetIOServer* server) override { m_targetIOServer = server; }
    HMonitor* monitor() const { return m_monitor; }

    int numcalls() override { return static_cast<int>(m_frames.size()); }
    Frame* getFrame(int index) override;
    bool locate(Frame* frame, QString& module, Path& file, QString& function, int& line,
                unsigned& pc) override;
    void locate() override;
    void locate(const unsigned* registers) override;
    void locate(unsigned pc) override;
    bool canLocate() const { return m_currentFrame != nullptr; }
    void setNextStatement(Frame* frame, const Path& file, int line) override;
    /// Whether the PC of the innermost frame is the first address of a statement.
    bool atStatement();

    QStringList executableNames() override;
    QStringList sourceFileNames(const QString& executable) override;
    void lineNumbers(const QString& executable, const QString& file,
                     std::list<unsigned>& lines) override;
    QStringList symbolNames(const QString& executable, bool functions) override;
    void clear() override;
    void loadSymbols(const Path& executable, unsigned offset) override;
    void unloadSymbols(const Path& executable) override;
    /// The executable that has code at the address, or the first one; null if none is loaded.
    SymbolicDebug* symbols(unsigned pc);

    // Addresses
    int getAddressLine(unsigned pc, Path& file) override;
    unsigned getLineAddress(const QString& name, const Path& file, int line) override;
    QString formatPC(unsigned pc) override { return formatAddress(pc); }
    QString formatAddress(unsigned address);
    QString getSymbolicName(unsigned address);
    TOBFInsn* getInsnAt(unsigned address);
    TOBFSymbol* findFunctionSymbol(unsigned address, bool exact = false);
    bool getAddressRange(unsigned address, unsigned& start, unsigned& length);
    bool getLinkerSymbolValue(const QString& name, unsigned& value);
    unsigned addressAdd(unsigned address, unsigned by) override;
    unsigned addressSubtract(unsigned address, unsigned by) override;
    bool addressValid(unsigned address);

    // Breakpoints
    QStringList getBreakTriggers() override;
    QStringList getBreakActions() override;
    QStringList getHardwareBreakPoints() override;
    DebuggerBreakpoint* setBreakpoint(const QString& name, const Path& file, int line, int count,
                                      bool hardware, bool temporary, const QString& action,
                                      const QString& hardwareIndex) override;
    DebuggerBreakpoint* setBreakpoint(const ExpressionContext& context, const QString& expression,
                                      const QString& trigger, int count, bool hardware,
                                      bool temporary, const QString& action,
                                      const QString& hardwareIndex) override;
    /// At an address; null if the target refuses it.
    TOBFBreakpoint* setBreakpoint(unsigned address, bool temporary, bool hardware, int count,
                                  int hardwareIndex, const QString& action);
    void clearBreakpoint(DebuggerBreakpoint* breakpoint) override;
    bool canBreakAt(const QString& name, const Path& file, int line,
                    DebuggerBreakpoint*& existing) override;
    void chainFrom(DebuggerBreakpoint* breakpoint, DebuggerBreakpoint* from) override;
    BreakpointSet lastMatchedBreakpoints() override;

    // Exceptions: the faults that the target finds in a program
    QString lastMatchedException() override;
    QStringList getExceptionClasses() override;
    QStringList getExceptionTypes(unsigned exceptionClass) override;
    bool targetHasExceptionClass(unsigned exceptionClass) override;
    void setExceptionEnabled(const QString& exception, bool enabled) override;

    // Counts and trace
    void resetExecutionCount() override;
    void setExecutionCountEnabled(bool enabled) override;
    bool getExecutionCountEnabled() override;
    void iterateExecutionCount() override;
    bool getExecutionCount(unsigned& address, unsigned& count, unsigned& extra,
                           QString& text) override;
    void resetTrace() override;
    void setTraceEnabled(bool enabled) override;
    bool getTraceEnabled() override;
    void iterateTrace() override;
    bool getTrace(unsigned& address, unsigned& cycles, QString& text) override;

    // Running
    void start(const QString& entry, bool stayStopped) override;
    void attach() override;
    void go() override;
    void stop() override;
    void stepinto(bool instruction) override { step(instruction, false); }
    void stepover(bool instruction) override { step(instruction, true); }
    void stepout(Frame* frame) override;
    bool isStopped() override;

    // Values
    void getGlobalVariables(Frame* frame, VariableListBuilder* builder) override;
    void getLocalVariables(Frame* frame, VariableListBuilder* builder) override;
    void getParameters(Frame* frame, VariableListBuilder* builder) override;
    void evaluateExpression(const ExpressionContext& context, const QString& name,
                            const QString& expression, VariableListBuilder* builder) override;
    void evaluateExpression(const ExpressionContext& context, const QString& expression,
                            ExpressionType& value) override;
    void setExpression(const ExpressionContext& context, const QString& expression,
                       const ExpressionType& value) override;

    // Memory
    QStringList getMemorySpaces() override { return {}; }
    unsigned getMemoryRange(const QString& space, unsigned address) override;
    void dumpMemory(const QString& space, unsigned address, unsigned size, unsigned unit,
                    bool byUnits, MemoryDump* dump) override;
    void setMemory(const QString& space, unsigned address, unsigned value, unsigned unit) override;
    void getMemory(const QString& space, unsigned address, unsigned size,
                   unsigned char* bytes) override;
    void setMemory(const QString& space, unsigned address, unsigned size,
                   const unsigned char* bytes) override;

    // Disassembly
    void clearDisassemblyText() override { m_disassembly.reset(); }
    void getDisassemblyText(QStringList& lines) override;
    void moreDisassemblyText(bool up) override;
    int getDisassemblyLineNumber(unsigned address) override;
    unsigned getDisassemblyLineAddress(int line) override;
    void locateDisassembly(unsigned address) override;
    void setDisassemblyExecution(unsigned address) override;
    void setDisassembleRange(unsigned address, unsigned size, const unsigned char* bytes) override;
    QString disassembleInstructionWithoutMemoryAccess(unsigned address) override;

protected:
    // The processor's part.
    /// The frames above the innermost one.
    virtual std::vector<std::unique_ptr<TargetRegisterInterface>>
    callersOf(TargetRegisterInterface* innermost) = 0;
    /// Where a step ends that begins at the PC and leaves the range.
    virtual unsigned nextInstruction(TargetRegisterInterface* registers, bool over, unsigned start,
                                     unsigned length) = 0;
    virtual std::unique_ptr<TargetRegisterInterface> createRegisters(const unsigned* values) = 0;
    virtual std::unique_ptr<TargetRegisterInterface> createRegisters(unsigned pc) = 0;
    virtual TargetMemoryInterface* getMemorySegment(const QString& name) = 0;
    virtual bool debugOperationUsesBreakpoint() = 0;
    virtual DisassembledInstruction disassemble(unsigned address) = 0;
    virtual unsigned getEntryPoint() = 0;

    // The evaluator's view of the target.
    void readMemory(unsigned address, unsigned size, unsigned char* buffer) override;
    void writeMemory(unsigned address, unsigned size, const unsigned char* buffer) override;
    void readCodeMemory(unsigned address, unsigned size, unsigned char* buffer) override;
    void writeCodeMemory(unsigned address, unsigned size, const unsigned char* buffer) override;
    void readEepromMemory(unsigned address, unsigned size, unsigned char* buffer) override;
    void writeEepromMemory(unsigned address, unsigned size, const unsigned char* buffer) override;
    void readPeripheralMemory(unsigned address, unsigned size, unsigned char* buffer) override;
    void writePeripheralMemory(unsigned address, unsigned size,
                               const unsigned char* buffer) override;
    using TOBFExpressionEvaluator::getRegister;
    unsigned long long getRegister(unsigned number) override;
    unsigned getRegisterLength(unsigned number) override;
    void setRegister(unsigned number, unsigned long long value) override;
    TOBFSymbol* getSymbol(const char* name) override;
    TOBFType* getNamedType(const char* name) override;
    unsigned getSPValue(unsigned number) override;
    int getSPAdjustment() override;

    TargetMemoryInterface* dataMemory() const;
    TargetMemoryInterface* codeMemory() const;
    /// A word of what is disassembled: of bytes that were given, else of the target. 0 without one.
    unsigned peekPC(unsigned address);
    TargetRegisterInterface* liveRegisters() const;
    /// Chooses the scope in which expressions are read.
    void initExpressionParser(const ExpressionContext& context);

private:
    struct DisassemblyImage {
        unsigned start = 0;
        std::vector<unsigned char> bytes;
        bool covers(unsigned address, unsigned size) const
        {
            return address >= start && address + size <= start + bytes.size();
        }
    };
    struct DebugIO {
        unsigned control;
        unsigned communication;
    };
    using Breakpoints = std::vector<std::unique_ptr<TOBFBreakpoint>>;

    void setFrames(std::unique_ptr<TargetRegisterInterface> own, TargetRegisterInterface* innermost,
                   bool live);
    /// Throws HException without one.
    HMonitor& target() const;
    void step(bool instruction, bool over);
    void resume();
    void handleBreakpoint();
    bool moveStep(TOBFBreakpoint& breakpoint);
    void removeTempBreakpoints();
    void enableDebugIO();
    bool mayBeRequest();
    bool handleDebugIO(unsigned& operation);
    TOBFBreakpoint* findBreakpoint(const HBreakpoint* record);
    Breakpoints::iterator findBreakpoint(Breakpoints& list, const DebuggerBreakpoint* breakpoint);
    void releaseChainsFrom(const HBreakpoint* from);
    TOBFBreakpoint* place(BreakpointChain chain, bool temporary, Breakpoints& list);
    TOBFSection* sectionOf(unsigned address);
    TOBFSymbol* localSymbol(const char* name, unsigned pc);
    QString sourceFileOf(unsigned pc);
    void memoryRead(TargetMemoryInterface* memory, unsigned address, unsigned size,
                    unsigned char* buffer);
    void memoryWrite(TargetMemoryInterface* memory, unsigned address, unsigned size,
                     const unsigned char* buffer);
    TargetMemoryInterface* segment(const QString& space);
    const DisassemblyInfo& disassemblyInfo();
    DisassemblyInfo generateDisassembly(unsigned from, unsigned to);

    TargetInterface* m_target = nullptr;
    HMonitor* m_monitor = nullptr;
    TargetIOServer* m_targetIOServer = nullptr;
    std::vector<std::unique_ptr<TargetRegisterInterface>> m_frameRegisters;
    std::vector<Frame> m_frames;
    Breakpoints m_breakpoints;           ///< those that an arrival matches
    Breakpoints m_expressionBreakpoints; ///< those with another trigger
    std::vector<SymbolicDebug*> m_symbols;
    bool m_stopped = true;
    Path m_expressionFile;
    int m_expressionLine = 0;
    Frame* m_currentFrame = nullptr;
    std::optional<DebugIO> m_debugIO;
    DisassemblyImage m_image;
    std::optional<DisassemblyInfo> m_disassembly;
    unsigned m_disassemblyTop = 0;
    unsigned m_disassemblyBottom = 0;
};
