// Projects that are made from templates.

#include "SolutionTestSupport.h"
#include "projects/templates/NewProjectTemplate.h"

namespace {

class TemplateTest : public SolutionTest {
protected:
    TemplateTest()
    {
        m_folder.write("in/main.c", "/* $(ProjectDir) $(BenchDir) */\n");
        m_folder.write("groups.xml",
                       "<r><group name='Target' default='a'><groupEntry name='a'/>"
                       "<groupEntry name='b'><property name='map' value='b.xml'/>"
                       "</groupEntry></group></r>");
        m_folder.write("templates.xml", R"xml(<templates>
            <configurations>
              <configuration name="Debug">
                <property name="inherited_configurations" value="Base"/>
                <property name="flags" value="-g"/><property name="incomplete"/>
              </configuration>
              <configuration name="Base"><property name="hidden" value="Yes"/></configuration>
            </configurations>
            <project template_name="one" type="Library">
              <property name="plain" value="1"/>
              <property name="in_debug" value="$(BenchDir)" configuration="Debug" expand="YES"/>
              <property name="unexpanded" value="$(BenchDir)"/>
              <propertygroup name="Target" value="b"/><propertygroup name="Other" value="b"/>
              <folder name="Sources" filter="c;h">
                <property name="of_folder" value="2"/>
                <file name="src/main.c" source="HERE/in/main.c" expand="Yes"/>
                <file name="raw.c" source="HERE/in/main.c" expand="no"/>
                <file name="kept.c" source="HERE/in/main.c"/>
                <file name="named.c"><property name="of_file" value="3"/></file>
              </folder>
              <folder name="Sources"><file name="more.c"/></folder>
              <configuration name="Debug"/>
            </project></templates>)xml");
        std::string text = m_folder.read("templates.xml");
        for (std::size_t at; (at = text.find("HERE")) != std::string::npos;)
            text.replace(at, 4, m_folder / "");
        m_folder.write("templates.xml", text);
        m_folder.write("kept.c", "mine");
    }
    QString stored(const ProjectElement* element, const QString& configuration, const QString& name)
    {
        const ProjectElement* place = element->configuration(configuration);
        return place && place->hasAttribute(name) ? place->attribute(name) : u"-"_s;
    }
};

TEST_F(TemplateTest, FillsTheProjectAndItsConfigurations)
{
    m_system.propertyGroups().setGroupFile(path("groups.xml"));
    ProjectElement* solution = load("<configuration Name='Debug' flags='mine'/>");
    ProjectElement* project = m_system.createProject(solution, u"p"_s, QString(), QString());
    ProjectTemplates templates;
    ASSERT_TRUE(templates.load(path("templates.xml"))) << templates.errorText().toStdString();
    EXPECT_EQ(templates.listTemplates(), QStringList{u"one"_s});
    templates.createProjectFromTemplate(solution, project, *templates.findTemplate(u"one"_s));

    EXPECT_EQ(stored(project, u"Common"_s, u"project_type"_s), u"Library"_s);
    EXPECT_EQ(stored(project, u"Common"_s, u"plain"_s), u"1"_s);
    EXPECT_EQ(stored(project, u"Debug"_s, u"in_debug"_s), u"/bench"_s);
    EXPECT_EQ(stored(project, u"Common"_s, u"unexpanded"_s), u"$(BenchDir)"_s);
    EXPECT_EQ(stored(project, u"Common"_s, u"Target"_s), u"b"_s);
    EXPECT_EQ(stored(project, u"Common"_s, u"map"_s), u"b.xml"_s);
    EXPECT_EQ(stored(project, u"Common"_s, u"Other"_s), u"-"_s);

    ProjectElement* folder = m_system.findFolder(project, u"Sources"_s);
    EXPECT_EQ(folder->nextSibling(), nullptr);
    EXPECT_EQ(stored(folder, u"Common"_s, u"of_folder"_s), u"2"_s);
    EXPECT_EQ(stored(m_system.findFile(folder, u"named.c"_s), u"Common"_s, u"of_file"_s), u"3"_s);
    EXPECT_NE(m_system.findFile(folder, u"more.c"_s), nullptr);
    EXPECT_EQ(textOf("src/main.c"), "/* $(ProjectDir) /bench */\n");
    EXPECT_EQ(textOf("raw.c"), "/* $(ProjectDir) $(BenchDir) */\n");
    EXPECT_EQ(textOf("kept.c"), "mine");

    // What the user has in a configuration stays; what it inherits comes along.
    EXPECT_EQ(stored(solution, u"Debug"_s, u"flags"_s), u"mine"_s);
    EXPECT_EQ(m_system.getInheritedConfigurations(project, u"Debug"_s), QStringList{u"Base"_s});
    EXPECT_EQ(m_system.configurations(project, ProjectSystem::WithHidden), QStringList{u"Base"_s});
}

TEST_F(TemplateTest, TheDialogOffersThemAndRefusesNames)
{
    m_folder.write("kinds.xml", R"xml(<t>
        <project template_name="g" type="Executable" caption="G" cpu_generic_name="MSP430"/>
        <project template_name="d" type="Library" cpu_name="F1" cpu_manufacturer="TI"
                 board_name="Board" board_manufacturer="Maker" description="text"/></t>)xml");
    ProjectElement* solution = load("<project Name='old'/>");
    const NewProjectModel model(path("kinds.xml"));
    ASSERT_EQ(model.templates().size(), 2u + 6u);
    const NewProjectTemplate& generic = *model.templates()[0];
    EXPECT_EQ(generic.cpuManufacturer(), u"(Standard Projects)"_s);
    EXPECT_EQ(generic.boardName(), u"Generic MSP430"_s);
    const NewProjectTemplate& device = *model.templates()[1];
    EXPECT_EQ(device.cpuManufacturer(), u"TI"_s);
    EXPECT_EQ(device.boardName(), u"Board"_s);

    QString problem;
    const auto make = [&](const NewProjectTemplate& chosen, const QString& name) {
        return NewProjectModel::startProjectCreation(chosen, solution, name, u"sub"_s, problem);
    };
    EXPECT_EQ(make(device, QString()), nullptr);
    EXPECT_EQ(problem, u"PLease enter a name for the project"_s);
    EXPECT_EQ(make(device, u"old"_s), nullptr);
    EXPECT_EQ(problem,
              u"PLease select another project name as 'old' already exists in the solution"_s);
    ProjectElement* made = make(device, u"new"_s);
    ASSERT_NE(made, nullptr);
    EXPECT_EQ(stored(made, u"Common"_s, u"project_type"_s), u"Library"_s);
    EXPECT_EQ(made->projectDirectory(), path("sub"));
    EXPECT_EQ(NewProjectModel(path("gone.xml")).templates().size(), 6u);
}

TEST_F(TemplateTest, FilesThatCannotBeReadHaveNoTemplates)
{
    ProjectTemplates templates;
    EXPECT_FALSE(templates.load(path("gone.xml")));
    EXPECT_FALSE(templates.load(QString()));
    m_folder.write("bad.xml", "<templates>\n<project></templates>");
    EXPECT_FALSE(templates.load(path("bad.xml")));
    EXPECT_EQ(templates.errorLine(), 2);
    EXPECT_TRUE(templates.listTemplates().isEmpty());
}

} // namespace
