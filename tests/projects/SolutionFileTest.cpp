// Solution files: what they say when they can't be loaded, and how they are written.

#include "projects/SolutionTestSupport.h"

#include <QDir>
#include <QFile>

namespace {

using SolutionFileTest = SolutionTest;

std::string document(const std::string& solution)
{
    return "<!DOCTYPE GantryBench_Project_File>\n" + solution;
}

TEST_F(SolutionFileTest, WhatCannotBeLoadedIsTold)
{
    writeSolution("self.kvp", "  <import file_name='self.kvp'/>\n");
    writeSolution("first.kvp", "  <import file_name='second.kvp'/>\n");
    writeSolution("second.kvp", "  <import file_name='./first.kvp'/>\n");
    writeSolution("lost.kvp", "  <import file_name='gone.kvp'/>\n");
    m_folder.write("other.kvp", "<!DOCTYPE Other>\n<solution/>\n");
    m_folder.write("root.kvp", document("<project/>\n"));
    m_folder.write("tags.kvp", document("<solution>\n  <project>\n</solution>\n"));
    m_folder.write("unknown.kvp", document("<solution version='2'>\n  <thing/>\n</solution>\n"));
    m_folder.write("template.kvp",
                   document("<solution><project Name='p' template_name='none'/></solution>"));
    m_folder.write("empty.kvp", "");
    QDir().mkdir(path("folder.kvp"));

    EXPECT_EQ(loadError("gone.kvp"), "gone.kvp:0: does not exist");
    EXPECT_EQ(loadError("lost.kvp"), "gone.kvp:0: does not exist");
    EXPECT_EQ(loadError("folder.kvp"), "folder.kvp:0: cannot access");
    EXPECT_EQ(loadError("self.kvp"), "self.kvp:0: solution already loaded");
    EXPECT_EQ(loadError("first.kvp"), "first.kvp:0: solution already loaded");
    EXPECT_EQ(loadError("other.kvp"), "other.kvp:0: not a solution file");
    EXPECT_EQ(loadError("root.kvp"), "root.kvp:0: not a solution file");
    EXPECT_EQ(loadError("tags.kvp"), "tags.kvp:4:tagName mismatch");
    EXPECT_EQ(loadError("unknown.kvp"), "unknown.kvp:3: unknown element <thing>");
    EXPECT_EQ(loadError("template.kvp"), "template.kvp:0:no template for project p");
    EXPECT_NE(loadError("empty.kvp"), "loaded");
    // Files are as they were.
    EXPECT_EQ(textOf("tags.kvp"), document("<solution>\n  <project>\n</solution>\n"));
}

TEST_F(SolutionFileTest, AHandlerMayNameAnotherFile)
{
    struct Handler : ProjectFileNotFoundErrorHandler {
        bool retry(QString& path) override
        {
            asked << path;
            path = replacement;
            return !replacement.isEmpty();
        }
        QStringList asked;
        QString replacement;
    } handler;
    writeSolution("outer.kvp", "<import file_name='gone.kvp'/>");
    writeSolution("found.kvp", "<project Name='p'/>");
    EXPECT_THROW(m_system.loadSolution(path("outer.kvp"), &handler, nullptr), SolutionLoadError);
    handler.replacement = path("found.kvp");
    m_system.loadSolution(path("outer.kvp"), &handler, nullptr);
    EXPECT_EQ(m_system.projectNames(), QStringList{u"found(p)"_s});
}

TEST_F(SolutionFileTest, IsWrittenByFixedRules)
{
    load("<project b='2' Name=\"p\" a='&lt;\"1\"&amp;'>"
         "<folder Name='f'><file file_name='x.c'/></folder>"
         "<configuration Name='Common' value='caf\xc3\xa9 &#x9;'/><folder Name=''/></project>");
    ASSERT_TRUE(m_system.saveProjectFile(m_system.solutionElement()));
    const std::string expected = R"(<!DOCTYPE GantryBench_Project_File>
<solution Name="test" version="2">
  <project Name="p" a="&lt;&quot;1&quot;&amp;" b="2">
    <configuration Name="Common" value="caf&#xc3;&#xa9; &#x9;"/>
    <folder Name="f">
      <file file_name="x.c"/>
    </folder>
    <folder/>
  </project>
</solution>
)";
    EXPECT_EQ(textOf("test.kvp"), expected);
    m_system.loadSolution(path("test.kvp"), nullptr, nullptr);
    ProjectElement* project = m_system.findProject(nullptr, u"p"_s);
    EXPECT_EQ(project->configuration(u"Common"_s)->attribute(u"value"_s), u"caf\u00e9 \t"_s);
    ASSERT_TRUE(m_system.saveProjectFile(m_system.solutionElement()));
    EXPECT_EQ(textOf("test.kvp"), expected);
}

TEST_F(SolutionFileTest, ValuesOfAnyBytesAndDeepNestingComeBack)
{
    ProjectElement* at = load("<project Name='p'/>")->firstChild();
    QString any;
    for (char16_t c = 1; c < 0x300; ++c)
        any += QChar(c);
    m_system.setProperty(at, u"any"_s, u"Common"_s, any, false);
    for (int depth = 0; depth < 1000; ++depth)
        at = m_system.createFolder(at, u"f"_s);
    m_system.addFile(at, u"deep.c"_s);
    m_system.save(nullptr);
    m_system.loadSolution(path("test.kvp"), nullptr, nullptr);
    const ProjectElement* project = m_system.solutionElement()->firstChild();
    EXPECT_EQ(project->configuration(u"Common"_s)->attribute(u"any"_s), any);
    EXPECT_NE(m_system.findFile(m_system.solutionElement(), u"deep.c"_s), nullptr);

    std::string deep = document("<solution version='2'>");
    for (int depth = 0; depth < 100'000; ++depth)
        deep += "<folder>";
    m_folder.write("deep.kvp", deep);
    EXPECT_NE(loadError("deep.kvp"), "loaded");
}

TEST_F(SolutionFileTest, AFailedSaveLeavesTheOldFileAndTheMarks)
{
    load("<project Name='p'/>");
    const std::string before = textOf("test.kvp");
    m_system.setProperty(m_system.solutionElement()->firstChild(), u"a"_s, u"Common"_s, u"1"_s,
                         false);
    m_system.solutionElement()->setPath(Path(path("missing/test.kvp")));
    struct Handler : ProjectFileSaveErrorHandler {
        bool retry(ProjectElement*) override { return ++asked == 1; }
        int asked = 0;
    } handler;
    EXPECT_THROW(m_system.save(&handler), SolutionSaveError);
    EXPECT_EQ(handler.asked, 1);
    EXPECT_TRUE(m_system.modified());
    EXPECT_EQ(textOf("test.kvp"), before);
}

TEST_F(SolutionFileTest, OnlyWhatHasChangedIsWritten)
{
    writeSolution("inner.kvp", "<project Name='q'/>");
    load("<import file_name='inner.kvp'/><project Name='p'/>");
    EXPECT_FALSE(m_system.modified());
    const std::string outer = textOf("test.kvp");
    m_system.setProperty(m_system.findProject(nullptr, u"inner(q)"_s), u"a"_s, u"Common"_s, u"1"_s,
                         false);
    EXPECT_TRUE(m_system.modified());
    m_system.save(nullptr);
    EXPECT_FALSE(m_system.modified());
    EXPECT_EQ(textOf("test.kvp"), outer);
    EXPECT_NE(textOf("inner.kvp").find("a=\"1\""), std::string::npos);
    // Written, an import is a reference with the text that it had.
    m_system.saveProjectFile(m_system.solutionElement());
    EXPECT_NE(textOf("test.kvp").find("  <import file_name=\"inner.kvp\"/>\n"), std::string::npos);
    EXPECT_FALSE(m_system.modifiedOnDisk());
    std::filesystem::last_write_time(m_folder / "inner.kvp",
                                     std::filesystem::file_time_type::clock::now()
                                         + std::chrono::hours(1));
    EXPECT_TRUE(m_system.modifiedOnDisk());
    m_system.updateLoadDateTime();
    EXPECT_FALSE(m_system.modifiedOnDisk());
}

TEST_F(SolutionFileTest, OlderFilesAreBroughtUpToDateAndStandAsModified)
{
    m_folder.write("old.kvp",
                   document("<solution Name='old' version='1'><project Name='p'/></solution>"));
    m_system.loadSolution(path("old.kvp"), nullptr, nullptr);
    EXPECT_EQ(m_system.solutionElement()->attribute(u"version"_s), u"2"_s);
    EXPECT_TRUE(m_system.modified());
}

TEST_F(SolutionFileTest, DynamicFoldersShowTheirDirectory)
{
    m_folder.write("src/a.c", "");
    m_folder.write("src/b.c", "");
    m_folder.write("src/b.txt", "");
    const char* content = "<project Name='p'><folder Name='d' path='src' filter='*.c;*.s'>"
                          "<file file_name='src/b.c'><configuration Name='Common' k='v'/></file>"
                          "<file file_name='src/gone.c'/></folder></project>";
    ProjectElement* solution = load(content);
    EXPECT_FALSE(m_system.modified());
    EXPECT_NE(m_system.findAbsoluteFile(solution, Path(path("src/a.c"))), nullptr);
    EXPECT_EQ(m_system.findFile(solution, u"src/gone.c"_s), nullptr);
    m_folder.write("src/c.s", "");
    m_system.populateDynamicFolder(m_system.findByName(solution, u"d"_s));
    EXPECT_NE(m_system.findFile(solution, u"src/c.s"_s), nullptr);
    m_system.saveProjectFile(solution);
    const std::string text = textOf("test.kvp");
    EXPECT_NE(text.find("src/b.c"), std::string::npos);
    EXPECT_EQ(text.find("a.c"), std::string::npos);
    m_system.loadSolution(path("test.kvp"), nullptr, nullptr);
    ProjectElement* file = m_system.findFile(m_system.solutionElement(), u"src/b.c"_s);
    EXPECT_EQ(file->configuration(u"Common"_s)->attribute(u"k"_s), u"v"_s);
}

// The tree

TEST_F(SolutionFileTest, ProjectsOfImportsAreKeptApartByTheirSolution)
{
    writeSolution("deep.kvp", "<project Name='p'/>");
    writeSolution("left.kvp", "<project Name='p'/><import file_name='deep.kvp'/>");
    writeSolution("right.kvp", "<project Name='p'/>");
    ProjectElement* solution =
        load("<import file_name='left.kvp'/><import file_name='right.kvp'/><project Name='p'/>");
    EXPECT_EQ(m_system.projectNames(),
              (QStringList{u"left(p)"_s, u"left,deep(p)"_s, u"p"_s, u"right(p)"_s}));
    ProjectElement* right = m_system.findProject(solution, u"right(p)"_s);
    EXPECT_EQ(m_system.getGlobalProjectName(right), u"right(p)"_s);
    EXPECT_EQ(m_system.findProject(right, u"p"_s), right);
    EXPECT_EQ(m_system.findProject(right, u"left(p)"_s)->containingSolution()->getName(),
              u"left"_s);
}

TEST_F(SolutionFileTest, PathsFollowProjectDirectoriesAndMacros)
{
    ProjectElement* solution =
        load("<project Name='p'><configuration Name='Common' project_directory='sub/../code'/>"
             "<file file_name='a.c'/><file file_name='in/b.c'/><file file_name='$(BenchDir)/c.c'/>"
             "</project>");
    const auto file = [&](const QString& name) { return m_system.findFile(solution, name); };
    EXPECT_EQ(file(u"a.c"_s)->path().osPath(), path("code/a.c"));
    EXPECT_TRUE(file(u"a.c"_s)->inProjectDirectory());
    EXPECT_FALSE(file(u"in/b.c"_s)->inProjectDirectory());
    EXPECT_TRUE(file(u"in/b.c"_s)->belowProjectDirectory());
    EXPECT_EQ(file(u"$(BenchDir)/c.c"_s)->path().osPath(), u"/bench/c.c"_s);
    EXPECT_FALSE(file(u"$(BenchDir)/c.c"_s)->belowProjectDirectory());
    EXPECT_EQ(m_system.findRelativeFile(solution->firstChild(), u"in/b.c"_s), file(u"in/b.c"_s));
    // A change of the directory moves the files.
    m_system.setProperty(solution->firstChild(), u"project_directory"_s, u"Common"_s, QString(),
                         false);
    EXPECT_EQ(file(u"a.c"_s)->path().osPath(), path("a.c"));
}

TEST_F(SolutionFileTest, NewFilesGoIntoTheFolderThatListsTheirExtension)
{
    ProjectElement* solution = m_system.createSolution(path("new"), u"s"_s);
    ProjectElement* project = m_system.createProject(solution, u"p"_s, u"Executable"_s, u""_s);
    EXPECT_NE(project->configuration(u"Common"_s), nullptr);
    ProjectElement* sources = m_system.createFolder(project, u"Sources"_s, u"c; h,s"_s);
    EXPECT_EQ(m_system.addFile(project, u"x.C"_s)->parent(), sources);
    EXPECT_EQ(m_system.addFile(project, u"x.s"_s)->parent(), sources);
    EXPECT_EQ(m_system.addFile(project, u"x.txt"_s)->parent(), project);
    EXPECT_EQ(m_system.createFolder(sources, u""_s)->getName(), u"<NULL>"_s);
}

TEST_F(SolutionFileTest, DependenciesAreResolvedOnceAndCirclesEnd)
{
    ProjectElement* solution =
        load("<project Name='app'><configuration Name='Common' "
             "project_dependencies='b;nothing;a'/></project>"
             "<project Name='a'><configuration Name='Common' project_dependencies='b'/></project>"
             "<project Name='b'/>"
             "<project Name='x'><configuration Name='Debug' project_dependencies='y'/></project>"
             "<project Name='y'><configuration Name='Common' project_dependencies='x'/></project>");
    const auto order = [&](const QString& name, const QString& configuration) {
        QStringList names;
        for (const ProjectElement* element :
             m_system.buildOrder(m_system.findProject(solution, name), configuration))
            names << element->getName();
        return names;
    };
    EXPECT_EQ(order(u"app"_s, u"Debug"_s), (QStringList{u"b"_s, u"a"_s, u"app"_s}));
    EXPECT_EQ(order(u"x"_s, u"Debug"_s), (QStringList{u"y"_s, u"x"_s}));
    EXPECT_EQ(order(u"x"_s, u"Release"_s), (QStringList{u"x"_s}));
    EXPECT_EQ(m_system.dependsOn(m_system.findProject(solution, u"app"_s), u"Debug"_s).size(), 2u);
}

TEST_F(SolutionFileTest, TransactionsAreSeenAtOnceAndDroppedOrKeptWhole)
{
    ProjectElement* solution = load("<project Name='p'><folder Name='f'/></project>");
    ProjectElement* project = solution->firstChild();
    const auto change = [&] {
        m_system.startTransaction();
        m_system.setProperty(project, u"a"_s, u"Debug"_s, u"1"_s, true);
        m_system.setProperty(project, u"b"_s, u"Debug"_s, u"2"_s, true);
        m_system.renameElement(project, u"q"_s);
        m_system.removeElement(project->firstChild());
        m_system.createFolder(project, u"g"_s);
        EXPECT_EQ(project->configuration(u"Debug"_s)->attribute(u"a"_s), u"1"_s);
        EXPECT_EQ(project->getName(), u"q"_s);
        EXPECT_NE(m_system.findFolder(project, u"f"_s), nullptr);
    };
    change();
    m_system.rollBackTransaction();
    EXPECT_EQ(project->configuration(u"Debug"_s), nullptr);
    EXPECT_EQ(project->getName(), u"p"_s);
    EXPECT_NE(m_system.findFolder(project, u"f"_s), nullptr);
    EXPECT_EQ(m_system.findFolder(project, u"g"_s), nullptr);
    EXPECT_FALSE(m_system.modified());

    change();
    m_system.commitTransaction();
    EXPECT_EQ(project->configuration(u"Debug"_s)->attribute(u"b"_s), u"2"_s);
    EXPECT_EQ(m_system.projectNames(), QStringList{u"q"_s});
    EXPECT_EQ(m_system.findFolder(project, u"f"_s), nullptr);
    EXPECT_NE(m_system.findFolder(project, u"g"_s), nullptr);
    EXPECT_TRUE(m_system.modified());
}

TEST_F(SolutionFileTest, BatchConfigurationsAreThePublicOnesUnlessToldOtherwise)
{
    ProjectElement* solution = load("<configuration Name='R'/><configuration Name='D'/>"
                                    "<configuration Name='H' hidden='Yes'/><project Name='p'/>");
    ProjectElement* project = m_system.findProject(solution, u"p"_s);
    EXPECT_EQ(m_system.getBatchBuildConfigurations(project, u"Common"_s),
              (QStringList{u"D"_s, u"R"_s}));
    m_system.setBatchBuildConfigurations(project, u"Common"_s, {u"R"_s, u"H"_s});
    EXPECT_EQ(m_system.getBatchBuildConfigurations(project, u"Common"_s),
              (QStringList{u"R"_s, u"H"_s}));
}

} // namespace
