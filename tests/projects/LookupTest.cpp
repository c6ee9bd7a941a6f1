// How settings are found through the tree and the configurations.

#include "projects/SolutionTestSupport.h"
#include "projects/solution/Builder.h"

namespace {

const char* const Tree = R"(
  <configuration Name="Debug" hidden="Yes"/>
  <configuration Name="Release"/>
  <configuration Name="A" a="solution A"/>
  <configuration Name="B" b="solution B"/>
  <configuration Name="C" inherited_configurations="A;B" list="lc"/>
  <configuration Name="D" inherited_configurations="C"/>
  <configuration Name="Common" emptied="solution" s="solution" list="l0"/>
  <project Name="p">
    <configuration Name="Common" emptied="" list="lp" both="p common"/>
    <configuration Name="A" both="p A" list="lpA"/>
    <configuration Name="B" both="p B" list="lpB"/>
    <configuration Name="Debug" near="p debug"/>
    <folder Name="f">
      <configuration Name="Common" list="lf"/>
      <file file_name="x.c">
        <configuration Name="Common" near="x common" list="lx"/>
      </file>
    </folder>
  </project>
)";

class LookupTest : public SolutionTest {
protected:
    LookupTest()
    {
        ProjectElement* solution = load(Tree);
        m_project = m_system.findProject(solution, u"p"_s);
        m_file = m_system.findFile(solution, u"x.c"_s);
    }
    static const PropertyClass& classOf(const QString& name, PropertyClass::Type type)
    {
        static std::list<PropertyClass> classes;
        return classes.emplace_back(name, type, u"page"_s, u"group"_s, name, QString(),
                                    u"default"_s);
    }
    QString text(const ProjectElement* element, const QString& name, const QString& configuration)
    {
        return m_system.settingFor(element, &classOf(name, PropertyClass::Type::String),
                                   configuration);
    }
    QString list(const ProjectElement* element, const QString& configuration)
    {
        return m_system.settingFor(element, &classOf(u"list"_s, PropertyClass::Type::StringList),
                                   configuration);
    }

    ProjectElement* m_project;
    ProjectElement* m_file;
};

TEST_F(LookupTest, TheNearestElementWinsThenTheConfigurationThenWhatItInheritsThenCommon)
{
    EXPECT_EQ(text(m_file, u"near"_s, u"Debug"_s), u"x common"_s);
    EXPECT_EQ(text(m_project, u"near"_s, u"Debug"_s), u"p debug"_s);
    EXPECT_EQ(text(m_file, u"both"_s, u"C"_s), u"p A"_s);
    EXPECT_EQ(text(m_file, u"both"_s, u"Release"_s), u"p common"_s);
    EXPECT_EQ(text(m_file, u"a"_s, u"C"_s), u"solution A"_s);
    EXPECT_EQ(text(m_file, u"s"_s, u"C"_s), u"solution"_s);
    EXPECT_EQ(text(m_file, u"none"_s, u"C"_s), u"default"_s);
    // An empty value is a hit; inheritance is one level deep.
    EXPECT_EQ(text(m_file, u"emptied"_s, u"C"_s), QString());
    EXPECT_EQ(text(m_file, u"a"_s, u"D"_s), u"default"_s);
    EXPECT_EQ(m_system.configurationUsedFor(
                  m_file, &classOf(u"both"_s, PropertyClass::Type::String), u"C"_s),
              u"A"_s);
}

TEST_F(LookupTest, ListsAreJoinedNearestFirst)
{
    EXPECT_EQ(list(m_file, u"Common"_s), u"lx;lf;lp;l0"_s);
    EXPECT_EQ(list(m_file, u"C"_s), u"lx;lf;lpA;lpB;lp;lc;l0"_s);
    // A list of directories isn't an aggregate.
    EXPECT_EQ(
        m_system.settingFor(m_file, &classOf(u"list"_s, PropertyClass::Type::DirPathList), u"C"_s),
        u"lx"_s);
    // The list that is shown for editing is the local one.
    ProjectPropertyValue local(&classOf(u"list"_s, PropertyClass::Type::StringList), m_project,
                               u"Common"_s);
    EXPECT_EQ(local.propertyValue(), u"lp"_s);
}

TEST_F(LookupTest, ValuesTellWhereTheyComeFrom)
{
    const PropertyClass& both = classOf(u"both"_s, PropertyClass::Type::String);
    const auto items = ProjectPropertyValue(&both, m_file, u"C"_s).inheritanceInformation();
    ASSERT_EQ(items.size(), 1);
    EXPECT_EQ(items[0].element, m_project);
    EXPECT_EQ(items[0].value, u"p A"_s);
    EXPECT_TRUE(ProjectPropertyValue(&both, m_file, u"C"_s).nonDefault());
    EXPECT_TRUE(ProjectPropertyValue(&both, m_file, u"C"_s).inherited());
    EXPECT_FALSE(ProjectPropertyValue(&both, m_project, u"A"_s).inherited());

    const PropertyClass& none = classOf(u"none"_s, PropertyClass::Type::String);
    const auto defaults = ProjectPropertyValue(&none, m_file, u"C"_s).inheritanceInformation();
    ASSERT_EQ(defaults.size(), 1);
    EXPECT_EQ(defaults[0].element, nullptr);
    EXPECT_EQ(defaults[0].value, u"default"_s);
    EXPECT_FALSE(ProjectPropertyValue(&none, m_file, u"C"_s).nonDefault());
}

TEST_F(LookupTest, ConfigurationsAreListedOnceAndSorted)
{
    using P = ProjectSystem;
    EXPECT_EQ(m_system.configurations(m_file, P::WithPublic),
              (QStringList{u"A"_s, u"B"_s, u"C"_s, u"D"_s, u"Release"_s}));
    EXPECT_EQ(m_system.configurations(m_file, P::WithHidden), (QStringList{u"Debug"_s}));
    EXPECT_EQ(m_system.configurations(nullptr, P::WithCommon | P::WithHidden),
              (QStringList{u"Common"_s, u"Debug"_s}));
    EXPECT_EQ(m_system.configurations(m_file, 0), (QStringList{u"Common"_s}));
}

TEST_F(LookupTest, WhatIsNotPerConfigurationIsStoredInCommon)
{
    PropertyClass once(u"once"_s, PropertyClass::Type::String, u""_s, u""_s, u""_s, u""_s);
    once.setPerConfiguration(false);
    ProjectPropertyValue value(&once, m_project, u"Debug"_s);
    value.setPropertyValue(u"v"_s);
    EXPECT_EQ(m_project->configuration(u"Common"_s)->attribute(u"once"_s), u"v"_s);
    EXPECT_EQ(value.propertyValue(), u"v"_s);
    m_system.removeProperty(m_project, &once, u"Debug"_s);
    EXPECT_TRUE(value.inherited());
}

TEST_F(LookupTest, AnImportedSolutionUsesTheListsOfItsImporterWhereItHasNone)
{
    writeSolution("inner.kvp", "<project Name='q'><configuration Name='A' v='inner A'/></project>");
    ProjectElement* solution = load("<configuration Name='C' inherited_configurations='A'/>"
                                    "<import file_name='inner.kvp'/>");
    ProjectElement* project = m_system.findProject(solution, u"inner(q)"_s);
    ASSERT_NE(project, nullptr);
    EXPECT_EQ(text(project, u"v"_s, u"C"_s), u"inner A"_s);
}

// Changes

class ReasonBuilder : public Builder {
public:
    void beginGroup(ProjectElement*, const QString&, unsigned) override { }
    void endGroup(ProjectElement*) override { }
    void init() override { }
    void setDirectory(const QString&) override { }
    void setCommand(const QStringList&) override { }
    void setEnvironment(const QStringList&) override { }
    void setOutputFiles(const QStringList&) override { }
    void setTemporaryFiles(const QStringList&) override { }
    void doit() override { }
    void error(const QString&) override { }
    void message(const QString& text) override { messages << text; }

    QStringList messages;
};

TEST_F(LookupTest, AChangeThatCountsIsNewerThanWhatWasMadeBefore)
{
    const PropertyClass& both = classOf(u"both"_s, PropertyClass::Type::String);
    const QDateTime before = QDateTime::currentDateTime().addSecs(-10);
    const QDateTime after = QDateTime::currentDateTime().addSecs(10);
    ReasonBuilder builder;
    // Nothing has changed since the solution was loaded.
    EXPECT_TRUE(m_system.upToDate(m_file, &both, u"C"_s, before, &builder, false));
    m_system.setProperty(m_project, &both, u"B"_s, u"new"_s, false);
    EXPECT_FALSE(m_system.upToDate(m_file, &both, u"C"_s, before, &builder, false));
    EXPECT_EQ(builder.messages, (QStringList{u"both property has changed."_s}));
    EXPECT_FALSE(m_system.upToDate(m_file, &both, u"C"_s, before, &builder, true));
    EXPECT_EQ(builder.messages.size(), 1);
    EXPECT_TRUE(m_system.upToDate(m_file, &both, u"C"_s, after, &builder, false));
    EXPECT_TRUE(m_system.upToDate(m_file, &both, u"A"_s, before, &builder, false));
    // A removal is a change as well, once.
    m_system.removeProperty(m_project, &both, u"A"_s);
    EXPECT_FALSE(m_system.upToDate(m_file, &both, u"A"_s, before, &builder, true));
}

// Property groups

class PropertyGroupTest : public SolutionTest {
protected:
    PropertyGroupTest()
    {
        m_folder.write("groups.xml", R"(<!DOCTYPE x>
<groups>
  <group name="Target" short="Device" default="small">
    <groupEntry name="small">
      <property name="size" value="1"/><property name="kind" value="s" configuration="Common"/>
    </groupEntry>
    <if host="UNIX"><groupEntry name="large">
      <property name="size" value="2"/><cdefine name="LARGE" value="1"/>
    </groupEntry></if>
  </group>
</groups>)");
        m_project = m_system.findProject(load("<project Name='p'/>"), u"p"_s);
        m_system.propertyGroups().setGroupFile(path("groups.xml"));
    }
    QString stored(const QString& configuration, const QString& name) const
    {
        const ProjectElement* place = m_project->configuration(configuration);
        return place && place->hasAttribute(name) ? place->attribute(name) : u"-"_s;
    }
    ProjectElement* m_project;
};

TEST_F(PropertyGroupTest, AChoiceBringsItsProperties)
{
    const PropertyValueGroupClass* target = m_system.propertyGroups().getGroupClass(u"Target"_s);
    ASSERT_NE(target, nullptr);
    EXPECT_EQ(target->page(), u"General"_s);
    EXPECT_EQ(target->enumerates(), (QStringList{u"small"_s, u"large"_s}));
    EXPECT_TRUE(target->getGroupEntry(u"large"_s).hasDefines());
    EXPECT_FALSE(target->getGroupEntry(u"small"_s).hasDefines());

    PropertyValueGroupValue value(target, m_project, u"Debug"_s);
    value.setPropertyValue(u"large"_s);
    EXPECT_EQ(stored(u"Debug"_s, u"Target"_s), u"large"_s);
    EXPECT_EQ(stored(u"Debug"_s, u"size"_s), u"2"_s);
    EXPECT_EQ(stored(u"Common"_s, u"kind"_s), u"-"_s);
    // What is no choice stands for the default.
    value.setPropertyValue(u"huge"_s);
    EXPECT_EQ(stored(u"Debug"_s, u"Target"_s), u"small"_s);
    EXPECT_EQ(stored(u"Debug"_s, u"size"_s), u"1"_s);
    EXPECT_EQ(stored(u"Common"_s, u"kind"_s), u"s"_s);
    value.removeProperty();
    EXPECT_EQ(stored(u"Debug"_s, u"Target"_s), u"-"_s);
    EXPECT_EQ(stored(u"Debug"_s, u"size"_s), u"-"_s);
    EXPECT_EQ(stored(u"Common"_s, u"kind"_s), u"-"_s);
}

TEST_F(PropertyGroupTest, FilesAreKeptUntilTheyChangeAndAreEmptyWhenTheyCannotBeRead)
{
    PropertyValueGroups& groups = m_system.propertyGroups();
    const PropertyValueGroupClass* target = groups.getGroupClass(u"Target"_s);
    groups.setGroupFile(path("groups.xml"));
    EXPECT_EQ(groups.getGroupClass(u"Target"_s), target);
    groups.setGroupFile(u"None"_s);
    EXPECT_EQ(groups.getGroupClass(u"Target"_s), target);

    CapturedWarnings warnings;
    m_folder.write("groups.xml", "<groups><group name=");
    std::filesystem::last_write_time(m_folder / "groups.xml",
                                     std::filesystem::file_time_type::clock::now()
                                         + std::chrono::hours(1));
    groups.setGroupFile(path("groups.xml"));
    EXPECT_EQ(groups.getGroupClass(u"Target"_s), nullptr);
    EXPECT_EQ(warnings.take().size(), 1u);
}

} // namespace
