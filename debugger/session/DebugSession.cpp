#include "debugger/session/DebugSession.h"

#include "base/HException.h"
#include "objfile/format/TOBFfiles.h"
#include "target/HMonitor.h"
#include "target/TargetIOServer.h"

#include <QScopedValueRollback>

#include <utility>

using namespace Qt::Literals::StringLiterals;

DebugSession::DebugSession(SymbolicDebuggerInterface& debugger, HMonitor& target,
                           TargetIOServerTerminalInterface* terminal, Host host)
    : m_debugger(debugger),
      m_target(target),
      m_host(std::move(host))
{
    m_debugger.setTargetInterface(&m_target);
    TargetIOServer::setHelperFunctions(this);
    TargetIOServer::setTerminal(terminal);
}

DebugSession::~DebugSession()
{
    m_debugger.clear();
    TargetIOServer::init({});
    TargetIOServer::setTerminal(nullptr);
    TargetIOServer::setHelperFunctions(nullptr);
}

void DebugSession::load(const Path& executable)
{
    TOBFModule* const module = TOBFfiles::getModule(executable);
    if (!module)
        throw HException(executable.osPath().toStdString() + " holds no program");
    try {
        m_target.loadTOBFModule(module);
    } catch (...) {
        TOBFfiles::release(module);
        throw;
    }
    TOBFfiles::release(module);
    m_debugger.loadSymbols(executable, 0);
    m_executable = executable;
    enableExceptions();
}

/// A program that runs wild stops where it does.
void DebugSession::enableExceptions()
{
    const auto classes = static_cast<unsigned>(m_debugger.getExceptionClasses().size());
    for (unsigned exceptionClass = 0; exceptionClass < classes; ++exceptionClass)
        for (const QString& name : m_debugger.getExceptionTypes(exceptionClass))
            m_debugger.setExceptionEnabled(name, true);
}

void DebugSession::reset(const QString& entry, const QStringList& arguments)
{
    m_target.reset(true, false);
    start(entry, QStringList(m_executable.osPath()) + arguments, true);
    waitForStop();
}

void DebugSession::start(const QString& entry, const QStringList& arguments, bool stayStopped)
{
    m_ended = false;
    TargetIOServer::init(arguments);
    m_debugger.start(entry, stayStopped);
}

void DebugSession::attach(const QStringList& arguments)
{
    m_ended = false;
    TargetIOServer::init(arguments);
    m_debugger.attach();
}

void DebugSession::setStartupBreakpoint(DebuggerBreakpoint* breakpoint, bool goOn,
                                        std::function<void()> completed)
{
    m_startup = {breakpoint, goOn, std::move(completed)};
    m_debugger.setStartupComplete(false);
}

bool DebugSession::poll()
{
    // A message box of the host may poll again.
    if (m_polling)
        return false;
    const QScopedValueRollback polling(m_polling, true);
    if (m_debugger.isStopped())
        return m_ended || m_debugger.startupComplete() || !goesOnAfterStartup();
    return m_ended;
}

/// At a stop while start-up is going on: whether it was only for its end, and the program runs on.
bool DebugSession::goesOnAfterStartup()
{
    const auto matched = m_debugger.lastMatchedBreakpoints();
    if (!matched.contains(m_startup.breakpoint))
        return false;
    const Startup startup = std::exchange(m_startup, {});
    m_debugger.clearBreakpoint(startup.breakpoint);
    if (startup.completed)
        startup.completed();
    m_debugger.setStartupComplete(true);
    if (!startup.goOn || matched.size() > 1)
        return false;
    m_debugger.go();
    return true;
}

void DebugSession::tellException()
{
    const QString exception = m_debugger.lastMatchedException();
    if (m_ended || exception.isEmpty() || !m_host.showError)
        return;
    m_host.showError(exception + u" at 0x"_s + m_debugger.formatPC(pc()));
}

bool DebugSession::waitForStop()
{
    while (!poll())
        if (m_host.carryOn && !m_host.carryOn())
            m_debugger.stop();
    tellException();
    return !m_ended;
}

unsigned DebugSession::pc() { return frame() ? frame()->registers->getPC() : 0; }

void DebugSession::errorOccurred(const char* text)
{
    if (m_host.showError)
        m_host.showError(QString::fromLocal8Bit(text));
}

void DebugSession::inputRequested()
{
    if (m_host.inputRequested)
        m_host.inputRequested();
}

void DebugSession::exitOccurred(int code)
{
    m_ended = true;
    m_exitCode = code;
}

void DebugSession::loadSymbols(const char* name, unsigned address)
{
    m_debugger.loadSymbols(Path(QString::fromLocal8Bit(name)), address);
}
