#include "cli/DebuggedProject.h"

#include "base/HException.h"
#include "build/log/BuildLogModel.h"
#include "build/projectsystem/MSP430ProjectSystem.h"
#include "build/system/MSP430BuildSystem.h"
#include "build/workspace/BuildRun.h"
#include "cli/TargetChoice.h"
#include "projects/macros/MacroSystem.h"
#include "projects/settings/GantryBenchEnvironmentSettings.h"
#include "target/TargetProject.h"
#include "target/msp430/MSP430Monitor.h"

#include <cstdio>

using namespace Qt::Literals::StringLiterals;

DebuggedProject::DebuggedProject(const Choice& choice, std::function<bool()> carryOn)
    : m_carryOn(std::move(carryOn)),
      m_list(m_workspace.settings(), installedTargets()),
      m_targets(m_workspace.settings(), *this, &m_list),
      m_control({m_debugger, m_targets, m_workspace.settings(), &m_terminal}, *this)
{
    scriptSystem = &m_scripts;
    TargetProject::setPropertyClassFinder(
        [](const QString& name) { return buildSystem->findPropertyClass(name); });
    m_workspace.projects().loadSolution(choice.solution, nullptr, nullptr);
    const QString configuration = findConfiguration(choice.configuration);
    ProjectElement* const project = findProject(choice.project);
    m_helper.apply(m_debugger);
    m_list.load();
    TargetInterface& target = chooseTarget(m_list, choice.target);
    if (auto* const simulator = dynamic_cast<SimulatedHMonitor*>(&target))
        simulator->setTerminal(&m_terminal);
    m_targets.connectTargetInterface(&target, false, project, configuration);
    if (!m_control.startDebugging(project, configuration, DebugControl::StartStopped))
        throw HException("the program wasn't started");
    m_control.waitForStop();
    m_object = std::make_unique<DebugScriptObject>(*m_control.session());
}

DebuggedProject::~DebuggedProject()
{
    m_control.debugStop();
    m_targets.disconnectTargetInterface();
    TargetProject::setPropertyClassFinder({});
    scriptSystem = nullptr;
}

void DebuggedProject::showMessage(const QString& title, const QString& text)
{
    displayError(title + u": "_s + text);
}

void DebuggedProject::installScriptObjects(ESContext* context)
{
    context->addToLoadPath(
        MacroSystem::replaceMacros(macroSystem->systemMacros(), u"$(PackagesDir)"_s));
    m_echo.install(context);
    m_bench.install(context);
    if (m_object)
        m_object->install(context);
    if (TargetInterface* const target = m_targets.targetInterface())
        target->installScriptObject(context);
}

void DebuggedProject::install(ESContext* context)
{
    m_object->install(context);
    m_targets.targetInterface()->installScriptObject(context);
}

QString DebuggedProject::findConfiguration(const QString& name) const
{
    const QStringList all =
        projectSystem->configurations(projectSystem->solutionElement(), ProjectSystem::WithPublic);
    if (name.isEmpty() && !all.isEmpty())
        return all.first();
    if (!all.contains(name))
        throw missing(u"configuration"_s, name, all);
    return name;
}

ProjectElement* DebuggedProject::findProject(const QString& name) const
{
    const QString configuration = findConfiguration(QString());
    if (!name.isEmpty()) {
        ProjectElement* const found = projectSystem->findProject(nullptr, name);
        if (!found)
            throw missing(u"project"_s, name, projectSystem->projectNames());
        return found;
    }
    for (ProjectElement* const project : projectSystem->solutionProjects())
        if (buildSystem->canLoad(project, configuration))
            return project;
    throw HException("no project of the solution makes a program");
}

bool DebuggedProject::ask(const QString& text, const QString&)
{
    // Only the question whether the project is built has an answer that does no harm.
    return text.endsWith(u"Build the project before debugging?"_s);
}

bool DebuggedProject::isOutOfDate(ProjectElement* project, const QString& configuration)
{
    return m_workspace.builds().buildJobCount(project, configuration, BuildQuiet, false, true) > 0;
}

bool DebuggedProject::build(ProjectElement* project, const QString& configuration)
{
    QStringList lines;
    const auto connection = QObject::connect(&m_workspace.log(), &BuildLogModel::outputAdded,
                                             [&](const QString& line) { lines << line.trimmed(); });
    BuildRequest request;
    request.element = project;
    request.configuration = configuration;
    const BuildResult result =
        BuildRun(&m_workspace.builds(), &m_workspace.log(), nullptr).run(request);
    QObject::disconnect(connection);
    const bool done = result == BuildResult::Built || result == BuildResult::NothingToDo;
    for (const QString& line : done ? QStringList() : lines)
        displayError(line);
    return done;
}

void DebuggedProject::displayError(const QString& text) { m_helper.displayError(text); }

void DebuggedProject::Helper::displayError(const QString& text)
{
    std::fflush(stdout);
    std::fprintf(stderr, "gantry: %s\n", text.toLocal8Bit().constData());
}
