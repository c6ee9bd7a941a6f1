// What `gantry check` finds in each kind of file, and where.

#include "cli/CliTestSupport.h"

#include <gmock/gmock.h>

namespace {

using testing::HasSubstr;

struct Case {
    const char* name;
    std::string content; ///< of the document element
    std::string report;  ///< behind the file's name, the lines' ends dropped; empty for none
};

class CheckTest : public CliTest {
protected:
    /// The lines of the report without the folder's path, and without the end of long lines.
    std::string check(const std::string& file)
    {
        const Outcome outcome = gantry("check " + path(file));
        std::string text = outcome.errors;
        const std::string prefix = folder.string() + '/';
        for (std::size_t at; (at = text.find(prefix)) != std::string::npos;)
            text.erase(at, prefix.size());
        EXPECT_EQ(outcome.output, "");
        EXPECT_EQ(outcome.status, text.find("error: ") == std::string::npos ? 0 : 1) << text;
        return text;
    }
    void run(const std::vector<Case>& cases, const std::string& file, const std::string& before,
             const std::string& after)
    {
        for (const Case& each : cases) {
            SCOPED_TRACE(each.name);
            make(file, before + each.content + after);
            const std::string report = each.report.empty() ? "" : file + each.report + '\n';
            EXPECT_EQ(check(file), report);
        }
    }
};

TEST_F(CheckTest, Solutions)
{
    make("main.c", "");
    std::filesystem::create_directory(folder / "sub");
    make("sub/ok.kvp",
         "<!DOCTYPE GantryBench_Project_File>\n"
         "<solution Name=\"ok\" version=\"2\"><project Name=\"p\"/></solution>");
    run({{"nothing", "", ""},
         {"sound",
          "<configuration Name=\"Debug\" build_debug_information=\"Yes\"/>\n"
          "<configuration Name=\"Fast\" inherited_configurations=\"Debug\" hidden=\"Yes\"/>\n"
          "<import file_name=\"sub/ok.kvp\"/>\n"
          "<project Name=\"a\"><configuration Name=\"Common\" project_dependencies=\"b;ok(p)\" "
          "linker_stack_size=\"0x40\" linker_output_format=\"$(Format)\"/>\n"
          "<folder Name=\"f\"><file file_name=\"main.c\"><configuration Name=\"Debug\" "
          "c_enforce_ansi_checking=\"No\"/></file></folder></project><project Name=\"b\"/>",
          ""},
         {"not well-formed", "<project>\n</folder>", "(4): error: tagName mismatch"},
         {"unknown element", "\n<target/>", "(4): error: unknown element <target>"},
         {"unknown inherited configuration",
          "\n<configuration Name=\"Debug\" inherited_configurations=\"Common;Nope\"/>",
          "(4): error: configuration Debug inherits unknown configuration Nope"},
         {"inherits itself", "<configuration Name=\"D\" inherited_configurations=\"D\"/>",
          "(3): error: configuration D inherits itself"},
         {"unknown dependency",
          "<project Name=\"a\">\n<configuration Name=\"Common\" project_dependencies=\"b\"/>"
          "</project>",
          "(4): error: project a depends on unknown project b"},
         {"circle",
          "<project Name=\"c\"><configuration Name=\"Common\" project_dependencies=\"a\"/>"
          "</project>\n<project Name=\"a\">"
          "<configuration Name=\"Common\" project_dependencies=\"b\"/></project>\n"
          "<project Name=\"b\"><configuration Name=\"Common\" project_dependencies=\"a\"/>"
          "</project>",
          "(4): error: project a depends on itself through b"},
         {"unknown property", "<configuration Name=\"Common\" c_optimise=\"Yes\"/>",
          "(3): error: unknown property c_optimise"},
         {"no Boolean", "<configuration Name=\"Common\" build_quietly=\"true\"/>",
          "(3): error: \"true\" is no value of build_quietly, which takes: No, Yes"},
         {"no value of the enumeration",
          "<project Name=\"p\">\n<configuration Name=\"Common\" project_type=\"Program\"/>"
          "</project>",
          "(4): error: \"Program\" is no value of project_type, which takes: Executable, Library, "
          "Object file, Staging, Combining, Externally Built Executable"},
         {"out of range", "<configuration Name=\"Common\" linker_stack_size=\"40000\"/>",
          "(3): error: 40000 is not in the range of linker_stack_size, 2 to 32768"},
         {"no number", "<configuration Name=\"Common\" linker_stack_size=\"big\"/>",
          "(3): error: \"big\" is no number, as linker_stack_size needs"},
         {"two of one name", "<project Name=\"p\"/>\n<project Name=\"p\"/>",
          "(4): error: there is another project p"},
         {"missing file",
          "<project Name=\"p\">\n<folder Name=\"f\">\n<file file_name=\"none.c\"/></folder>"
          "</project>",
          "(5): warning: the file none.c does not exist"},
         {"missing file of a property",
          "<project Name=\"p\">\n"
          "<configuration Name=\"Common\" linker_section_placement_file=\"place.xml\"/></project>",
          "(4): warning: the file place.xml of linker_section_placement_file does not exist"},
         {"missing import", "\n<import file_name=\"none.kvp\"/>",
          "(4): error: the imported solution none.kvp does not exist"},
         {"import of itself", "<import file_name=\"s.kvp\"/>",
          "(3): error: the solution imports itself through s.kvp"},
         {"unknown template", "<project Name=\"p\" template_name=\"none\"/>",
          "(3): error: there is no project template none"}},
        "s.kvp", "<!DOCTYPE GantryBench_Project_File>\n<solution Name=\"s\" version=\"2\">\n",
        "\n</solution>\n");
}

TEST_F(CheckTest, MakesNoFiles)
{
    make("s.kvp",
         "<!DOCTYPE GantryBench_Project_File>\n<solution Name=\"s\" version=\"1\">"
         "<project Name=\"p\" template_name=\"msp430_executable\"/></solution>\n");
    const std::string before = contents("s.kvp");
    EXPECT_EQ(check("s.kvp"), "");
    EXPECT_EQ(contents("s.kvp"), before);
    EXPECT_FALSE(std::filesystem::exists(path("main.c")));
}

TEST_F(CheckTest, ImportedSolutions)
{
    make("inner.kvp",
         "<!DOCTYPE GantryBench_Project_File>\n<solution Name=\"i\" version=\"2\">\n"
         "<project Name=\"p\"><file file_name=\"none.c\"/>\n"
         "<configuration Name=\"Common\" nonsense=\"1\"/></project></solution>");
    make("s.kvp",
         "<!DOCTYPE GantryBench_Project_File>\n<solution Name=\"s\" version=\"2\">\n"
         "<import file_name=\"inner.kvp\"/></solution>");
    EXPECT_EQ(check("s.kvp"),
              "inner.kvp(3): warning: the file none.c does not exist\n"
              "inner.kvp(4): error: unknown property nonsense\n");
    make("inner.kvp", "<!DOCTYPE Something_Else>\n\n<solution/>");
    EXPECT_EQ(check("s.kvp"), "inner.kvp(3): error: not a solution file\n");
}

TEST_F(CheckTest, MemoryMaps)
{
    make("part.xml", "<Root name=\"part\">\n<MemorySegment name=\"Z\" start=\"x y\"/></Root>");
    run({{"sound",
          "<MemorySegment name=\"RAM\" start=\"0x200\" size=\"0x100*2\"/>\n"
          "<MemorySegment name=\"FLASH\" start=\"0x400\" size=\"0xFC00\" access=\"ReadOnly\"/>"
          "<RegisterGroup name=\"g\" start=\"0x20\"><Register name=\"r\" start=\"+4\" size=\"1\">"
          "<BitField name=\"b\" start=\"0\" size=\"4\"/></Register>"
          "<Register name=\"bank\" start=\"(a+1)\"/></RegisterGroup>"
          "<MemorySegment name=\"S\" start=\"$(Start)\" size=\"__symbol__\"/>",
          ""},
         {"overlap",
          "<MemorySegment name=\"B\" start=\"0x300\" size=\"0x100\"/>\n"
          "<MemorySegment name=\"A\" start=\"0x200\" size=\"0x101\"/>\n"
          "<MemorySegment name=\"C\" start=\"0x300\" size=\"1\" addressSpace=\"other\"/>"
          "<MemorySegment name=\"D\" start=\"0x210\" size=\"2\" address_symbol=\"__part\"/>",
          "(3): error: segment B lies over segment A in range 0x0300 - 0x0300"},
         {"start", "<MemorySegment name=\"A\" start=\"RAM_START\" size=\"4\"/>",
          "(3): error: the start \"RAM_START\" of MemorySegment A is no number"},
         {"size", "\n<MemorySegment name=\"A\" start=\"0\" size=\"1/0\"/>",
          "(4): error: the size \"1/0\" of MemorySegment A is no number"},
         {"register's size", "<Register name=\"R\" start=\"0\" size=\"two\"/>",
          "(3): error: the size \"two\" of Register R is no number"},
         {"two of one name", "<MemorySegment name=\"A\"/>\n<MemorySegment name=\"A\"/>",
          "(4): error: there is another segment A"},
         {"missing import", "<Import filename=\"none.xml\"/>",
          "(3): error: the import none.xml can't be read"},
         {"preprocessing", "<ifdef name=\"__NONE\"><bad></bad></ifdef><if/>",
          ": warning: one condition required for <if[not]>"},
         {"not well-formed", "\n<MemorySegment",
          "(5): error: an attribute's name is missing in <MemorySegment"}},
        "map.xml", "<!DOCTYPE Board_Memory_Definition_File>\n<Root name=\"m\">\n", "\n</Root>\n");
    make("map.xml",
         "<!DOCTYPE Board_Memory_Definition_File>\n<Root name=\"m\">\n"
         "<Import filename=\"part.xml\"/></Root>");
    EXPECT_EQ(check("map.xml"),
              "part.xml(2): error: the start \"x y\" of MemorySegment Z is no number\n");
}

TEST_F(CheckTest, Templates)
{
    run({{"sound",
          "<configurations><configuration name=\"Debug\"><property name=\"build_quietly\" "
          "value=\"Yes\"/></configuration></configurations><project template_name=\"t\" "
          "type=\"Library\"><folder name=\"f\"><file name=\"$(ProjectName).c\"/></folder>"
          "<configuration name=\"Debug\"/></project>",
          ""},
         {"unknown configuration",
          "<project template_name=\"t\" type=\"Library\">\n<configuration "
          "name=\"Nope\"/></project>",
          "(4): error: there is no definition of configuration Nope"},
         {"unknown type", "<project template_name=\"t\" type=\"Lib\"/>",
          "(3): error: \"Lib\" is no value of project_type, which takes: Executable, Library, "
          "Object file, Staging, Combining, Externally Built Executable"},
         {"unknown property",
          "<project template_name=\"t\" type=\"Library\">\n<property name=\"x\" value=\"1\"/>"
          "</project>",
          "(4): error: unknown property x"},
         {"missing source",
          "<project template_name=\"t\" type=\"Library\">\n<file name=\"a.c\" source=\"/no/a.c\"/>"
          "</project>",
          "(4): warning: the file /no/a.c does not exist"}},
        "templates.xml", "<!DOCTYPE GantryBench_Project_Templates_File>\n<Root>\n", "\n</Root>\n");
}

TEST_F(CheckTest, PropertyGroups)
{
    run({{"sound",
          "<group name=\"G\" default=\"a\"><groupEntry name=\"a\">"
          "<property name=\"build_quietly\" value=\"No\"/></groupEntry></group>",
          ""},
         {"default", "\n<group name=\"G\" default=\"b\"><groupEntry name=\"a\"/></group>",
          "(4): error: the default \"b\" of group G is none of its choices"},
         {"property",
          "<group name=\"G\"><groupEntry name=\"a\">\n<property name=\"build_quietly\" "
          "value=\"Maybe\"/></groupEntry></group>",
          "(4): error: \"Maybe\" is no value of build_quietly, which takes: No, Yes"}},
        "groups.xml", "<!DOCTYPE Property_Groups_File>\n<Root>\n", "\n</Root>\n");
}

TEST_F(CheckTest, OtherFiles)
{
    make("good.xml", "<?xml version=\"1.0\"?>\n<a><include/></a>\n");
    make("settings.xml", "<!DOCTYPE Gantry_Settings_File>\n<settings/>\n");
    make("bad.xml", "<a>\n<b></a>\n");
    make("program.stapl", "ACTION PROGRAM = X;\n");
    make("main.c", "int x;\n");
    make("s.kvp", "");
    EXPECT_EQ(check("good.xml") + check("settings.xml"), "");
    EXPECT_THAT(check("bad.xml"), HasSubstr("bad.xml(2): error: "));
    EXPECT_EQ(check("program.stapl"), "program.stapl: error: STAPL scripts can't be checked yet\n");
    EXPECT_THAT(check("main.c"), HasSubstr("main.c: error: neither XML"));
    EXPECT_EQ(check("none.xml"), "none.xml: error: does not exist\n");
    EXPECT_EQ(check("."), ".: error: is no file\n");
    EXPECT_THAT(check("s.kvp"), HasSubstr("error: "));
    EXPECT_EQ(gantry("check").status, 2);
    EXPECT_EQ(gantry("check --all x.xml").status, 2);
}

TEST_F(CheckTest, InstalledFilesAreSound)
{
    const std::filesystem::path root = GANTRY_ROOT_TREE;
    std::string files;
    for (const char* sub : {"bin", "targets", "packages", "samples"})
        for (const auto& entry : std::filesystem::recursive_directory_iterator(root / sub)) {
            const std::string extension = entry.path().extension();
            if (entry.is_regular_file() && (extension == ".xml" || extension == ".kvp"))
                files += ' ' + entry.path().string();
        }
    const Outcome outcome = gantry("check" + files);
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.errors.substr(0, 2000), "");
}

} // namespace
