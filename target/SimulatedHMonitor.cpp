#include "target/SimulatedHMonitor.h"

#include <algorithm>

namespace {

constexpr int maxTraceBufferSize = 655536;
constexpr std::uint32_t stopAction = 0, traceAction = 1;

} // namespace

SimulatedHMonitor::~SimulatedHMonitor() = default;

void SimulatedHMonitor::connect() { m_connected = true; }

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
    resetTrace();
    resetExecutionCount();
    m_stopped = true;
    m_errors.disableAll();
    m_errors.clearLast();
}

void SimulatedHMonitor::reset(bool stayStopped, bool)
{
    reset();
    if (!stayStopped)
        go();
}

void SimulatedHMonitor::reset()
{
    m_cycleCount = 0;
    m_runCounter = 0;
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

void SimulatedHMonitor::setPeripheralSimulator(std::unique_ptr<PeripheralSimulator> simulator)
{
    m_peripherals = std::move(simulator);
}

// Running ---------------------------------------------------------------------------------------

void SimulatedHMonitor::go()
{
    m_stopped = false;
    m_stopReason = StopReason::Requested;
    m_errors.clearCurrent();
    while (!m_stopped) {
        if (!m_traceEnabled && m_matcher.matched() == nullptr && !m_matcher.watchesData())
            passesUnwatched();
        if (!m_stopped)
            pass();
    }
}

void SimulatedHMonitor::passesUnwatched()
{
    const auto untilEvents = passesBetweenEvents - 1 - m_runCounter % passesBetweenEvents;
    const auto passes = runUnwatched(static_cast<unsigned>(std::min(untilEvents, m_limits.passes)));
    m_runCounter += passes;
    if (m_limits.passes != RunLimits::None)
        m_limits.passes -= passes;
    stopOnError();
}

unsigned SimulatedHMonitor::runUnwatched(unsigned) { return 0; }

void SimulatedHMonitor::pass()
{
    if (limitReached())
        return;
    checkIRQ();
    if (++m_runCounter % passesBetweenEvents == 0 && m_processEvents != nullptr)
        m_processEvents();
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
    return true;
}

bool SimulatedHMonitor::removeBreakpoint(HBreakpoint* breakpoint)
{
    return m_matcher.remove(breakpoint);
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

void SimulatedHMonitor::setTraceBufferSize(int entries)
{
    m_traceBufferSize = std::clamp(entries, 0, maxTraceBufferSize);
}

void SimulatedHMonitor::addToInstructionTrace(std::uint32_t address, std::uint32_t data)
{
    while (!m_trace.empty() && m_trace.size() >= static_cast<std::size_t>(m_traceBufferSize))
        m_trace.pop_front();
    m_trace.push_back({address, data, static_cast<std::uint32_t>(m_cycleCount)});
}

bool SimulatedHMonitor::getNextTrace(unsigned& address, unsigned& data, unsigned& cycles)
{
    if (m_traceIterator >= m_trace.size())
        return false;
    const TraceEntry& entry = m_trace[m_traceIterator++];
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
