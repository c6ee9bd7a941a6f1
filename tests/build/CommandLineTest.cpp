// The command lines of the toolchain, word for word.

#include "build/WorkspaceTestSupport.h"
#include "build/memorymap/MemoryMap.h"
#include "build/system/CommandWords.h"
#include "build/system/ExportBuilder.h"
#include "build/system/UnusedRanges.h"

namespace {

const std::string Root = GANTRY_ROOT_TREE;

class CommandLineTest : public WorkspaceTest {
protected:
    CommandLineTest()
    {
        m_folder.write("main.c", "");
        m_folder.write("start.s", "");
        m_folder.write("src/deep.c", "");
        m_folder.write("groups.xml", R"(<groups><group name="Target" default="MSP430F1611">
            <groupEntry name="MSP430F1611"/><groupEntry name="MSP430F5438"/></group></groups>)");
        load("<project Name='app'><configuration Name='Common' property_groups_file_path='"
             + (m_folder / "groups.xml")
             + "' linker_memory_map_file='' linker_section_placement_file=''/>"
               "<file file_name='main.c'/><file file_name='start.s'/></project>");
        m_app = project(u"app"_s);
    }
    /// The command of the tool, with the installation's root as "ROOT" and the folder as "HERE".
    QString command(const QString& tool)
    {
        m_builder.clear();
        build(m_app, BuildForce);
        QString text = m_builder.commandsOf(tool).join(u'\n');
        return text.replace(QString::fromStdString(Root), u"ROOT"_s)
            .replace(path("").chopped(1), u"HERE"_s);
    }
    void setAll(std::initializer_list<std::pair<const char*, const char*>> properties)
    {
        for (const auto& [name, value] : properties)
            set(m_app, name, QString::fromUtf8(value));
    }

    ProjectElement* m_app;
};

TEST_F(CommandLineTest, OfDefaults)
{
    EXPECT_EQ(command(u"kcc"_s),
              u"-D__GANTRY -D__GANTRY_MAJOR_VERSION=2 -D__GANTRY_MINOR_VERSION=0 "
              "-D__GANTRY_REVISION=7 -D__TARGET_PROCESSOR=MSP430F1611 -g -O-9 -Orl -I. "
              "-JROOT/include -JROOT/packages/include -ansi -msd main.c -o Debug/main.kvo "
              "-D__GANTRY_MSP430"_s);
    EXPECT_EQ(m_builder.commandsOf(u"kas"_s).size(), 1);
    EXPECT_EQ(command(u"kas"_s),
              u"-D__GANTRY -D__GANTRY_MAJOR_VERSION=2 -D__GANTRY_MINOR_VERSION=0 "
              "-D__GANTRY_REVISION=7 -D__TARGET_PROCESSOR=MSP430F1611 -g -I. -JROOT/include "
              "-JROOT/packages/include start.s -o Debug/start.kvo -D__GANTRY_MSP430"_s);
    EXPECT_EQ(
        command(u"kld"_s),
        u"Debug/main.kvo Debug/start.kvo -g ROOT/lib/libc_soft_single.kva "
        "ROOT/lib/libm_soft_single.kva ROOT/lib/libdebugio_soft_single.kva "
        "ROOT/lib/libc_targetio_impl_soft_single.kva ROOT/lib/lib_vfprintf_int_soft_single.kva "
        "ROOT/lib/lib_vfscanf_int_soft_single.kva ROOT/lib/libc_user_libc_soft_single.kva "
        "-Oph -Ofl -Odc -Ojt -MDebug/app.map -o Debug/app.kvx"_s);
    EXPECT_EQ(m_builder.commandsOf(u"kex"_s), QStringList());
    // Each runs in the project's directory and names what a failure removes.
    EXPECT_EQ(m_builder.directories.count(path("").chopped(1)), m_builder.directories.size());
    EXPECT_EQ(m_builder.outputs,
              (QList<QStringList>{
                  {path("Debug/main.kvo")}, {path("Debug/start.kvo")}, {path("Debug/app.kvx")}}));
    EXPECT_EQ(m_builder.titles,
              (QStringList{u"Building app in configuration Debug"_s, u"Compiling main.c"_s,
                           u"Assembling start.s"_s, u"Linking app.kvx"_s}));
}

TEST_F(CommandLineTest, OfEverythingOtherThanItsDefault)
{
    setAll({{"build_treat_warnings_as_errors", "Yes"},
            {"build_suppress_warnings", "Yes"},
            {"build_intermediate_directory", "obj/$(Configuration)"},
            {"build_output_directory", "out"},
            {"build_quietly", "No"},
            {"build_debug_information", "No"},
            {"build_object_file_name", "$(IntDir)/o_$(InputName)$(OBJ)"},
            {"build_output_file_name", "$(OutDir)/$(ProjectName)_x$(EXE)"},
            {"c_enforce_ansi_checking", "No"},
            {"c_additional_options", "-one;-two=$(Configuration)"},
            {"asm_additional_options", "-asm"},
            {"c_only_additional_options", "-never"},
            {"cpp_only_additional_options", "-never"},
            {"c_preprocessor_definitions", "A;B=$(ProjectName);C=1\\;2"},
            {"c_preprocessor_undefinitions", "U;V"},
            {"c_system_include_directories", "sys;$(BenchDir)/more"},
            {"c_user_include_directories", "inc;$(ProjectName)"},
            {"cpp_enable_exceptions", "Yes"},
            {"cpp_enable_rtti", "Yes"},
            {"compiler_optimization_strategy", "Maximize speed"},
            {"optimize_register_allocation", "Locals and Globals"},
            {"double_is_float", "No"},
            {"build_use_hardware_multiplier", "16-Bit Multiplier"},
            {"default_code_section", "MYCODE"},
            {"default_data_section", " MYDATA "},
            {"default_zeroed_section", "MYZERO"},
            {"default_const_section", "MYCONST"},
            {"default_vector_section", "MYVEC"},
            {"optimize_cross_calling", "Maximum"},
            {"linker_cross_call_minimum_subroutine_size", "8"},
            {"linker_cross_call_maximum_passes", "3"},
            {"optimize_cross_jumping", "Yes"},
            {"optimize_tail_merging", "Yes"},
            {"optimize_dead_code", "No"},
            {"optimize_flattening", "No"},
            {"optimize_peepholes", "No"},
            {"optimize_jump_threading", "No"},
            {"optimize_jump_chaining", "Yes"},
            {"optimize_code_motion", "Yes"},
            {"optimize_block_locality", "Yes"},
            {"optimize_copy_propagation", "Yes"},
            {"link_symbol_definitions", "s=1;t=$(Configuration)"},
            {"linker_keep_symbols", "k1;k2"},
            {"linker_additional_files", "extra.kvo;$(OutDir)/lib.kva"},
            {"linker_additional_options", "-la;-lb"},
            {"linker_output_format", "hex"},
            {"linker_map_file", "No"},
            {"linker_stack_size", "128"},
            {"linker_heap_size", "256"},
            {"linker_checksum_sections", "CODE;CONST"},
            {"linker_checksum_algorithm", "CRC32"},
            {"linker_absolute_listing", "Yes"},
            {"link_IOLibraryName", "debug"},
            {"link_use_multi_threaded_libraries", "Yes"},
            // These are told to no tool.
            {"link_standard_libraries_directory", "elsewhere"},
            {"build_root_output_directory", "root"},
            {"build_remove_unused_symbols", "Yes"},
            {"build_always_rebuild", "Yes"},
            {"debug_command_arguments", "-never"},
            {"debug_working_directory", "never"},
            {"target_reset_script", "never()"},
            {"msp430_debug_interface", "SPY_BI_WIRE_JTAG"},
            {"msp430_identify_string", "never"},
            {"linker_printf_fmt_level", "long long"},
            {"linker_printf_fp_enabled", "Yes"},
            {"linker_printf_width_precision_supported", "No"},
            {"linker_scanf_fmt_level", "long"},
            {"linker_scanf_character_group_matching_enabled", "Yes"},
            {"msp430_insn_set", "MSP430X"},
            {"link_msp430_workaround_CPU_6_bug", "Yes"},
            {"Target", "MSP430F5438"}});
    const QString common = u"-UU -UV %1 -V -D__GANTRY -D__GANTRY_MAJOR_VERSION=2 "
                           "-D__GANTRY_MINOR_VERSION=0 -D__GANTRY_REVISION=7 "
                           "-D__TARGET_PROCESSOR=MSP430F5438 -we -w %2-Rc,MYCODE -Rd,MYDATA "
                           "-Rz,MYZERO -Rk,MYCONST -Rv,MYVEC -Iinc -Iapp -Jsys -JROOT/more %3"_s;
    EXPECT_EQ(command(u"kcc"_s),
              u"-DA -DB=app -DC=1;2 "_s
                  + common.arg(u"-one -two=Debug"_s, u"-O+9 -Org "_s,
                               u"main.c -o obj/Debug/o_main.kvo -mcpux -D__GANTRY_MSP430"_s));
    EXPECT_EQ(command(u"kas"_s),
              u"-DA -DB=app -DC=1;2 "_s
                  + common.arg(u"-asm"_s, QString(),
                               u"start.s -o obj/Debug/o_start.kvo -mcpux -D__GANTRY_MSP430"_s));
    EXPECT_EQ(command(u"kld"_s),
              u"obj/Debug/o_main.kvo obj/Debug/o_start.kvo extra.kvo out/lib.kva -V -we -w "
              "ROOT/lib/libc_hw16_double_cpux.kva ROOT/lib/libm_hw16_double_cpux.kva "
              "ROOT/lib/libdebugio_hw16_double_cpux.kva "
              "ROOT/lib/libc_debugio_impl_hw16_double_cpux.kva "
              "ROOT/lib/lib_vfprintf_double_long_long_nwp_hw16_double_cpux.kva "
              "ROOT/lib/lib_vfscanf_long_cc_hw16_double_cpux.kva -Oxcx=8 -Oxcp=3 -Oxj -Otm -Ojc "
              "-Ocm -Obl -Ocp -HCODE,CONST=crc32 -Ds=1 -Dt=Debug -Dheap_size=256 -la -lb -Kk1 -Kk2 "
              "-o out/app_x.kvx -mcpux -fcpu6"_s);
    EXPECT_EQ(command(u"kex"_s), u"out/app_x.kvx -o out/app_x -Fhex"_s);
    EXPECT_EQ(command(u"kls"_s), u"out/app_x.kvx -o out/app_x.lst"_s);
    EXPECT_TRUE(m_builder.outputs.contains(QStringList{path("out/app_x.hex")}));
    EXPECT_TRUE(m_builder.outputs.contains(QStringList{path("out/app_x.lst")}));
}

TEST_F(CommandLineTest, OfSingleProperties)
{
    struct Case {
        const char* property;
        const char* value;
        const char* tool;
        const char* with;    ///< nothing if empty
        const char* without; ///< nothing if empty
    };
    const Case cases[] = {
        {"c_undefine_all_preprocessor_definitions", "Yes", "kcc", "", "-D__"},
        {"c_ignore_includes", "Yes", "kcc", "-ansi", " -I"},
        {"c_ignore_includes", "Yes", "kas", "", " -J"},
        {"optimize_register_allocation", "None", "kcc", " -Or- ", ""},
        {"default_code_section", "  CODE ", "kcc", "", "-Rc"},
        {"default_code_section", "  ", "kcc", "", "-Rc"},
        {"build_use_hardware_multiplier", "32-Bit Multiplier", "kld", "libc_hw32_single.kva",
         "_soft"},
        {"build_use_hardware_multiplier", "32-Bit Multiplier", "kcc", "-msd", "-mmpy"},
        {"linker_heap_size", "0", "kld", "", "-Dheap_size"},
        {"link_include_standard_libraries", "No", "kld", "", "libc"},
        {"link_IOLibraryName", "none", "kld", "lib_vfprintf_int_soft_single.kva", "io_impl"},
        {"optimize_cross_calling", "Standard", "kld", " -Oxc=6 ", "-Oxcp"},
        {"linker_cross_call_maximum_passes", "2", "kld", " -Oxcp=2 ", "-Oxc="},
        {"linker_printf_fp_enabled", "Yes", "kld", "lib_vfprintf_float_long_soft", ""},
        {"linker_scanf_fp_enabled", "Yes", "kld", "lib_vfscanf_float_long_soft", ""},
        {"linker_printf_fmt_level", "long", "kld", "lib_vfprintf_long_soft", ""},
        {"linker_scanf_fmt_level", "long long", "kld", "lib_vfscanf_long_long_soft", ""},
        {"linker_output_format", "kvx", "kld", "-o Debug/app.kvx", ""},
        {"link_use_multi_threaded_libraries", "Yes", "kld", "", "libc_user_libc"},
    };
    for (const Case& one : cases) {
        set(m_app, one.property, QString::fromUtf8(one.value));
        const QString line = command(QString::fromUtf8(one.tool));
        SCOPED_TRACE(one.property);
        EXPECT_TRUE(line.contains(QString::fromUtf8(one.with))) << line.toStdString();
        EXPECT_FALSE(*one.without && line.contains(QString::fromUtf8(one.without)))
            << line.toStdString();
        EXPECT_EQ(m_builder.commandsOf(u"kex"_s), QStringList());
        projects().removeProperty(m_app, QString::fromUtf8(one.property), CommonConfiguration);
    }
}

TEST_F(CommandLineTest, OfLibrariesAndWhatUsesThem)
{
    m_folder.write("l/lib.c", "");
    ProjectElement* library =
        projects().createProject(projects().solutionElement(), u"lib"_s, u"Library"_s, u"l"_s);
    projects().addFile(library, u"lib.c"_s);
    projects().addFile(library, u"ready.kvo"_s);
    set(library, "property_groups_file_path", u"None"_s);
    set(m_app, "project_dependencies", u"lib"_s);
    const QString link = command(u"kld"_s);
    EXPECT_EQ(m_builder.commandsOf(u"kar"_s),
              QStringList{u"-c Debug/lib.kva Debug/lib.kvo ready.kvo"_s});
    EXPECT_TRUE(link.startsWith(u"Debug/main.kvo Debug/start.kvo l/Debug/lib.kva -g "_s))
        << link.toStdString();
}

TEST_F(CommandLineTest, OfPreprocessing)
{
    builds().preprocess(projects().findFile(m_app, u"main.c"_s), u"Debug"_s, &m_builder);
    EXPECT_EQ(m_builder.titles, QStringList{u"Preprocessing main.c"_s});
    const QString line = m_builder.commandsOf(u"kcc"_s).join(u'\n');
    EXPECT_TRUE(line.startsWith(u"-E -D__GANTRY "_s)) << line.toStdString();
    EXPECT_TRUE(
        line.endsWith(u"-D__GANTRY_MSP430 "_s + path("main.c") + u" -o "_s + path("main_PP.c")))
        << line.toStdString();
}

// Placement

class PlacementTest : public CommandLineTest {
protected:
    /// The placement options of the link.
    QString placement()
    {
        QStringList words;
        for (const QString& word : command(u"kld"_s).split(u' '))
            if (word.startsWith(u"-T") || word.startsWith(u"-G") || word.startsWith(u"-D_")
                || word.startsWith(u"-Dsym"))
                words << word;
        return words.join(u' ');
    }
    void useMap(const std::string& content)
    {
        m_folder.write("map.xml",
                       "<!DOCTYPE Board_Memory_Definition_File>\n<root>" + content + "</root>");
        set(m_app, "linker_memory_map_file", u"map.xml"_s);
    }
    void usePlacement(const std::string& content)
    {
        m_folder.write("place.xml",
                       "<!DOCTYPE Linker_Placement_File>\n<Root>" + content + "</Root>");
        set(m_app, "linker_section_placement_file", u"place.xml"_s);
    }
};

TEST_F(PlacementTest, FollowsTheMemoryMapAlone)
{
    useMap(R"(<MemorySegment name="RAM" start="0x200" size="0x100" addressSpace="near"
                address_symbol="symA" size_symbol="symS">
                <ProgramSection name="DATA" load="Yes"/><ProgramSection name="ZERO"/>
              </MemorySegment>
              <MemorySegment name="FLASH" start="0x1100" size="0x400">
                <ProgramSection name="FIXED" start="0x1200" size="0x10" load="Yes"/>
                <ProgramSection name="BIG" start="0x1400" size="0x200"/>
                <ProgramSection name="CODE"/>
              </MemorySegment>)");
    // Segments come last first, sections first first.
    EXPECT_EQ(
        placement(),
        u"-D___FLASH_Address=4352 -D___FLASH_Size=1024 -TFIXED=1200-120f -GFIXED=L "
        "-TBIG=1400-15ff -TCODE=1100-1200,1210-1400 "
        "-DsymA=512 -DsymS=256 -D___RAM_Address=512 -D___RAM_Size=256 -D__near_RAM=1 -GDATA=L "
        "-TDATA,ZERO=200-300"_s);
    EXPECT_EQ(m_builder.messages, QStringList{u"section BIG is larger than the segment FLASH"_s});
}

TEST_F(PlacementTest, FollowsThePlacementFileOverTheMemoryMap)
{
    useMap(R"(<MemorySegment name="FLASH" start="0x1000" size="0x100"/>)");
    usePlacement(
        R"(<MemorySegment name="FLASH"><ProgramSection name="CODE" start="0x1000" size="0x100"/>
                      <ProgramSection name="CONST"/></MemorySegment>
                    <MemorySegment name="GONE"><ProgramSection name="X"/></MemorySegment>
                    <MemorySegment name="OWN" start="0x10" size="0x10"><ProgramSection name="Y"/></MemorySegment>)");
    EXPECT_EQ(placement(),
              u"-D___OWN_Address=16 -D___OWN_Size=16 -TY=10-20 -D___FLASH_Address=4096 "
              "-D___FLASH_Size=256 -TCODE=1000-10ff -TCONST"_s);
    EXPECT_EQ(
        m_builder.messages,
        QStringList{u"section placement file referenced segment GONE not in memory map file"_s});
}

TEST_F(PlacementTest, NeedsNoMapWhenAllSegmentsHaveAPlace)
{
    usePlacement(
        R"(<MemorySegment name="A" start="1+1" size="2*3"><ProgramSection name="S"/></MemorySegment>)");
    EXPECT_EQ(placement(), u"-D___A_Address=2 -D___A_Size=6 -TS=2-8"_s);
    usePlacement(R"(<MemorySegment name="A" start="2"><ProgramSection name="S"/></MemorySegment>)");
    EXPECT_EQ(command(u"kld"_s), QString());
    EXPECT_EQ(m_builder.errors, QStringList{u"memory map file is required."_s});
}

TEST_F(PlacementTest, AFileOfTheProjectWinsAndMacrosReachIt)
{
    useMap(R"(<MemorySegment name="WRONG" start="0" size="1"/>)");
    m_folder.write("own.xml", R"xml(<!DOCTYPE Board_Memory_Definition_File>
        <root><MemorySegment name="$(which)" start="4" size="4"/></root>)xml");
    projects().addFile(m_app, u"own.xml"_s);
    set(m_app, "linker_memory_map_macros", u"which=RIGHT"_s);
    EXPECT_EQ(placement(), u"-D___RIGHT_Address=4 -D___RIGHT_Size=4"_s);
}

TEST_F(PlacementTest, FilesThatCannotBeLoadedEndTheStep)
{
    set(m_app, "linker_memory_map_file", u"gone.xml"_s);
    EXPECT_EQ(command(u"kld"_s), QString());
    EXPECT_EQ(m_builder.errors, QStringList{u"Cannot load memory map file: gone.xml"_s});
    set(m_app, "linker_section_placement_file", u"lost.xml"_s);
    EXPECT_EQ(command(u"kld"_s), QString());
    EXPECT_EQ(m_builder.errors, QStringList{u"Cannot load section placement file: lost.xml"_s});
}

TEST(UnusedRanges, AreTheGapsOfASegment)
{
    const MemoryRange segment{100, 50};
    EXPECT_EQ(findUnusedRanges(segment, {}), QList<MemoryRange>{segment});
    EXPECT_EQ(findUnusedRanges(segment, {{100, 50}}), QList<MemoryRange>{});
    EXPECT_EQ(findUnusedRanges(segment, {{140, 20}, {110, 10}, {115, 15}}),
              (QList<MemoryRange>{{100, 10}, {130, 10}}));
    EXPECT_EQ(findUnusedRanges({0xFFFFFF00, 0x100}, {{0xFFFFFF00, 0x80}}),
              (QList<MemoryRange>{{0xFFFFFF80, 0x80}}));
}

// Words

TEST(CommandWords, AreSplitAtBlanksOutsideQuotes)
{
    EXPECT_EQ(commandWords(u"cp \"a b\" c\"d e\"  f"_s),
              (QStringList{u"cp"_s, u"a b"_s, u"cd e"_s, u"f"_s}));
    EXPECT_EQ(commandWords(u" \"\" "_s), QStringList{QString()});
    EXPECT_EQ(stripOuterQuotes(u" \"run it\" "_s), u"run it"_s);
    EXPECT_EQ(stripOuterQuotes(u"\"a\" \"b\""_s), u"\"a\" \"b\""_s);
    EXPECT_EQ(Builder::commandLine({u"/bin/kcc"_s, u"a b.c"_s}), u"/bin/kcc \"a b.c\""_s);
}

TEST_F(CommandLineTest, OfBuiltinsAndTheirExport)
{
    const auto exported = [](const QStringList& command) {
        ExportBuilder builder;
        builder.setCommand(command);
        return builder.lines().join(u'\n');
    };
    EXPECT_EQ(exported({u"cp"_s, u"a"_s, u"b c"_s}), u"cp -f \"a\" \"b c\""_s);
    EXPECT_EQ(exported({u"rm"_s, u"a"_s}), u"rm -f \"a\""_s);
    EXPECT_EQ(exported({u"kxc"_s, u"a"_s}), QString());
    EXPECT_EQ(exported({u"chmod"_s, u"+w"_s, u"a"_s}), u"ERROR occurred chmod not exportable"_s);
    EXPECT_EQ(exported({u"tool"_s, u"a b"_s}), u"tool \"a b\""_s);

    const auto run = [&](QStringList command) {
        QString error;
        const bool handled = builds().builtinCommand(path("").chopped(1), command, error);
        return (handled ? u"handled "_s : command.join(u' ')) + error;
    };
    m_folder.write("from", "text");
    EXPECT_EQ(run({u"cp"_s, u"from"_s, u"new/to"_s}), u"handled "_s);
    EXPECT_EQ(m_folder.read("new/to"), "text");
    EXPECT_EQ(run({u"cp"_s, u"gone"_s, u"to"_s}),
              u"handled cp failed: can't copy \"%1\" to \"%2\""_s.arg(path("gone"), path("to")));
    EXPECT_EQ(run({u"chmod"_s, u"-w"_s, u"from"_s}), u"handled "_s);
    EXPECT_FALSE(QFileInfo(path("from")).permissions() & QFileDevice::WriteOwner);
    EXPECT_EQ(run({u"chmod"_s, u"+w"_s, u"gone"_s}),
              u"handled chmod failed: can't make \"%1\" writable"_s.arg(path("gone")));
    EXPECT_EQ(run({u"rm"_s, u"from"_s}), u"handled "_s);
    EXPECT_EQ(run({u"rm"_s, u"from"_s}),
              u"handled rm failed: can't remove \"%1\" writable"_s.arg(path("from")));
    EXPECT_EQ(run({u"kmh"_s, u"x"_s}), QString::fromStdString(Root) + u"/bin/kmh x"_s);
    EXPECT_EQ(run({u"make"_s, u"all"_s}), u"make all"_s);
}

} // namespace
