// What a build does, in which order, and what it leaves alone.

#include "build/WorkspaceTestSupport.h"
#include "build/system/ConciseBuilder.h"
#include "build/system/ExportBuilder.h"

#include <QFileInfo>

#include <chrono>
#include <thread>

namespace {

using namespace std::chrono_literals;

class BuildTest : public WorkspaceTest {
protected:
    /// A project of that name without any settings that need files of the installation.
    static std::string projectXml(const std::string& name, const std::string& attributes,
                                  const std::string& content)
    {
        return "<project Name='" + name
            + "'><configuration Name='Common' property_groups_file_path='None'"
              " linker_memory_map_file='' linker_section_placement_file='' linker_map_file='No' "
            + attributes + "/>" + content + "</project>";
    }
    void loadApplication()
    {
        m_folder.write("a.c", "");
        m_folder.write("b.c", "");
        m_folder.write("l.c", "");
        load(projectXml("app", "project_dependencies='lib'",
                        "<file file_name='a.c'/><folder Name='f'><file file_name='b.c'/></folder>")
             + projectXml("lib", "project_type='Library'", "<file file_name='l.c'/>"));
        build(projects().solutionElement());
        m_builder.clear();
        // Later changes of files are newer than what was built.
        std::this_thread::sleep_for(20ms);
    }
    QStringList titles()
    {
        const QStringList all = m_builder.titles;
        m_builder.clear();
        return all;
    }
    void touch(const std::string& name) { m_folder.write(name, "changed"); }
    ProjectElement* file(const QString& name)
    {
        return projects().findFile(projects().solutionElement(), name);
    }
};

const QString BuildingApp = u"Building app in configuration Debug"_s;
const QString BuildingLib = u"Building lib in configuration Debug"_s;

TEST_F(BuildTest, DependenciesComeFirstAndEachProjectOnce)
{
    m_folder.write("x.c", "");
    load(projectXml("one", "project_dependencies='base'", "<file file_name='x.c'/>")
         + projectXml("two", "project_dependencies='base'", "")
         + projectXml("base", "project_type='Library'", ""));
    EXPECT_EQ(build(projects().solutionElement()), BuildResult::Built);
    EXPECT_EQ(titles(),
              (QStringList{u"Building base in configuration Debug"_s, u"Archiving base.kva"_s,
                           u"Building one in configuration Debug"_s, u"Compiling x.c"_s,
                           u"Linking one.kvx"_s, u"Building two in configuration Debug"_s,
                           u"Linking two.kvx"_s}));
    EXPECT_EQ(builds().buildJobCount(projects().solutionElement(), u"Debug"_s, 0, false, true), 4);
}

TEST_F(BuildTest, WhatIsCurrentStays)
{
    loadApplication();
    ProjectElement* solution = projects().solutionElement();
    EXPECT_EQ(build(solution), BuildResult::NothingToDo);
    EXPECT_TRUE(m_builder.commands.isEmpty());
    EXPECT_TRUE(m_builder.messages.contains(u"'a.c' is up to date"_s));
    EXPECT_TRUE(m_builder.messages.contains(u"'lib' is up to date"_s));
    m_builder.clear();
    EXPECT_EQ(build(solution, BuildQuiet), BuildResult::NothingToDo);
    EXPECT_TRUE(m_builder.messages.isEmpty());
    ConciseBuilder concise;
    EXPECT_EQ(builds().build(solution, u"Debug"_s, &concise, 0, false, true),
              BuildResult::NothingToDo);
}

TEST_F(BuildTest, ANewerSourceRebuildsWhatComesOfIt)
{
    loadApplication();
    touch("b.c");
    EXPECT_EQ(build(projects().solutionElement()), BuildResult::Built);
    EXPECT_TRUE(m_builder.messages.contains(u"b.c is newer than Debug/b.kvo"_s));
    EXPECT_EQ(titles(),
              (QStringList{BuildingLib, BuildingApp, u"Compiling b.c"_s, u"Linking app.kvx"_s}));
    std::this_thread::sleep_for(20ms);
    touch("l.c");
    build(projects().solutionElement());
    EXPECT_EQ(titles(),
              (QStringList{BuildingLib, u"Compiling l.c"_s, u"Archiving lib.kva"_s, BuildingApp,
                           u"Linking app.kvx"_s}));
}

TEST_F(BuildTest, AMissingInputOrOutputIsAReason)
{
    loadApplication();
    std::filesystem::remove(m_folder / "Debug/app.kvx");
    build(project(u"app"_s));
    EXPECT_EQ(titles(), (QStringList{BuildingLib, BuildingApp, u"Linking app.kvx"_s}));
    set(project(u"app"_s), "linker_additional_files", u"gone.kvo"_s);
    build(project(u"app"_s));
    EXPECT_TRUE(m_builder.messages.contains(u"gone.kvo does not exist."_s));
    m_builder.clear();
    set(project(u"app"_s), "linker_additional_files", QString());
    set(project(u"app"_s), "linker_output_format", u"srec"_s);
    std::this_thread::sleep_for(20ms);
    build(project(u"app"_s));
    m_builder.clear();
    std::filesystem::remove(m_folder / "Debug/app.srec");
    build(project(u"app"_s));
    EXPECT_TRUE(m_builder.messages.contains(u"Debug/app.srec does not exist."_s));
}

TEST_F(BuildTest, AChangedPropertyRebuildsWhatItReaches)
{
    loadApplication();
    set(file(u"a.c"_s), "c_preprocessor_definitions", u"NEW"_s);
    EXPECT_EQ(build(projects().solutionElement()), BuildResult::Built);
    EXPECT_TRUE(m_builder.messages.contains(u"Preprocessor Definitions property has changed."_s));
    EXPECT_EQ(titles(),
              (QStringList{BuildingLib, BuildingApp, u"Compiling a.c"_s, u"Linking app.kvx"_s}));
    EXPECT_EQ(build(projects().solutionElement()), BuildResult::NothingToDo);
    m_builder.clear();

    struct Case {
        const char* property;
        const char* value;
        QStringList titles; ///< of building the application alone
    };
    const QStringList all = {BuildingApp, u"Compiling a.c"_s, u"Compiling b.c"_s,
                             u"Linking app.kvx"_s};
    const QStringList link = {BuildingApp, u"Linking app.kvx"_s};
    const Case cases[] = {{"linker_stack_size", "64", link},
                          {"linker_keep_symbols", "k", link},
                          {"optimize_peepholes", "No", link},
                          {"link_msp430_workaround_CPU_6_bug", "Yes", link},
                          {"msp430_insn_set", "MSP430X", all},
                          {"compiler_optimization_strategy", "Maximize speed", all},
                          {"default_code_section", "X", all},
                          {"file_codec", "UTF-8", {BuildingApp}}};
    for (const Case& one : cases) {
        SCOPED_TRACE(one.property);
        std::this_thread::sleep_for(5ms);
        set(project(u"app"_s), one.property, QString::fromUtf8(one.value));
        builds().build(project(u"app"_s), u"Debug"_s, &m_builder, 0, false, false);
        EXPECT_EQ(titles(), one.titles);
    }
    // The time of a change isn't stored.
    set(project(u"app"_s), "build_debug_information", u"No"_s);
    projects().save(nullptr);
    projects().loadSolution(path("s.kvp"), nullptr, nullptr);
    EXPECT_EQ(build(projects().solutionElement()), BuildResult::NothingToDo);
}

TEST_F(BuildTest, ExcludedElementsAreSkipped)
{
    loadApplication();
    set(file(u"b.c"_s), "build_exclude_from_build", u"Yes"_s);
    build(project(u"app"_s), BuildForce);
    EXPECT_EQ(m_builder.commandsOf(u"kcc"_s).size(), 2);
    EXPECT_TRUE(
        m_builder.commandsOf(u"kld"_s).first().startsWith(u"Debug/a.kvo "_s + u"Debug/lib"_s)
        || !m_builder.commandsOf(u"kld"_s).first().contains(u"Debug/b.kvo"));
    EXPECT_TRUE(m_folder.has("Debug/b.kvo"));
    m_builder.clear();
    set(project(u"lib"_s), "build_exclude_from_build", u"Yes"_s);
    build(projects().solutionElement(), BuildForce);
    EXPECT_FALSE(m_builder.titles.contains(BuildingLib));
    EXPECT_FALSE(m_builder.commandsOf(u"kld"_s).first().contains(u"lib.kva"));
    EXPECT_EQ(builds().buildJobCount(projects().solutionElement(), u"Debug"_s, 0, false, true), 2);
}

TEST_F(BuildTest, CleaningRemovesOutputsAndRunsNothing)
{
    loadApplication();
    EXPECT_EQ(build(projects().solutionElement(), BuildClean | BuildForce | BuildCleanOnly),
              BuildResult::Built);
    EXPECT_TRUE(m_builder.commands.isEmpty());
    EXPECT_FALSE(m_folder.has("Debug/a.kvo") || m_folder.has("Debug/app.kvx")
                 || m_folder.has("Debug/lib.kva"));
    EXPECT_TRUE(m_builder.messages.contains(u"Remove "_s + path("Debug/a.kvo")));
    EXPECT_EQ(m_builder.titles,
              (QStringList{u"Cleaning lib in configuration Debug"_s,
                           u"Cleaning app in configuration Debug"_s}));
    m_builder.clear();
    build(projects().solutionElement(), BuildClean | BuildForce);
    EXPECT_EQ(m_builder.titles.first(), u"Rebuilding lib in configuration Debug"_s);
    EXPECT_TRUE(m_folder.has("Debug/app.kvx"));
}

TEST_F(BuildTest, BatchesBuildTheirConfigurationsInOrder)
{
    load("<configuration Name='Debug'/><configuration Name='Release'/>"
         + projectXml("app",
                      "batch_build_configurations='Release;Debug' project_dependencies='lib'", "")
         + projectXml("lib", "project_type='Library'", ""));
    builds().build(project(u"app"_s), u"Debug"_s, &m_builder, 0, true, true);
    QStringList headings = m_builder.titles.filter(u"Building"_s);
    EXPECT_EQ(headings,
              (QStringList{u"Building lib in configuration Release"_s,
                           u"Building app in configuration Release"_s, BuildingLib, BuildingApp}));
}

TEST_F(BuildTest, AFailureOrACancellationEndsTheWalk)
{
    loadApplication();
    m_builder.onCommand = [&](const QStringList&) { builds().setFailed(); };
    EXPECT_EQ(build(projects().solutionElement(), BuildForce), BuildResult::Failed);
    EXPECT_EQ(titles(), (QStringList{BuildingLib, u"Compiling l.c"_s}));
    m_builder.onCommand = [&](const QStringList&) { builds().setCancelled(); };
    EXPECT_EQ(build(projects().solutionElement(), BuildForce), BuildResult::Cancelled);
    EXPECT_EQ(m_builder.commands.size(), 1);
}

TEST_F(BuildTest, CirclesAreReported)
{
    load(projectXml("x", "project_dependencies='y'", "")
         + projectXml("y", "project_dependencies='x'", ""));
    EXPECT_EQ(build(projects().solutionElement()), BuildResult::Failed);
    EXPECT_EQ(m_builder.errors,
              QStringList{u"Projects depend on each other in a circle: x, y, x"_s});
    EXPECT_GT(builds().buildJobCount(projects().solutionElement(), u"Debug"_s, 0, false, true), 0);
}

TEST_F(BuildTest, StepsOfTheUserRunAroundTheirTool)
{
    m_folder.write("a.c", "");
    load(projectXml("app",
                    "compile_pre_build_command='pre &quot;$(InputName) x&quot;' "
                    "compile_post_build_command='post $(TargetPath)' "
                    "linker_pre_build_command='&quot;before&quot;' "
                    "linker_post_build_command='after $(TargetPath)' "
                    "linker_post_build_command_wd='$(OutDir)'",
                    "<file file_name='a.c'/>"));
    build(project(u"app"_s));
    QStringList programs;
    for (const QStringList& command : m_builder.commands)
        programs << command.first().section(u'/', -1);
    EXPECT_EQ(programs,
              (QStringList{u"pre"_s, u"kcc"_s, u"post"_s, u"before"_s, u"kld"_s, u"after"_s}));
    EXPECT_EQ(m_builder.commands[0], (QStringList{u"pre"_s, u"a x"_s}));
    EXPECT_EQ(m_builder.commands[2], (QStringList{u"post"_s, path("Debug/a.kvo")}));
    EXPECT_EQ(m_builder.commands[5], (QStringList{u"after"_s, path("Debug/app.kvx")}));
    EXPECT_EQ(m_builder.directories.last(), path("Debug"));
    EXPECT_TRUE(m_builder.titles.contains(u"Pre-compile command a.c"_s));
    EXPECT_TRUE(m_builder.titles.contains(u"Post-link command app"_s));
}

TEST_F(BuildTest, OtherKindsOfProjectsRunTheirOwnCommands)
{
    m_folder.write("data.txt", "text");
    load(projectXml("ext",
                    "project_type='Externally Built Executable' "
                    "external_build_file_name='made.kvx' external_build_command='make all' "
                    "external_clean_command='make clean'",
                    "<file file_name='never.c'/>")
         + projectXml("stage", "project_type='Staging' stage_set_readonly='Yes'",
                      "<file file_name='data.txt'/>")
         + projectXml("join",
                      "project_type='Combining' combine_output_filepath='all.txt' "
                      "combine_command='join $(CombiningOutputFilePath) $(CombiningRelInputPaths)'",
                      "<file file_name='data.txt'/>"));
    build(project(u"ext"_s), BuildClean | BuildForce);
    EXPECT_EQ(m_builder.commands,
              (QList<QStringList>{{u"make"_s, u"clean"_s}, {u"make"_s, u"all"_s}}));
    EXPECT_EQ(m_builder.outputs.last(), QStringList{path("made.kvx")});
    EXPECT_TRUE(builds().canLoad(project(u"ext"_s), u"Debug"_s));
    m_builder.clear();

    build(project(u"stage"_s));
    EXPECT_EQ(m_builder.commands,
              (QList<QStringList>{{u"cp"_s, u"data.txt"_s, path("Debug/data.txt")},
                                  {u"chmod"_s, u"-w"_s, path("Debug/data.txt")}}));
    EXPECT_EQ(build(project(u"stage"_s)), BuildResult::NothingToDo);
    EXPECT_TRUE(m_builder.messages.contains(u"'data.txt' is up to date."_s));
    m_builder.clear();

    build(project(u"join"_s));
    EXPECT_EQ(m_builder.commands.first(), (QStringList{u"join"_s, path("all.txt"), u"data.txt"_s}));
    EXPECT_EQ(build(project(u"join"_s)), BuildResult::NothingToDo);

    // Progress reaches its end, whether anything is built or not.
    for (const QString& name : {u"stage"_s, u"join"_s})
        for (const unsigned mode : {0U, unsigned(BuildForce)}) {
            m_builder.clear();
            build(project(name), mode);
            EXPECT_EQ(m_builder.steps, m_builder.totalSteps) << name.toStdString() << mode;
        }
}

TEST_F(BuildTest, ExportingWritesAScriptAndChangesNothing)
{
    loadApplication();
    ExportBuilder builder;
    builds().build(project(u"app"_s), u"Debug"_s, &builder, BuildForce | BuildClean, false, true);
    EXPECT_TRUE(m_folder.has("Debug/app.kvx"));
    EXPECT_EQ(builder.lines().first(), u"cd "_s + path("").chopped(1));
    EXPECT_EQ(builder.lines().filter(u"cd "_s).size(), 1);
    EXPECT_EQ(builder.lines().filter(u"/bin/kcc "_s).size(), 3);
    EXPECT_FALSE(builder.hadErrors());
}

// Macros of the build

TEST_F(BuildTest, MacrosOfFilesAndProjects)
{
    m_folder.write("in/a.b.c", "");
    load("<configuration Name='Common' macros='m=solution;n=1'/>"
         + projectXml("app",
                      "macros='m=project;ProjectName=never' build_output_directory='out/$(n)' "
                      "build_root_output_directory='out'",
                      "<file file_name='in/a.b.c'/>"));
    const QString text = u"$(ProjectNodeName)|$(ProjectName)|$(Configuration)|$(Platform)|"
                         "$(SolutionName)|$(SolutionExt)|$(InputName)|$(InputFileName)|$(InputExt)|"
                         "$(RelInputPath)|$(OBJ)$(EXE)$(LIB)|$(PackageExt)|$(IntDir)|$(OutDir)|"
                         "$(RootRelativeOutDir)|$(n)|$(LibExt)"_s;
    EXPECT_EQ(builds().replaceMacros(file(u"in/a.b.c"_s), text, u"Debug"_s),
              u"a.b.c|app|Debug|msp430|s|kvp|a.b|a.b.c|c|in/a.b.c|.kvo.kvx.kva|kvq|Debug|out/1|1|1|"
              "$(LibExt)"_s);
    EXPECT_EQ(builds().replaceMacros(project(u"app"_s), u"$(LibExt) $(InputName)"_s, u"Debug"_s),
              u"_soft_single $(InputName)"_s);
    EXPECT_EQ(
        builds().replaceMacros(file(u"in/a.b.c"_s), u"$(InputDir) $(InputPath)"_s, u"Debug"_s),
        path("in") + u' ' + path("in/a.b.c"));
}

TEST_F(BuildTest, KindsOfFiles)
{
    m_folder.write("map.xml", "<!DOCTYPE Board_Memory_Definition_File>\n<root/>");
    m_folder.write("place.xml", "<!DOCTYPE Linker_Placement_File><Root/>");
    m_folder.write("other.xml", "<x/>");
    load(projectXml("p", "", ""));
    const std::pair<const char*, const char*> cases[] = {{"a.C", "C"},
                                                         {"a.cpp", "C++"},
                                                         {"a.cc", "C++"},
                                                         {"a.s", "Assembly"},
                                                         {"a.asm", "Assembly"},
                                                         {"a.s43", "Assembly"},
                                                         {"a.kva", "Library"},
                                                         {"a.kvx", "Executable"},
                                                         {"a.kvo", "Object file"},
                                                         {"map.xml", "Memory Map"},
                                                         {"place.xml", "Section Placement"},
                                                         {"other.xml", ""},
                                                         {"gone.xml", ""},
                                                         {"a.h", ""},
                                                         {"Makefile", ""}};
    for (const auto& [name, kind] : cases) {
        ProjectElement* added = projects().addFile(project(u"p"_s), QString::fromUtf8(name));
        EXPECT_EQ(projects().getFileType(added), QString::fromUtf8(kind)) << name;
    }
    ProjectElement* told = projects().addFile(project(u"p"_s), u"x.h"_s);
    set(told, "file_type", u"C"_s);
    EXPECT_EQ(projects().getFileType(told), u"C"_s);
}

TEST_F(BuildTest, OlderSolutionsAreConverted)
{
    m_folder.write("groups.xml",
                   "<groups><group name='Target'><groupEntry name='X'>"
                   "<property name='linker_heap_size' value='64'/>"
                   "</groupEntry></group></groups>");
    m_folder.write("old.kvp",
                   "<!DOCTYPE GantryBench_Project_File>\n<solution Name='s' version='1'>"
                   "<configuration Name='Common' property_groups_file_path='"
                       + path("groups.xml").toStdString()
                       + "'/><project Name='p'><configuration Name='Common' Target='X'/>"
                         "<folder Name='System Files'>"
                         "<file file_name='$(BenchDir)/targets/section_placement.xml'/>"
                         "<file file_name='kept.c'/></folder></project></solution>");
    projects().loadSolution(path("old.kvp"), nullptr, nullptr);
    EXPECT_EQ(projects().solutionElement()->attribute(u"version"_s), u"2"_s);
    EXPECT_EQ(file(u"section_placement.xml"_s), nullptr);
    EXPECT_NE(file(u"kept.c"_s), nullptr);
    EXPECT_EQ(projects().settingFor(project(u"p"_s),
                                    builds().findPropertyClass(u"linker_heap_size"_s), u"Debug"_s),
              u"64"_s);
}

} // namespace
