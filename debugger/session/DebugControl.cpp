#include "debugger/session/DebugControl.h"

#include "base/HException.h"
#include "debugger/breakpoints/BreakpointExpression.h"
#include "debugger/expressions/ParserException.h"
#include "debugger/session/DebugSession.h"
#include "objfile/loadfiles/LoadFile.h"
#include "projects/settings/GantryBenchEnvironmentSettings.h"
#include "target/HMonitor.h"
#include "target/control/TargetControl.h"

#include <QCoreApplication>
#include <QDir>

using namespace Qt::Literals::StringLiterals;

DebugControl::DebugControl(const Parts& parts, DebugControlHost& host)
    : m_parts(parts),
      m_host(host),
      m_breakpoints(parts.debugger, *this)
{
}

DebugControl::~DebugControl() = default;

// Starting --------------------------------------------------------------------------------------

bool DebugControl::startDebugging(ProjectElement* project, const QString& configuration,
                                  unsigned mode)
{
    const ProjectProgram program(project, configuration);
    if (program.executable().isEmpty() && (mode & Load) != 0)
        throw HException("No executable to load");
    m_host.saveAll();
    if (!continueToDebug(program) || !m_parts.targets.autoConnect(project, configuration)
        || !m_parts.targets.targetCompatibleWithProject(project, configuration))
        return false;
    m_host.sessionBegins();
    try {
        run(program, mode);
    } catch (...) {
        leave();
        throw;
    }
    return true;
}

bool DebugControl::continueToDebug(const ProjectProgram& program)
{
    if (!m_host.isOutOfDate(program.project(), program.configuration()))
        return true;
    return m_host.ask(u"The project '%1' is out of date and needs to be built.\nBuild the project "
                      "before debugging?"_s.arg(program.name()),
                      u"Build Project?"_s)
        && m_host.build(program.project(), program.configuration());
}

void DebugControl::run(const ProjectProgram& program, unsigned mode)
{
    auto* const monitor = dynamic_cast<HMonitor*>(m_parts.targets.targetInterface());
    if (!monitor)
        throw HException("the target has no debugger");
    m_session.reset();
    m_session = std::make_unique<DebugSession>(
        m_parts.debugger, *monitor, m_parts.terminal,
        DebugSession::Host{[this] { return m_host.carryOn(); }, [this] { m_host.inputRequested(); },
                           [this](const QString& text) { m_host.displayError(text); }});
    TargetLoadFiles files;
    prepareTarget(program, mode, files);
    setState(DebugState::Running);
    placeBreakpoints(program, mode);
    m_breakpoints.updateExceptions();
    m_host.refreshTargets();
    if ((mode & Load) != 0)
        download(files);
    startProgram(program, mode);
}

void DebugControl::prepareTarget(const ProjectProgram& program, unsigned mode,
                                 TargetLoadFiles& files)
{
    TargetInterface& target = *m_parts.targets.targetInterface();
    if ((mode & (Reset | Load)) == 0) {
        m_parts.debugger.loadSymbols(program.executable(), 0);
        target.attach();
        return;
    }
    target.reset(true, (mode & Load) != 0);
    if (m_parts.settings.showTranscriptOnLoad->toBool())
        m_host.showTranscript();
    program.addLoadFiles(files);
    m_parts.debugger.syncSettingsWithProject(program.project(), program.configuration());
    for (const LoadFileListItem& item : files.list)
        if (item.loadFile->hasSymbols())
            m_parts.debugger.loadSymbols(Path(item.path), 0);
    target.syncSettingsWithProject(program.project(), program.configuration());
}

void DebugControl::download(TargetLoadFiles& files)
{
    TargetInterface& target = *m_parts.targets.targetInterface();
    m_host.showOperationCancel(true);
    try {
        m_parts.targets.patchLoadFiles(target, files.list);
        m_parts.targets.downloadLoadFiles(target, files.list, true);
    } catch (...) {
        m_host.showOperationCancel(false);
        throw;
    }
    m_host.showOperationCancel(false);
}

void DebugControl::startProgram(const ProjectProgram& program, unsigned mode)
{
    const QString directory = program.workingDirectory();
    if (!QDir::setCurrent(directory))
        throw HException("can't change to the working directory " + directory.toStdString());
    m_arguments = program.commandArguments();
    m_host.showDebugTerminal(m_parts.settings.clearDebugTerminalOnRun->toBool());
    startPolling();
    m_parts.targets.targetInterface()->debugBegin();
    if ((mode & (Reset | Load)) == 0) {
        m_session->attach(m_arguments);
        return;
    }
    m_entry = program.entryPointSymbol();
    m_session->start(m_entry, m_arguments, (mode & StopAtEntry) != 0);
}

// Breakpoints of a start --------------------------------------------------------------------------

void DebugControl::placeBreakpoints(const ProjectProgram& program, unsigned mode)
{
    const bool isAttach = (mode & (Reset | Load)) == 0;
    const QString startup = isAttach ? QString() : program.startupCompletionPoint();
    // A name that the user has emptied stays so.
    QString initial = m_parts.settings.setInitialBreakpoint->toString() == u"Never"_s
        ? QString()
        : m_parts.settings.initialBreakpoint->propertyValue();
    m_parts.debugger.setStartupComplete(startup.isEmpty());
    if (startup.isEmpty()) {
        checkBreakpoints(initial);
        return;
    }
    const bool stopsThere = !initial.isEmpty() && sameAddress(startup, initial);
    if (stopsThere)
        initial.clear();
    // A temporary breakpoint would go with the stop at the end of start-up.
    m_session->setStartupBreakpoint(placeStartupBreakpoint(startup), !stopsThere,
                                    [this, initial] { checkBreakpoints(initial); });
    m_breakpoints.check();
}

void DebugControl::checkBreakpoints(const QString& initial)
{
    const bool anyIsSet = m_breakpoints.check() != 0;
    const bool onlyAlone =
        m_parts.settings.setInitialBreakpoint->toString() == u"Only With No Breakpoints Set"_s;
    if (!initial.isEmpty() && !(anyIsSet && onlyAlone))
        placeInitialBreakpoint(initial);
}

/// It isn't one of the temporary ones: a stop elsewhere during start-up leaves it in its place.
DebuggerBreakpoint* DebugControl::placeStartupBreakpoint(const QString& expression)
{
    DebuggerBreakpoint* breakpoint = nullptr;
    try {
        breakpoint = m_parts.debugger.setBreakpoint(ExpressionContext(), expression, QString(), 0,
                                                    false, false, QString(), QString());
    } catch (const DebuggerBreakpointFailure&) {
        // The same for the user as a target without room.
    }
    if (!breakpoint)
        throw HException("cannot set startup completion breakpoint");
    breakpoint->setVisible(false);
    return breakpoint;
}

bool DebugControl::sameAddress(const QString& one, const QString& other)
{
    const auto addressOf = [this](const QString& expression) {
        ExpressionType value;
        m_parts.debugger.evaluateExpression(ExpressionContext(), expression, value);
        return breakpointAddress(value);
    };
    try {
        return addressOf(one) == addressOf(other);
    } catch (const ParserException&) {
        return false;
    } catch (const DebuggerBreakpointFailure&) {
        return false;
    }
}

/// A program without the symbol runs all the same.
void DebugControl::placeInitialBreakpoint(const QString& symbol)
{
    QString reason = u"The target has no place for it"_s;
    try {
        if (m_parts.debugger.setBreakpoint(ExpressionContext(), symbol, QString(), 0, false, true,
                                           QString(), QString()))
            return;
    } catch (const DebuggerBreakpointFailure& failure) {
        reason = failure.text();
    }
    m_host.displayError(u"The initial breakpoint can't be set at %1: %2"_s.arg(symbol, reason));
}

// Running ---------------------------------------------------------------------------------------

void DebugControl::debugGo()
{
    startPolling();
    setState(DebugState::Running);
    m_parts.debugger.go();
}

void DebugControl::debugBreak() { m_parts.debugger.stop(); }

void DebugControl::debugStep(bool into, bool instruction)
{
    startPolling();
    setState(DebugState::Running);
    if (into)
        m_parts.debugger.stepinto(instruction);
    else
        m_parts.debugger.stepover(instruction);
}

void DebugControl::debugStepOut(Frame* frame)
{
    if (!frame)
        throw HException("the innermost function has no caller");
    startPolling();
    setState(DebugState::Running);
    m_parts.debugger.stepout(frame);
}

void DebugControl::debugRestartClicked()
{
    if (m_state == DebugState::Stopped)
        setState(DebugState::Running);
    m_parts.debugger.stop();
    if (m_parts.settings.restartResetsTarget->toBool())
        m_parts.targets.targetInterface()->reset(true, false);
    startPolling();
    m_session->start(m_entry, m_arguments, false);
}

void DebugControl::debugAutoStep()
{
    m_autoStepping = true;
    try {
        while (m_autoStepping && isDebugging()) {
            debugStep(true, false);
            while (m_state == DebugState::Running) {
                QCoreApplication::processEvents();
                pollDebugger();
            }
            if (m_session->hasEnded())
                break;
        }
    } catch (const HException& exception) {
        m_host.showStatus(QString::fromStdString(exception.message()));
        stopPolling();
        setState(DebugState::Stopped);
    }
    m_autoStepping = false;
}

void DebugControl::pollDebugger()
{
    if (!m_polling)
        return;
    try {
        if (!m_session->poll())
            return;
    } catch (const HException& exception) {
        leave();
        m_host.showTranscript();
        m_host.logError(QString::fromStdString(exception.message()));
        return;
    }
    stopPolling();
    m_host.onBreakpoint();
    setState(DebugState::Stopped);
    if (m_session->hasEnded())
        m_host.programExited(m_session->exitCode());
}

bool DebugControl::waitForStop()
{
    while (m_polling) {
        pollDebugger();
        if (m_polling && !m_host.carryOn())
            debugBreak();
    }
    return isDebugging() && !m_session->hasEnded();
}

// Ending ----------------------------------------------------------------------------------------

void DebugControl::debugStopClicked()
{
    stopPolling();
    if (!m_parts.settings.autoDisconnect->toBool()) {
        debugStop();
        return;
    }
    leave();
    m_parts.targets.connectTargetInterface(nullptr, false, nullptr, QString());
}

void DebugControl::debugStop()
{
    leave();
    m_host.refreshTargets();
}

/// Whatever has been reached of a session is taken back.
void DebugControl::leave()
{
    m_autoStepping = false;
    stopPolling();
    TargetInterface* const target = m_parts.targets.targetInterface();
    if (m_state == DebugState::Running && m_session)
        m_parts.debugger.stop();
    m_parts.debugger.clear();
    m_breakpoints.clear();
    setState(DebugState::Idle);
    if (target && target->inDebugSession())
        target->debugEnd();
}

bool DebugControl::checkNotDebugging()
{
    if (!isDebugging())
        return true;
    if (!m_host.ask(
            u"This operation will stop the debugger.\n\nDo you want to stop the debugger?"_s,
            u"Stop Debugging?"_s))
        return false;
    debugStop();
    return true;
}

void DebugControl::startPolling()
{
    if (!m_polling)
        m_host.startPolling();
    m_polling = true;
}

void DebugControl::stopPolling()
{
    if (m_polling)
        m_host.stopPolling();
    m_polling = false;
}

void DebugControl::setState(DebugState state)
{
    m_state = state;
    if (state == DebugState::Stopped)
        m_breakpoints.update();
    m_host.stateChanged(state);
}

// What the breakpoints ask ------------------------------------------------------------------------

Frame* DebugControl::selectedFrame() const
{
    return m_breakpointView ? m_breakpointView->selectedFrame() : nullptr;
}

void DebugControl::sourceBreakpointStateChanged(const Path& file, int line)
{
    if (m_breakpointView)
        m_breakpointView->sourceBreakpointStateChanged(file, line);
}

void DebugControl::refresh()
{
    if (m_breakpointView)
        m_breakpointView->refresh();
}

void DebugControl::select(BreakpointListItem* item)
{
    if (m_breakpointView)
        m_breakpointView->select(item);
}
