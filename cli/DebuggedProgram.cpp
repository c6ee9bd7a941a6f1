#include "cli/DebuggedProgram.h"

#include "base/HException.h"
#include "build/workspace/Workspace.h"
#include "cli/DeviceSelection.h"
#include "cli/TargetChoice.h"
#include "projects/settings/GantryBenchEnvironmentSettings.h"
#include "target/control/TargetList.h"

#include <QFile>

#include <cstdio>

DebuggedProgram::DebuggedProgram(const std::string& program, const std::string& device,
                                 const QString& target, std::function<bool()> carryOn)
    : m_terminal(std::string()),
      m_monitor(findTarget(target)),
      m_debugger(this),
      m_session(m_debugger, m_monitor, &m_terminal,
                {std::move(carryOn), [this] { m_terminal.waitForLine(); },
                 [this](const QString& text) { displayError(text); }}),
      m_object(m_session)
{
    connect(device);
    m_session.load(Path(program));
    m_session.reset();
}

DebuggedProgram::~DebuggedProgram() = default;

HMonitor& DebuggedProgram::findTarget(const QString& name)
{
    if (name.isEmpty()) {
        m_simulator = std::make_unique<MSP430Monitor>();
        return *m_simulator;
    }
    m_workspace = std::make_unique<Workspace>(Workspace::Options());
    m_list = std::make_unique<TargetList>(m_workspace->settings(), installedTargets());
    m_list->load();
    auto* const monitor = dynamic_cast<HMonitor*>(&chooseTarget(*m_list, name));
    if (!monitor)
        throw HException("the target has no debugger");
    return *monitor;
}

void DebuggedProgram::connect(const std::string& device)
{
    if (auto* const simulator = dynamic_cast<MSP430Monitor*>(&m_monitor)) {
        selectDevice(*simulator, device);
        simulator->setTerminal(&m_terminal);
    }
    m_monitor.connect(false);
}

void DebuggedProgram::install(ESContext* context)
{
    m_object.install(context);
    m_monitor.installScriptObject(context);
}

void DebuggedProgram::displayError(const QString& text)
{
    std::fflush(stdout);
    std::fprintf(stderr, "gantry: %s\n", text.toLocal8Bit().constData());
}

QString DebuggedProgram::getDebugSourceText(const Path& path, int line)
{
    QFile file(path.osPath());
    if (!file.open(QIODevice::ReadOnly))
        return {};
    for (int number = 1; number < line && !file.atEnd(); ++number)
        file.readLine();
    return QString::fromUtf8(file.readLine()).trimmed();
}
