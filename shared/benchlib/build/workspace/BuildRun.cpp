#include "build/workspace/BuildRun.h"

#include "build/log/BuildLogModel.h"
#include "build/process/BenchWindowBuilder.h"
#include "build/process/QtToolProcess.h"
#include "build/system/StandardBuildSystem.h"
#include "projects/settings/EnvironmentSettings.h"

using namespace Qt::Literals::StringLiterals;

unsigned BuildRequest::mode() const
{
    unsigned bits = 0;
    if (clean)
        bits |= BuildClean;
    if (force)
        bits |= BuildForce;
    if (cleanOnly)
        bits |= BuildCleanOnly;
    if (!recurse)
        bits |= BuildThisOnly;
    if (!environment->showBuildInformation->toBool())
        bits |= BuildQuiet;
    return bits;
}

BuildRun::BuildRun(BuildSystem* builds, BuildLogModel* log, BuildObserver* observer)
    : m_builds(builds),
      m_log(log),
      m_observer(observer)
{
}

BuildRun::~BuildRun() = default;

QString BuildRun::verdict(BuildResult result)
{
    switch (result) {
    case BuildResult::NothingToDo: return u"Build up to date"_s;
    case BuildResult::Built: return u"Build complete"_s;
    case BuildResult::Failed: return u"Build failed"_s;
    case BuildResult::Cancelled: break;
    }
    return u"Build terminated"_s;
}

BuildResult BuildRun::run(const BuildRequest& request)
{
    m_log->clear();
    m_log->options().showUnparsedErrorOutput = environment->showUnparsedErrorOutput->toBool();
    if (!request.title.isEmpty())
        m_log->beginGroup(request.title);
    BenchWindowBuilder builder(
        m_log, dynamic_cast<BuildCommands*>(m_builds), m_observer,
        {.showCommandLines = request.showCommandLines || environment->showCommandLines->toBool()},
        [] { return std::make_unique<QtToolProcess>(); });
    m_builder = &builder;
    const BuildResult result = m_builds->build(request.element, request.configuration, &builder,
                                               request.mode(), request.batch, request.recurse);
    m_builder = nullptr;
    if (!request.title.isEmpty())
        m_log->endGroup();
    m_log->setImmediateUpdate(true);
    if (result == BuildResult::NothingToDo || result == BuildResult::Built)
        m_log->addSuccess(verdict(result));
    else
        m_log->addError(verdict(result), BuildLogFlags::NotCounted);
    return result;
}

void BuildRun::cancel()
{
    if (m_builder)
        m_builder->cancelBuild();
}
