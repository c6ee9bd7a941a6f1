#include "debugger/session/DebugSession.h"

#include "base/HException.h"
#include "objfile/format/TOBFfiles.h"
#include "target/HMonitor.h"
#include "target/TargetIOServer.h"

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
}

void DebugSession::reset(const QString& entry, const QStringList& arguments)
{
    m_ended = false;
    m_target.reset(true, false);
    TargetIOServer::init(QStringList(m_executable.osPath()) + arguments);
    m_debugger.start(entry, true);
    waitForStop();
}

bool DebugSession::waitForStop()
{
    while (!m_ended && !m_debugger.isStopped())
        if (m_host.carryOn && !m_host.carryOn())
            m_debugger.stop();
    return !m_ended;
}

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
