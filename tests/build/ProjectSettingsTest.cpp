// What a user sees of the settings of an element, and can do with them.

#include "WorkspaceTestSupport.h"
#include "build/projectsystem/ProjectPropertyOperations.h"

namespace {

class ProjectSettingsTest : public WorkspaceTest {
protected:
    ProjectSettingsTest()
    {
        m_folder.write(
            "groups.xml",
            "<r><group name='Target' short='Device' default='a'><groupEntry name='a'>"
            "<property name='msp430_insn_set' value='MSP430X'/></groupEntry></group></r>");
        load("<project Name='p'><configuration Name='Common' "
             "property_groups_file_path='groups.xml'/>"
             "<folder Name='f'/><file file_name='a.c'/><file file_name='a.s'/>"
             "<file file_name='a.txt'/></project>");
    }
    QStringList rows(ProjectElement* element)
    {
        QStringList names;
        for (const PropertyValue* value : projects().settingsFor(element, u"Debug"_s))
            names << value->propertyClass()->saveName();
        return names;
    }
    ProjectElement* file(const QString& name) { return projects().findFile(project(u"p"_s), name); }
};

TEST_F(ProjectSettingsTest, DependOnWhatTheElementIs)
{
    struct Case {
        const char* type;
        QStringList with;
        QStringList without;
    };
    const Case cases[] = {
        {"Executable",
         {u"project_type"_s, u"build_output_file_name"_s, u"linker_memory_map_file"_s,
          u"c_additional_options"_s, u"msp430_insn_set"_s, u"target_reset_script"_s,
          u"property_groups_file_path"_s},
         {u"stage_output_filepath"_s, u"combine_command"_s}},
        {"Library",
         {u"build_output_file_name"_s, u"c_additional_options"_s, u"double_is_float"_s},
         {u"linker_memory_map_file"_s, u"target_reset_script"_s}},
        {"Staging", {u"stage_command"_s}, {u"c_additional_options"_s, u"linker_map_file"_s}},
        {"Combining", {u"combine_command"_s}, {u"c_additional_options"_s}},
        {"Externally Built Executable",
         {u"external_build_command"_s, u"debug_working_directory"_s},
         {u"c_additional_options"_s, u"linker_map_file"_s}}};
    for (const Case& one : cases) {
        set(project(u"p"_s), "project_type", QString::fromUtf8(one.type));
        const QStringList names = rows(project(u"p"_s));
        for (const QString& name : one.with)
            EXPECT_TRUE(names.contains(name)) << one.type << " " << name.toStdString();
        for (const QString& name : one.without)
            EXPECT_FALSE(names.contains(name)) << one.type << " " << name.toStdString();
        EXPECT_EQ(QSet<QString>(names.begin(), names.end()).size(), names.size()) << one.type;
    }
    set(project(u"p"_s), "project_type", u"Executable"_s);
    EXPECT_TRUE(rows(file(u"a.c"_s)).contains(u"c_enforce_ansi_checking"_s));
    EXPECT_FALSE(rows(file(u"a.s"_s)).contains(u"c_enforce_ansi_checking"_s));
    EXPECT_TRUE(rows(file(u"a.s"_s)).contains(u"asm_additional_options"_s));
    EXPECT_FALSE(rows(file(u"a.txt"_s)).contains(u"c_preprocessor_definitions"_s));
    EXPECT_TRUE(rows(file(u"a.txt"_s)).contains(u"full_path"_s));
    EXPECT_TRUE(rows(projects().solutionElement()).contains(u"build_output_directory"_s));
}

TEST_F(ProjectSettingsTest, CanGoBackToWhatIsInheritedAndOpenFiles)
{
    QString opened;
    ProjectPropertyOperations operations([&](const QString& path) { opened = path; });
    ProjectPropertyValue map(builds().propertyClass("linker_memory_map_file"), project(u"p"_s),
                             u"Common"_s);
    EXPECT_EQ(operations.operations(&map), QStringList{u"&Open"_s});
    map.setPropertyValue(u"in/$(ProjectName).xml"_s);
    EXPECT_EQ(operations.operations(&map), (QStringList{u"Use &Inherited Value"_s, u"&Open"_s}));
    operations.doOperation(&map, u"&Open"_s);
    EXPECT_EQ(opened, path("in/p.xml"));
    operations.doOperation(&map, u"Use &Inherited Value"_s);
    EXPECT_TRUE(map.inherited());

    // A group takes what it brought with it.
    projects().useGroupFileOf(project(u"p"_s), u"Common"_s);
    const PropertyValueGroupClass* target = projects().propertyGroups().getGroupClass(u"Target"_s);
    ASSERT_NE(target, nullptr);
    PropertyValueGroupValue group(target, project(u"p"_s), u"Common"_s);
    group.setPropertyValue(u"a"_s);
    ProjectPropertyValue instructions(builds().propertyClass("msp430_insn_set"), project(u"p"_s),
                                      u"Common"_s);
    EXPECT_EQ(instructions.propertyValue(), u"MSP430X"_s);
    operations.doOperation(&group, u"Use &Inherited Value"_s);
    EXPECT_TRUE(instructions.inherited());
    EXPECT_TRUE(group.inherited());
}

} // namespace
