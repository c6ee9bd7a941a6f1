#pragma once

#include "target/BreakpointMatcher.h"
#include "target/HMonitor.h"
#include "target/InstructionTrace.h"
#include "target/SimulatedPeripherals.h"
#include "target/SimulatorErrors.h"
#include "target/TargetIOInterfaces.h"

#include <limits>
#include <memory>
#include <span>
#include <vector>

/// How far a run may go; 64-bit counts of cycles since reset and of passes from now on.
struct RunLimits {
    static constexpr std::uint64_t None = std::numeric_limits<std::uint64_t>::max();
    std::uint64_t cycles = None;
    std::uint64_t passes = None;
};

/// Why the last run came back.
enum class StopReason { Requested, Breakpoint, SoftwareBreakpoint, Error, CycleLimit, PassLimit };

/// The processor-independent half of a simulated target: run loop, breakpoints, instruction trace,
/// execution counts and errors. `go` blocks until the target has stopped; while it runs, the host
/// lives through the event function only, which is also how a call of `stop` gets in.
class SimulatedHMonitor : public HMonitor {
public:
    /// `peripheralFile` is the default of that property; an empty one means that the target has no
    /// peripherals, and none of their properties.
    SimulatedHMonitor(const QString& title, unsigned capabilities,
                      TargetInterfaceHelperFunctions* host, const QString& peripheralFile);
    ~SimulatedHMonitor() override;

    bool isConnected() const override { return m_connected; }
    bool isStopped() override { return m_stopped; }
    std::uint64_t cycleCount() const override { return m_cycleCount; }
    void reset(bool stayStopped, bool forDownload) override;
    void go() override;
    void start(bool setPC, unsigned pc) override;
    void startDebugging(bool setPC, unsigned pc, bool stayStopped) override;
    void step() override;
    void stop() override;
    void clear() override;
    void getProperties(PropertyValueList& list) override;

    int numErrors() override { return m_allErrors ? 8 : 6; }
    const char* getError(int number) override { return SimulatorErrors::text(number); }
    bool errorEnabled(const char* name) override;
    void setErrorEnabled(const char* name, bool on) override;
    const char* lastError(unsigned& address) override;
    bool setBreakpoint(HBreakpoint* breakpoint) override;
    bool removeBreakpoint(HBreakpoint* breakpoint) override;
    HBreakpoint* matched() override { return m_matcher.matched(); }
    bool canChain() override { return true; }
    int numTriggers() override { return 4; }
    const char* getTrigger(int number) override;
    int getExecuteTriggerNumber() override { return 0; }
    int getWriteTriggerNumber() override { return 2; }
    int numActions() override { return 2; }
    const char* getAction(int number) override;
    int getStopActionNumber() override { return 0; }
    void setTraceEnabled(bool on) override { m_traceEnabled = on; }
    bool getTraceEnabled() override { return m_traceEnabled; }
    void resetTrace() override { m_trace.clear(); }
    void iterateTrace() override { m_traceIterator = 0; }
    bool getNextTrace(unsigned& address, unsigned& data, unsigned& cycles) override;
    bool getExecutionCountEnabled() override { return true; }
    void resetExecutionCount() override;
    void iterateExecutionCount() override { m_countIterator = 0; }
    bool getNextExecutionCount(unsigned& address, unsigned& count, unsigned& extra) override;

    // The processor's part.
    virtual void reset();
    virtual void connect();
    /// Puts the registers in their state after a reset.
    virtual void checkReset() = 0;
    /// Takes a pending interrupt.
    virtual void checkIRQ() = 0;
    /// Executes one instruction and returns its cycles.
    virtual unsigned singleStep() = 0;

    std::uint32_t matchedAddress() const { return m_matcher.matchedAddress(); }
    std::uint32_t matchedData() const { return m_matcher.matchedData(); }
    void resetMatched() { m_matcher.resetMatched(); }
    int numBreakpoints() const { return static_cast<int>(m_matcher.count()); }
    /// One counter for each byte address from `base` on; all start at 0.
    void setExecutionCountRange(std::uint32_t base, std::uint32_t length);
    int getExecutionCountCapabilities() const { return 1; }
    /// With macros.
    QString peripheralFile() const { return m_peripheralFile.toString(); }
    void setPeripheralFile(const QString& path) { m_peripheralFile.setPropertyValue(path); }
    /// Whether `connect` makes peripherals from that file.
    bool enablePeripheralFile() const { return m_enablePeripheralFile.toBool(); }
    void setEnablePeripheralFile(bool on) { m_enablePeripheralFile.setValue(on); }
    int traceBufferSize() const;
    /// In entries, 0 to 655536.
    void setTraceBufferSize(int entries);

    void setRunLimits(RunLimits limits) { m_limits = limits; }
    StopReason stopReason() const { return m_stopReason; }
    /// Passes of the run loop since reset: instructions, and idle passes of a sleeping processor.
    std::uint64_t runCounter() const { return m_runCounter; }
    /// Called every 300 passes while the target runs.
    void setProcessEvents(void (*processEvents)()) { m_processEvents = processEvents; }
    void processEvents() const
    {
        if (m_processEvents != nullptr)
            m_processEvents();
    }
    /// From now on `simulator` has the peripheral registers; null gives them back to plain memory.
    void setPeripheralSimulator(std::unique_ptr<SimulatedPeripherals> simulator);
    SimulatedPeripherals* peripheralSimulator() { return m_peripherals.get(); }
    /// Where serial ports of the peripherals send to and receive from; may be null.
    void setTerminal(TargetIOServerTerminalInterface* terminal) { m_terminal = terminal; }
    TargetIOServerTerminalInterface* terminal() const { return m_terminal; }
    /// Has the processor reset ahead of its next instruction, as a peripheral does; counts and
    /// traces stay.
    void requestReset();
    void logMessage(const QString& text) const { host().message(text); }
    void logError(const QString& text) const { host().error(text); }

protected:
    static constexpr unsigned passesBetweenEvents = 300;

    /// Executes at most `passes` passes, and returns how many it did. A pass that needs more than
    /// the plain execution of an instruction, or that would match a code breakpoint, ends the call
    /// early; the general pass then does it. A data match ends the call behind its pass. Base:
    /// none.
    virtual unsigned runUnwatched(unsigned passes);
    /// Something has happened that the general pass has to look at.
    virtual void leaveRunUnwatched() { }
    /// The breakpoints may be others than before: called ahead of a run and after events.
    virtual void breakpointsChanged() { }

    void stopFor(StopReason reason);
    /// Makes the peripherals that the properties ask for.
    void makePeripherals();
    void endConnection();
    void addToInstructionTrace(std::uint32_t address, std::uint32_t data)
    {
        m_trace.add({address, data, static_cast<std::uint32_t>(m_cycleCount)});
    }
    /// One counter for each byte address from `countBase()` on.
    std::span<std::uint32_t> counts() { return m_counts; }
    std::uint32_t countBase() const { return m_countBase; }

    bool m_connected = false;
    bool m_stopped = false;
    bool m_allErrors = true;
    std::uint64_t m_cycleCount = 0;
    RunLimits m_limits;
    SimulatorErrors m_errors;
    BreakpointMatcher m_matcher;
    std::unique_ptr<SimulatedPeripherals> m_peripherals;
    bool m_traceEnabled = false;

private:
    void pass();
    void passesUnwatched();
    bool limitReached();
    void actOnMatch();
    void stopOnError();
    void handleEvents();
    void resetByPeripheral();

    InstructionTrace m_trace;
    std::size_t m_traceIterator = 0;
    PropertyClass m_peripheralFileClass;
    TargetInterfacePropertyValue m_peripheralFile;
    TargetInterfacePropertyValue m_enablePeripheralFile;
    TargetInterfacePropertyValue m_traceBufferSize;
    bool m_hasPeripherals;
    bool m_resetRequested = false;
    TargetIOServerTerminalInterface* m_terminal = nullptr;
    std::uint32_t m_countBase = 0;
    std::vector<std::uint32_t> m_counts;
    std::size_t m_countIterator = 0;
    std::uint64_t m_runCounter = 0;
    StopReason m_stopReason = StopReason::Requested;
    void (*m_processEvents)() = nullptr;
};
