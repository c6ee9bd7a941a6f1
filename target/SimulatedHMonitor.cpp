#include "target/SimulatedHMonitor.h"

#include "projects/macros/MacroSystem.h"
#include "target/PeripheralSimulator.h"

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int maxTraceBufferSize = 655536, defaultTraceBufferSize = 256;
constexpr std::uint32_t stopAction = 0, traceAction = 1;

const PropertyClass& enablePeripheralFileClass()
{
    static const PropertyClass made(u"enablePeripheralFile"_s, QString(), u"Peripherals"_s,
                                    u"Enable Peripheral File"_s,
                                    u"Enable JavaScript simulation of peripherals."_s, false);
    return made;
}

const PropertyClass& traceBufferSizeClass()
{
    static const PropertyClass made(
        u"traceBufferSize"_s, PropertyClass::Type::IntegerRange, 0, maxTraceBufferSize, QString(),
        u"Diagnostic"_s, u"Trace Buffer Size"_s,
        u"Set the number of trace entries that are recorded."_s, defaultTraceBufferSize);
    return made;
}

QString expandMacros(const QString& text)
{
    return macroSystem != nullptr
        ? MacroSystem::replaceMacros(macroSystem->globalMacros(true), text)
        : text;
}

} // namespace

SimulatedHMonitor::SimulatedHMonitor(const QString& title, unsigned capabilities,
                                     TargetInterfaceHelperFunctions* host,
                                     const QString& peripheralFile)
    : HMonitor(title, capabilities, host),
      m_peripheralFileClass(u"peripheralFile"_s, PropertyClass::Type::String, QString(),
                            u"Peripherals"_s, u"Peripheral File"_s,
                            u"JavaScript file that simulates peripherals."_s, peripheralFile),
      m_peripheralFile(&m_peripheralFileClass),
      m_enablePeripheralFile(&enablePeripheralFileClass()),
      m_traceBufferSize(&traceBufferSizeClass()),
      m_hasPeripherals(!peripheralFile.isEmpty())
{
    m_trace.setSize(static_cast<std::size_t>(traceBufferSize()));
}

SimulatedHMonitor::~SimulatedHMonitor() = default;

void SimulatedHMonitor::getProperties(PropertyValueList& list)
{
    HMonitor::getProperties(list);
    if (m_hasPeripherals) {
        list.appendUnique(&m_peripheralFile);
        list.appendUnique(&m_enablePeripheralFile);
    }
    list.appendUnique(&m_traceBufferSize);
}

void SimulatedHMonitor::connect()
{
    makePeripherals();
    m_connected = true;
}

void SimulatedHMonitor::makePeripherals()
{
    if (!enablePeripheralFile() || peripheralFile().isEmpty())
        return;
    m_peripherals = std::make_unique<PeripheralSimulator>(expandMacros(peripheralFile()), *this);
}

void SimulatedHMonitor::endConnection()
{
    m_peripherals.reset();
    clear();
    m_counts = {};
    m_connected = false;
}

void SimulatedHMonitor::clear()
{
    m_matcher.clear();
    breakpointsChanged();
    resetTrace();
    resetExecutionCount();
    m_stopped = true;
    m_errors.disableAll();
    m_errors.clearLast();
}

void SimulatedHMonitor::reset(bool stayStopped, bool forDownload)
{
    reset();
    if (executeResetScript(forDownload) && !stayStopped)
        go();
}

void SimulatedHMonitor::stop()
{
    m_stopped = true;
    if (m_peripherals)
        m_peripherals->requestStop();
}

void SimulatedHMonitor::reset()
{
    m_cycleCount = 0;
    m_runCounter = 0;
    m_resetRequested = false;
    checkReset();
    if (m_peripherals)
        m_peripherals->reset();
}

void SimulatedHMonitor::start(bool setPC, unsigned pc)
{
    if (setPC)
        registers()->setPC(pc);
    go();
}

void SimulatedHMonitor::startDebugging(bool setPC, unsigned pc, bool stayStopped)
{
    if (!stayStopped)
        return start(setPC, pc);
    if (setPC)
        registers()->setPC(pc);
    m_stopped = true;
}

void SimulatedHMonitor::setPeripheralSimulator(std::unique_ptr<SimulatedPeripherals> simulator)
{
    m_peripherals = std::move(simulator);
}

// Running ---------------------------------------------------------------------------------------

void SimulatedHMonitor::go()
{
    m_stopped = false;
    m_stopReason = StopReason::Requested;
    m_errors.clearCurrent();
    m_errors.clearLast();
    m_trace.setSize(static_cast<std::size_t>(traceBufferSize()));
    breakpointsChanged();
    try {
        while (!m_stopped) {
            if (m_matcher.matched() == nullptr && !m_resetRequested)
                passesUnwatched();
            if (!m_stopped)
                pass();
        }
    } catch (...) {
        // A peripheral has failed: the target stays where it is.
        m_stopped = true;
        throw;
    }
}

void SimulatedHMonitor::passesUnwatched()
{
    const auto untilEvents = passesBetweenEvents - 1 - m_runCounter % passesBetweenEvents;
    const auto passes = runUnwatched(static_cast<unsigned>(std::min(untilEvents, m_limits.passes)));
    m_runCounter += passes;
    if (m_limits.passes != RunLimits::None)
        m_limits.passes -= passes;
    if (!m_stopped)
        actOnMatch();
    stopOnError();
}

unsigned SimulatedHMonitor::runUnwatched(unsigned) { return 0; }

void SimulatedHMonitor::requestReset()
{
    m_resetRequested = true;
    leaveRunUnwatched();
}

void SimulatedHMonitor::resetByPeripheral()
{
    m_resetRequested = false;
    checkReset();
    if (m_peripherals)
        m_peripherals->reset();
}

void SimulatedHMonitor::pass()
{
    if (limitReached())
        return;
    if (m_resetRequested)
        resetByPeripheral();
    checkIRQ();
    if (++m_runCounter % passesBetweenEvents == 0)
        handleEvents();
    if (m_stopped)
        return;
    if (m_matcher.matched() != nullptr) {
        m_matcher.resetMatched();
        m_errors.clearLast();
    } else {
        m_matcher.matchCode(registers()->getPC());
    }
    actOnMatch();
    if (m_stopped)
        return;
    step();
    if (m_limits.passes != RunLimits::None)
        --m_limits.passes;
    if (!m_stopped)
        actOnMatch();
    stopOnError();
}

void SimulatedHMonitor::handleEvents()
{
    if (m_processEvents == nullptr)
        return;
    m_processEvents();
    breakpointsChanged();
}

bool SimulatedHMonitor::limitReached()
{
    if (m_cycleCount >= m_limits.cycles)
        stopFor(StopReason::CycleLimit);
    else if (m_limits.passes == 0)
        stopFor(StopReason::PassLimit);
    return m_stopped;
}

void SimulatedHMonitor::actOnMatch()
{
    const HBreakpoint* breakpoint = m_matcher.matched();
    if (breakpoint == nullptr)
        return;
    if (breakpoint->action == stopAction)
        return stopFor(StopReason::Breakpoint);
    if (breakpoint->action == traceAction)
        addToInstructionTrace(m_matcher.matchedAddress(), m_matcher.matchedData());
    m_matcher.resetMatched();
}

void SimulatedHMonitor::stopOnError()
{
    if (!m_errors.mustStop())
        return;
    m_errors.stopWithCurrent();
    stopFor(StopReason::Error);
}

void SimulatedHMonitor::stopFor(StopReason reason)
{
    m_stopped = true;
    m_stopReason = reason;
}

void SimulatedHMonitor::step()
{
    const std::uint32_t pc = registers()->getPC();
    if (m_traceEnabled)
        addToInstructionTrace(pc, 0);
    if (pc - m_countBase < m_counts.size())
        ++m_counts[pc - m_countBase];
    m_cycleCount += singleStep();
}

// Errors and breakpoints ------------------------------------------------------------------------

bool SimulatedHMonitor::errorEnabled(const char* name)
{
    return m_errors.enabled(SimulatorErrors::numberOf(name));
}

void SimulatedHMonitor::setErrorEnabled(const char* name, bool on)
{
    m_errors.setEnabled(SimulatorErrors::numberOf(name), on);
}

const char* SimulatedHMonitor::lastError(unsigned& address)
{
    if (m_errors.lastText() != nullptr)
        address = m_errors.lastAddress();
    return m_errors.lastText();
}

bool SimulatedHMonitor::setBreakpoint(HBreakpoint* breakpoint)
{
    m_matcher.add(breakpoint);
    breakpointsChanged();
    return true;
}

bool SimulatedHMonitor::removeBreakpoint(HBreakpoint* breakpoint)
{
    const bool removed = m_matcher.remove(breakpoint);
    breakpointsChanged();
    return removed;
}

const char* SimulatedHMonitor::getTrigger(int number)
{
    static constexpr const char* names[] = {"Execute", "Read", "Write", "Read/Write"};
    return number >= 0 && number < 4 ? names[number] : nullptr;
}

const char* SimulatedHMonitor::getAction(int number)
{
    static constexpr const char* names[] = {"Stop", "Trace"};
    return number >= 0 && number < 2 ? names[number] : nullptr;
}

// Trace and counts ------------------------------------------------------------------------------

int SimulatedHMonitor::traceBufferSize() const
{
    return std::clamp(m_traceBufferSize.toInt(), 0, maxTraceBufferSize);
}

void SimulatedHMonitor::setTraceBufferSize(int entries)
{
    m_traceBufferSize.setValue(std::clamp(entries, 0, maxTraceBufferSize));
    m_trace.setSize(static_cast<std::size_t>(traceBufferSize()));
}

bool SimulatedHMonitor::getNextTrace(unsigned& address, unsigned& data, unsigned& cycles)
{
    if (m_traceIterator >= m_trace.count())
        return false;
    const InstructionTrace::Entry& entry = m_trace[m_traceIterator++];
    address = entry.address;
    data = entry.data;
    cycles = entry.cycles;
    return true;
}

void SimulatedHMonitor::setExecutionCountRange(std::uint32_t base, std::uint32_t length)
{
    m_countBase = base;
    m_counts.assign(length, 0);
}

void SimulatedHMonitor::resetExecutionCount() { std::fill(m_counts.begin(), m_counts.end(), 0u); }

bool SimulatedHMonitor::getNextExecutionCount(unsigned& address, unsigned& count, unsigned& extra)
{
    while (m_countIterator < m_counts.size() && m_counts[m_countIterator] == 0)
        ++m_countIterator;
    if (m_countIterator >= m_counts.size())
        return false;
    address = m_countBase + static_cast<unsigned>(m_countIterator);
    count = m_counts[m_countIterator++];
    extra = 0;
    return true;
}
