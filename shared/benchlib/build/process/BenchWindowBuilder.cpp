#include "build/process/BenchWindowBuilder.h"

#include "base/QTx.h"
#include "build/log/BuildLogModel.h"
#include "build/process/BuildCommands.h"
#include "build/process/BuildObserver.h"

#include <QCoreApplication>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int LastSignal = 64;
constexpr qint64 IdleInterval = 10; // ms

} // namespace

BenchWindowBuilder::BenchWindowBuilder(BuildLogModel* log, BuildCommands* commands,
                                       BuildObserver* observer, const Options& options,
                                       ToolProcessFactory makeProcess)
    : m_log(log),
      m_commands(commands),
      m_observer(observer),
      m_options(options),
      m_makeProcess(std::move(makeProcess))
{
}

BenchWindowBuilder::~BenchWindowBuilder() = default;

void BenchWindowBuilder::beginGroup(ProjectElement* element, const QString& title, unsigned flags)
{
    BuildLogItem* item = m_log->beginGroup(title, flags | BuildLogFlags::ShowsProgress);
    if (element != nullptr && m_commands->isProject(element)) {
        m_item = item;
        m_title = title;
    }
    if (m_observer != nullptr)
        m_observer->beginBuild(element);
    m_elements.push_back(element);
}

void BenchWindowBuilder::endGroup(ProjectElement* element)
{
    if (element != nullptr && m_steps != 0 && m_commands->isProject(element))
        m_item = nullptr;
    m_log->endGroup();
    if (m_observer != nullptr)
        m_observer->endBuild(element);
    if (!m_elements.empty())
        m_elements.pop_back();
}

void BenchWindowBuilder::init()
{
    m_command.clear();
    m_environment.clear();
    m_outputFiles.clear();
    m_temporaryFiles.clear();
}

void BenchWindowBuilder::setTotalSteps(ProjectElement* element, int count)
{
    m_steps = count;
    const bool isProject = element != nullptr && m_commands->isProject(element);
    if (!isProject || count == 0 || m_title.isEmpty() || m_item == nullptr)
        return;
    m_currentStep = 0;
    m_log->setTotalSteps(m_item, count);
}

void BenchWindowBuilder::nextStep() { m_log->setProgress(++m_currentStep); }

void BenchWindowBuilder::error(const QString& text) { m_log->addError(text); }

void BenchWindowBuilder::note(const QString& text) { m_log->addNote(text); }

void BenchWindowBuilder::success(const QString& text) { m_log->addSuccess(text); }

void BenchWindowBuilder::message(const QString& text) { m_log->addMessage(text); }

void BenchWindowBuilder::idle()
{
    // Often enough for the eye, and seldom enough to cost nothing where nothing is to do.
    if (m_sinceEvents.isValid() && m_sinceEvents.elapsed() < IdleInterval)
        return;
    QCoreApplication::processEvents();
    m_sinceEvents.start();
}

void BenchWindowBuilder::cancelBuild()
{
    if (m_process)
        m_process->kill();
    m_processKilled = true;
    m_commands->setCancelled();
}

void BenchWindowBuilder::doit()
{
    Q_ASSERT(!m_process);
    if (m_commands->cancelled())
        return;
    QStringList command = m_command;
    if (m_options.showCommandLines)
        m_log->addMessage(commandLine(command));
    // Tools write into directories that are there.
    for (const QString& file : m_outputFiles)
        QTx::makeDir(Path(file).directory().osPath());
    if (runBuiltin(command) || !start(command))
        return;
    m_log->setWorkingDirectory(Path(m_directory));
    while (m_process->isRunning()) {
        showOutput();
        if (m_process->isRunning())
            m_process->waitForActivity();
    }
    showOutput();

    const int status = m_process->exitStatus();
    m_process.reset();
    if (status == 0 && !m_processKilled)
        return;
    if (!m_processKilled)
        reportSignal(command.value(0), status);
    removeFiles(m_outputFiles);
    removeFiles(m_temporaryFiles);
    m_commands->setFailed();
}

bool BenchWindowBuilder::runBuiltin(QStringList& command)
{
    QString errorText;
    if (!m_commands->builtinCommand(m_directory, command, errorText))
        return false;
    if (!errorText.isEmpty()) {
        error(errorText);
        m_commands->setFailed();
    }
    return true;
}

bool BenchWindowBuilder::start(const QStringList& command)
{
    m_processKilled = false;
    m_process = m_makeProcess();
    m_process->setWorkingDirectory(m_directory);
    m_process->setArguments(command);
    if (!m_environment.isEmpty())
        m_process->setEnvironment(m_environment);
    if (m_process->start())
        return true;
    m_process.reset();
    error(u"Can't start process "_s + command.value(0));
    m_commands->setFailed();
    return false;
}

/// A tool that crashes has no words of its own for it.
void BenchWindowBuilder::reportSignal(const QString& program, int status)
{
    const int signal = status - ToolProcess::SignalStatus;
    if (signal > 0 && signal <= LastSignal)
        error(u"%1 was ended by signal %2"_s.arg(program).arg(signal));
}

/// Takes what has arrived; new output comes in only while events are processed.
void BenchWindowBuilder::showOutput()
{
    while (!m_processKilled && processLine()) { }
}

bool BenchWindowBuilder::processLine()
{
    std::optional<QString> line = m_process->readLineStderr();
    if (!line)
        line = m_process->readLineStdout();
    if (line)
        m_log->processOutput(*line);
    return line.has_value();
}

void BenchWindowBuilder::removeFiles(const QStringList& files)
{
    for (const QString& file : files)
        QTx::removeFile(file);
}
