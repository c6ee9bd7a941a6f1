#include "cli/BuildCommand.h"

#include "base/HException.h"
#include "build/log/BuildLogModel.h"
#include "build/projectsystem/MSP430ProjectSystem.h"
#include "build/system/ExportBuilder.h"
#include "build/system/MSP430BuildSystem.h"
#include "build/workspace/BuildRun.h"
#include "build/workspace/Workspace.h"
#include "cli/BuildOptions.h"
#include "cli/InterruptSignal.h"
#include "packages/archive/CompressedFile.h"
#include "projects/settings/GantryBenchEnvironmentSettings.h"

#include <cstdio>

using namespace Qt::Literals::StringLiterals;

namespace {

enum ExitStatus { Done = 0, Failed = 1, Cancelled = 3 };

void print(const QString& line)
{
    const QByteArray bytes = line.toLocal8Bit();
    std::fwrite(bytes.constData(), 1, static_cast<std::size_t>(bytes.size()), stdout);
    if (!bytes.endsWith('\n'))
        std::fputc('\n', stdout);
    std::fflush(stdout);
}

/// A build from the words of the command line.
class CommandLineBuild {
public:
    explicit CommandLineBuild(const BuildOptions& options)
        : m_options(options),
          m_workspace({}),
          m_run(&m_workspace.builds(), &m_workspace.log(), nullptr)
    {
    }

    int run()
    {
        if (QTx::isCompressedFile(m_options.solution))
            throw HException(m_options.solution.toStdString()
                             + " is a packaged solution; open it in the IDE to unpack it");
        m_workspace.projects().loadSolution(m_options.solution, nullptr, nullptr);
        saveSolution();
        findElement();
        setProperties();
        return m_options.exported ? writeDown() : build();
    }

private:
    /// What a template or the conversion of an older file has made is kept, before properties are
    /// set for this build only.
    void saveSolution()
    {
        if (m_workspace.settings().saveProjectFileOnBuild->toBool())
            m_workspace.projects().save(nullptr);
    }

    void findElement()
    {
        m_element = m_workspace.projects().solutionElement();
        if (m_options.project.isEmpty())
            return;
        m_element = m_workspace.projects().findProject(m_element, m_options.project);
        if (!m_element)
            throw HException("there is no project " + m_options.project.toStdString()
                             + "; the solution has: "
                             + m_workspace.projects().projectNames().join(u", "_s).toStdString());
    }

    QStringList configurations() const
    {
        const ProjectSystem& projects = *projectSystem;
        const QStringList all = projects.configurations(
            m_element,
            ProjectSystem::WithPublic | ProjectSystem::WithHidden | ProjectSystem::WithCommon);
        for (const QString& name : m_options.configurations)
            if (!all.contains(name))
                throw HException("there is no configuration " + name.toStdString()
                                 + "; the solution has: " + all.join(u", "_s).toStdString());
        if (!m_options.configurations.isEmpty())
            return m_options.configurations;
        return projects.configurations(m_element, ProjectSystem::WithPublic).first(1);
    }

    /// On each project, in each configuration that it is built in: what the user says here beats
    /// what the solution says of projects.
    void setProperties()
    {
        for (const auto& [name, value] : m_options.properties) {
            const PropertyClass* propertyClass = buildSystem->findPropertyClass(name);
            if (!propertyClass)
                propertyClass = projectSystem->propertyClass(name);
            if (!propertyClass)
                throw HException("there is no property " + name.toStdString());
            for (ProjectElement* project : projectSystem->solutionProjects())
                for (const QString& configuration : configurationsOf(project))
                    projectSystem->setProperty(project, propertyClass, configuration, value, false);
        }
    }

    QStringList configurationsOf(ProjectElement* project) const
    {
        return m_options.batch
            ? projectSystem->getBatchBuildConfigurations(project, CommonConfiguration)
            : configurations();
    }

    BuildRequest request(const QString& configuration) const
    {
        BuildRequest request;
        request.element = m_element;
        request.configuration = configuration;
        request.batch = m_options.batch;
        request.clean = m_options.kind != BuildOptions::Kind::Build;
        request.force = request.clean;
        request.cleanOnly = m_options.kind == BuildOptions::Kind::Clean;
        request.showCommandLines = m_options.commandLines;
        return request;
    }

    int build()
    {
        BuildLogModel& log = m_workspace.log();
        QObject::connect(&log, &BuildLogModel::outputAdded,
                         [](const QString& line) { print(line); });
        const InterruptSignal interrupt([this] { m_run.cancel(); });
        // A batch has its configurations of its own.
        const QStringList names = m_options.batch ? configurations().first(1) : configurations();
        for (const QString& name : names) {
            const BuildResult result = m_run.run(request(name));
            if (result == BuildResult::Cancelled)
                return Cancelled;
            if (result == BuildResult::Failed)
                return Failed;
        }
        return Done;
    }

    int writeDown()
    {
        ExportBuilder builder;
        for (const QString& name : configurations()) {
            BuildRequest wanted = request(name);
            wanted.force = true;
            buildSystem->build(wanted.element, name, &builder, wanted.mode(), wanted.batch, true);
        }
        for (const QString& line : builder.lines())
            print(line);
        return builder.hadErrors() || buildSystem->failed() ? Failed : Done;
    }

    const BuildOptions& m_options;
    Workspace m_workspace;
    BuildRun m_run;
    ProjectElement* m_element = nullptr;
};

} // namespace

int buildCommand(std::span<const std::string> arguments)
{
    const BuildOptions options = BuildOptions::parse(arguments);
    return CommandLineBuild(options).run();
}
