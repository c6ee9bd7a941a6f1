#include "build/workspace/Workspace.h"

#include "base/QTx.h"
#include "build/log/BuildLogModel.h"
#include "build/log/TOBFDiagnosticParser.h"
#include "build/projectsystem/MSP430ProjectSystem.h"
#include "build/system/MSP430BuildSystem.h"
#include "projects/macros/MacroSystem.h"
#include "projects/settings/BenchDescription.h"
#include "projects/settings/GantryBenchEnvironmentSettings.h"

using namespace Qt::Literals::StringLiterals;

Workspace::Workspace(const Options& options)
    : m_description(std::make_unique<BenchDescription>()),
      m_macros(std::make_unique<MacroSystem>()),
      m_settings(std::make_unique<GantryBenchEnvironmentSettings>())
{
    const QString root = options.root.isEmpty() ? QTx::rootDirectory() : options.root;
    macroSystem = m_macros.get();
    m_macros->setupDefaultSystemMacros(root);
    m_macros->setSystemMacro(u"Platform"_s, Get_PLATFORM().toLower());

    m_description->load(root + u"/bin/bench.xml"_s);
    stringProvider = m_description.get();
    environment = m_settings.get();
    const QString userFolder = options.settingsFolder.isEmpty()
        ? m_macros->systemMacro(u"BenchUserDir"_s)
        : options.settingsFolder;
    m_settings->init(QTx::userLocalAppDataDirectory(Get_OWNER()) + u"/settings.xml"_s,
                     userFolder + u"/settings.xml"_s);
    m_settings->createEntries();
    m_macros->setGlobalMacrosValue(m_settings->globalMacros);
    m_macros->setupPackageMacros(MacroSystem::replaceMacros(
        m_macros->systemMacros(), m_settings->packageDestinationDirectory->toString()));

    m_projects = std::make_unique<MSP430ProjectSystem>();
    projectSystem = m_projects.get();
    m_builds = std::make_unique<MSP430BuildSystem>();
    buildSystem = m_builds.get();
    m_projects->setBuildSystem(m_builds.get());
    m_projects->setMacroExpander(
        [this](ProjectElement* element, const QString& text, const QString& configuration) {
            return m_builds->replaceMacros(element, text, configuration);
        });
    m_log = std::make_unique<BuildLogModel>(BuildLogModel::Kind::Main);
    m_log->setParser(std::make_unique<TOBFDiagnosticParser>());
    buildLog = m_log.get();
}

Workspace::~Workspace()
{
    buildLog = nullptr;
    buildSystem = nullptr;
    projectSystem = nullptr;
    environment = nullptr;
    stringProvider = nullptr;
    macroSystem = nullptr;
}
