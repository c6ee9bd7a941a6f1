// Starting, stepping, and deciding what a stop means.

#include "base/HException.h"
#include "debugger/core/TOBFDebugger.h"
#include "target/HMonitor.h"
#include "target/TargetIOServer.h"

using namespace Qt::Literals::StringLiterals;

namespace {

/// What the control word holds where there is no debug I/O.
constexpr unsigned NoDebugIO = 0xFFFFFFFF;

} // namespace

HMonitor& TOBFDebugger::target() const
{
    if (!m_monitor)
        throw HException("there is no target to debug on");
    return *m_monitor;
}

void TOBFDebugger::start(const QString& entry, bool stayStopped)
{
    unsigned address = 0;
    if (entry.isEmpty()) {
        address = getEntryPoint();
    } else if (entry.startsWith(u"0x"_s)) {
        address = entry.toUInt(nullptr, 16);
    } else if (!getLinkerSymbolValue(entry, address)) {
        helper().displayError(u"entry point symbol "_s + entry + u" not found"_s);
        address = getEntryPoint();
    }
    // Before the program runs, the words hold nothing that it has put there.
    m_debugIO.reset();
    if (!stayStopped)
        enableDebugIO();
    HMonitor& monitor = target();
    m_stopped = false;
    monitor.startDebugging(true, address, stayStopped);
}

void TOBFDebugger::attach()
{
    enableDebugIO();
    m_stopped = false;
}

void TOBFDebugger::go()
{
    HMonitor& monitor = target();
    enableDebugIO();
    m_stopped = false;
    monitor.go();
}

void TOBFDebugger::stop()
{
    m_stopped = true;
    if (m_monitor)
        m_monitor->stop();
}

void TOBFDebugger::step(bool instruction, bool over)
{
    TargetRegisterInterface* const registers = liveRegisters();
    const auto stepTarget = [&] {
        HMonitor& monitor = target();
        m_stopped = false;
        monitor.step();
    };
    if (!registers || (helper().debuggerUseHardwareStep() && instruction && !over)) {
        stepTarget();
        return;
    }
    unsigned start = registers->getPC();
    unsigned length = 1;
    if (!instruction && !m_symbols.empty() && !getAddressRange(registers->getPC(), start, length)) {
        stepTarget();
        return;
    }
    const unsigned target = nextInstruction(registers, over, start, length);
    if (TOBFBreakpoint* const breakpoint = setBreakpoint(target, true, true, 0, -1, QString()))
        breakpoint->setStepping({start, length, over});
    go();
}

void TOBFDebugger::stepout(Frame* frame)
{
    if (!frame)
        return;
    setBreakpoint(frame->registers->getPC(), true, true, 0, -1, QString());
    go();
}

bool TOBFDebugger::isStopped()
{
    if (!m_monitor)
        return m_stopped;
    try {
        unsigned operation = 0;
        if (m_monitor->isStopped()) {
            if (mayBeRequest() && handleDebugIO(operation) && !m_stopped) {
                if (operation == TargetIOServer::Exit)
                    return m_stopped;
                go();
                if (!m_stopped)
                    return m_stopped;
            }
            handleBreakpoint();
        } else if (m_debugIO && !debugOperationUsesBreakpoint()) {
            handleDebugIO(operation);
        }
    } catch (const HException& exception) {
        helper().displayError(QString::fromStdString(exception.message()));
    }
    return m_stopped;
}

void TOBFDebugger::handleBreakpoint()
{
    TOBFBreakpoint* const breakpoint = findBreakpoint(m_monitor->matched());
    if (breakpoint && !m_stopped) {
        if (breakpoint->isStepping() && moveStep(*breakpoint))
            return;
        if (breakpoint->breakpoint()->count > 0) {
            --breakpoint->breakpoint()->count;
            go();
            return;
        }
    }
    removeTempBreakpoints();
    locate();
    m_stopped = true;
}

/// Goes on if the step isn't finished.
bool TOBFDebugger::moveStep(TOBFBreakpoint& breakpoint)
{
    TargetRegisterInterface* const registers = m_monitor->registers();
    const TOBFBreakpoint::Stepping step = breakpoint.stepping();
    const unsigned pc = registers->getPC();
    if (pc < step.start || pc - step.start >= step.length)
        return false;
    m_monitor->removeBreakpoint(breakpoint.breakpoint());
    breakpoint.breakpoint()->address =
        nextInstruction(registers, step.over, step.start, step.length);
    m_monitor->setBreakpoint(breakpoint.breakpoint());
    go();
    return true;
}

void TOBFDebugger::removeTempBreakpoints()
{
    for (Breakpoints* const list : {&m_breakpoints, &m_expressionBreakpoints})
        std::erase_if(*list, [&](const std::unique_ptr<TOBFBreakpoint>& breakpoint) {
            if (breakpoint->isTemporary())
                m_monitor->removeBreakpoint(breakpoint->breakpoint());
            return breakpoint->isTemporary();
        });
}

// What the program asks of the host

void TOBFDebugger::enableDebugIO()
{
    if (m_debugIO)
        return;
    unsigned control = 0;
    unsigned communication = 0;
    if (getLinkerSymbolValue(u"__debug_io_control"_s, control)
        && getLinkerSymbolValue(u"__debug_io_communication"_s, communication))
        m_debugIO = DebugIO{control, communication};
}

/// Whether the stop may be one for the host. A program that stops itself for that matches no
/// breakpoint; one that hasn't set up its memory yet has anything in the words.
bool TOBFDebugger::mayBeRequest()
{
    return m_debugIO && !(debugOperationUsesBreakpoint() && m_monitor->matched());
}

bool TOBFDebugger::handleDebugIO(unsigned& operation)
{
    operation = dataMemory()->peekUint16(m_debugIO->control);
    if (operation == (NoDebugIO & 0xFFFF)) {
        m_debugIO.reset();
        return false;
    }
    if (operation == 0)
        return false;
    TargetIOServer::handleOperation(dataMemory(), codeMemory(), operation,
                                    m_debugIO->communication);
    if (operation != TargetIOServer::Exit)
        dataMemory()->pokeUint16(m_debugIO->control, 0);
    return true;
}
