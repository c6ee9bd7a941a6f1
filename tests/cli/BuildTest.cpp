// `gantry build` on solutions of a few small files, with the real tools.

#include "cli/CliTestSupport.h"

#include <chrono>
#include <thread>

namespace {

namespace fs = std::filesystem;
using namespace std::chrono_literals;

const std::string Root = GANTRY_ROOT_TREE;

/// A library of two sources, the first of which includes a header.
class BuildCommandTest : public CliTest {
protected:
    BuildCommandTest()
    {
        make("a.h", "int a(void);\n");
        make("a.c", "#include \"a.h\"\nint a(void) { return 1; }\n");
        make("b.c", "int b(void) { return 2; }\n");
        solution(project("lib", "", file("a.c") + file("b.c")));
    }

    static std::string file(const std::string& name, const std::string& attributes = "")
    {
        return "<file file_name=\"" + name + "\"><configuration Name=\"Common\" " + attributes
            + "/></file>\n";
    }
    static std::string project(const std::string& name, const std::string& attributes,
                               const std::string& content)
    {
        return "<project Name=\"" + name
            + "\"><configuration Name=\"Common\" project_type=\"Library\" " + attributes + "/>\n"
            + content + "</project>\n";
    }
    void solution(const std::string& content) const
    {
        make("s.kvp",
             "<!DOCTYPE GantryBench_Project_File>\n<solution Name=\"s\" version=\"2\">\n"
             "<configuration Name=\"Debug\"/><configuration Name=\"Release\"/>\n"
                 + content + "</solution>\n");
    }
    Outcome build(const std::string& arguments = "") const
    {
        return gantry("build " + path("s.kvp") + " " + arguments);
    }
    bool has(const std::string& name) const { return fs::exists(folder / name); }
    /// A later change of a file: newer than all that was built.
    void touch(const std::string& name) const
    {
        std::this_thread::sleep_for(20ms);
        make(name, contents(name) + "\n");
    }
    /// Makes the user's tools scripts that note their own name in the file "started".
    void watchTools() const
    {
        fs::create_directories(folder / "tools/bin");
        for (const std::string tool : {"kcc", "kar"}) {
            const std::string script = make("tools/bin/" + tool,
                                            "#!/bin/sh\necho " + tool + " >>" + path("started")
                                                + "\nexec " + Root + "/bin/" + tool + " \"$@\"\n");
            fs::permissions(script, fs::perms::owner_all);
        }
        const std::string settings = "home/.tamblyn_associates_limited/gantry_for_msp430/";
        fs::create_directories(folder / settings);
        make(settings + "settings.xml",
             "<!DOCTYPE Gantry_Settings_File>\n<settings>\n<setting name=\""
             "Environment/Build/Tool Chain Root Directory\">"
                 + path("tools") + "</setting>\n</settings>\n");
    }
};

const std::string Heading = "Building lib in configuration Debug\n";

TEST_F(BuildCommandTest, OnlyWhatIsOutOfDateIsBuilt)
{
    watchTools();
    Outcome outcome = build();
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.output,
              Heading + "Compiling a.c\nCompiling b.c\nArchiving lib.kva\nBuild complete\n");
    EXPECT_EQ(contents("started"), "kcc\nkcc\nkar\n");

    make("started", "");
    outcome = build();
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.output, Heading + "Build up to date\n");
    EXPECT_EQ(contents("started"), "");

    touch("a.h");
    EXPECT_EQ(build().output, Heading + "Compiling a.c\nArchiving lib.kva\nBuild complete\n");
    EXPECT_EQ(contents("started"), "kcc\nkar\n");
    touch("b.c");
    EXPECT_EQ(build().output, Heading + "Compiling b.c\nArchiving lib.kva\nBuild complete\n");
    fs::remove(folder / "Debug/lib.kva");
    EXPECT_EQ(build().output, Heading + "Archiving lib.kva\nBuild complete\n");
    EXPECT_EQ(build().output, Heading + "Build up to date\n");
}

TEST_F(BuildCommandTest, ErrorsOfTheTools)
{
    make("b.c", "int b(void)\n{\n    return missing;\n}\n");
    const Outcome outcome = build();
    EXPECT_EQ(outcome.status, 1);
    EXPECT_NE(outcome.output.find("b.c(3): error: "), std::string::npos) << outcome.output;
    EXPECT_NE(outcome.output.find("missing"), std::string::npos) << outcome.output;
    EXPECT_TRUE(outcome.output.ends_with("\nBuild failed\n")) << outcome.output;
    EXPECT_TRUE(has("Debug/a.kvo"));
    EXPECT_FALSE(has("Debug/b.kvo"));
    EXPECT_FALSE(has("Debug/lib.kva"));

    make("b.c", "int b(void) { return 2; }\n");
    EXPECT_EQ(build().output, Heading + "Compiling b.c\nArchiving lib.kva\nBuild complete\n");
}

TEST_F(BuildCommandTest, FilesThatAreMissing)
{
    build();
    fs::remove(folder / "a.h");
    const Outcome header = build();
    EXPECT_EQ(header.status, 1);
    EXPECT_NE(header.output.find("a.c(1): fatal error: "), std::string::npos) << header.output;
    fs::remove(folder / "a.c");
    EXPECT_EQ(build().status, 1);
    EXPECT_TRUE(has("Debug/b.kvo"));
}

TEST_F(BuildCommandTest, ChoosesProjectsAndConfigurations)
{
    solution(project("one", "", file("a.c"))
             + project("two", "project_dependencies=\"three\"", file("b.c", ""))
             + project("three", "batch_build_configurations=\"Debug;Release\"", ""));
    EXPECT_EQ(build("--project two --configuration Release").output,
              "Building three in configuration Release\nArchiving three.kva\n"
              "Building two in configuration Release\nCompiling b.c\nArchiving two.kva\n"
              "Build complete\n");
    EXPECT_FALSE(has("Debug"));
    EXPECT_FALSE(has("Release/one.kva"));

    build("--project one --configuration Debug --configuration Release");
    EXPECT_TRUE(has("Debug/one.kva"));
    EXPECT_TRUE(has("Release/one.kva"));

    EXPECT_EQ(build("--project three --batch").output,
              "Building three in configuration Debug\nArchiving three.kva\n"
              "Building three in configuration Release\nBuild complete\n");
}

TEST_F(BuildCommandTest, RebuildsAndCleans)
{
    build();
    const std::string everything = "Compiling a.c\nCompiling b.c\nArchiving lib.kva\n";
    EXPECT_EQ(build("--rebuild").output,
              "Rebuilding lib in configuration Debug\n" + everything + "Build complete\n");
    make("Debug/notes.txt", "");
    const Outcome cleaned = build("--clean");
    EXPECT_EQ(cleaned.status, 0);
    EXPECT_EQ(cleaned.output, "Cleaning lib in configuration Debug\nBuild complete\n");
    for (const char* made : {"Debug/a.kvo", "Debug/b.kvo", "Debug/lib.kva"})
        EXPECT_FALSE(has(made)) << made;
    EXPECT_TRUE(has("Debug/notes.txt"));
    EXPECT_TRUE(has("a.c"));
}

TEST_F(BuildCommandTest, PropertiesFromTheCommandLine)
{
    make("a.c", "int a[CHOSEN];\n");
    const std::string before = contents("s.kvp");
    EXPECT_EQ(build().status, 1);
    const std::string set = "--set c_preprocessor_definitions=CHOSEN=3 ";
    const Outcome outcome = build(set + "--command-lines");
    EXPECT_EQ(outcome.status, 0) << outcome.output;
    EXPECT_NE(outcome.output.find("/bin/kcc -DCHOSEN=3 "), std::string::npos) << outcome.output;
    EXPECT_NE(outcome.output.find("/bin/kar -c Debug/lib.kva "), std::string::npos)
        << outcome.output;
    EXPECT_EQ(build(set + "--batch").status, 0);
    EXPECT_TRUE(has("Release/lib.kva"));
    EXPECT_EQ(build(set + "--set build_output_directory=out").status, 0);
    EXPECT_TRUE(has("out/lib.kva"));
    EXPECT_EQ(contents("s.kvp"), before);
}

TEST_F(BuildCommandTest, ExportedScriptsBuild)
{
    const Outcome script = build("--export");
    EXPECT_EQ(script.status, 0);
    EXPECT_FALSE(has("Debug"));
    make("build.sh", script.output);
    const Outcome run = shell("sh -eu " + path("build.sh"));
    EXPECT_EQ(run.status, 0) << run.errors << run.output;
    for (const char* made : {"Debug/a.kvo", "Debug/b.kvo", "Debug/lib.kva"})
        EXPECT_TRUE(has(made)) << made;
    EXPECT_EQ(build().output, Heading + "Build up to date\n");
}

TEST_F(BuildCommandTest, UsersCommands)
{
    make("first.sh", "echo first $1 >>log\n");
    make("second.sh", "echo second $1 >>log\nexit 1\n");
    solution(
        project("lib", "",
                file("a.c", "compile_pre_build_command=\"sh first.sh $(InputName)\"")
                    + file("b.c", "compile_post_build_command=\"sh second.sh $(TargetPath)\"")));
    const Outcome outcome = build();
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(contents("log"), "first a\nsecond " + path("Debug/b.kvo") + "\n");
    EXPECT_EQ(outcome.output,
              Heading
                  + "Pre-compile command a.c\nCompiling a.c\nCompiling b.c\n"
                    "Post-compile command b.c\nBuild failed\n");
    EXPECT_FALSE(has("Debug/lib.kva"));
}

TEST_F(BuildCommandTest, InterruptsEndTheRunningCommand)
{
    // Half an output, and a command that would take its time.
    make("slow.sh", "echo half >$1\necho $$ >running\nsleep 30\n");
    solution("<project Name=\"pages\"><configuration Name=\"Common\" project_type=\"Staging\""
             " stage_command=\"sh slow.sh $(StageOutputFilePath)\"/>"
             "<file file_name=\"a.h\"/></project>\n");
    const auto before = std::chrono::steady_clock::now();
    const Outcome outcome =
        shell(Root + "/bin/gantry build " + path("s.kvp") + " & build=$!; while [ ! -s "
              + path("running") + " ]; do sleep 0.02; done; kill -INT $build; wait $build");
    EXPECT_LT(std::chrono::steady_clock::now() - before, 20s);
    EXPECT_EQ(outcome.status, 3) << outcome.errors;
    EXPECT_TRUE(outcome.output.ends_with("\nBuild terminated\n")) << outcome.output;
    EXPECT_FALSE(has("Debug/a.h"));
    EXPECT_NE(shell("kill -0 $(cat " + path("running") + ")").status, 0) << "the child goes on";
}

struct Refusal {
    const char* name;
    const char* content; ///< of the solution; null for none
    const char* message; ///< behind the solution's path
};

TEST_F(BuildCommandTest, SolutionsThatCannotBeLoaded)
{
    const Refusal refusals[] = {
        {"none.kvp", nullptr, " - does not exist"},
        {"open.kvp",
         "<!DOCTYPE GantryBench_Project_File>\n<solution version=\"2\">\n<project>\n</solution>\n",
         "(4) - tagName mismatch"},
        {"type.kvp", "<!DOCTYPE Board_Memory_Definition_File>\n<solution version=\"2\"/>\n",
         " - not a solution file"},
        {"self.kvp",
         "<!DOCTYPE GantryBench_Project_File>\n<solution version=\"2\">\n"
         "<import file_name=\"self.kvp\"/>\n</solution>\n",
         " - solution already loaded"},
    };
    for (const auto& [name, content, message] : refusals) {
        if (content)
            make(name, content);
        const Outcome outcome = gantry("build " + path(name));
        EXPECT_EQ(outcome.status, 1) << name;
        EXPECT_EQ(outcome.output, "") << name;
        EXPECT_EQ(outcome.errors, "gantry: " + path(name) + message + "\n");
        if (content) {
            EXPECT_EQ(contents(name), content);
        }
    }
}

struct Misuse {
    const char* arguments; ///< behind the solution
    int status;
    const char* message;
};

TEST_F(BuildCommandTest, Misuse)
{
    const Misuse misuses[] = {
        {"other.kvp", 2, "more than one solution is given"},
        {"--set", 2, "--set needs a value"},
        {"--set build_quietly", 2, "--set needs NAME=VALUE"},
        {"--set =Yes", 2, "--set needs NAME=VALUE"},
        {"--configuration", 2, "--configuration needs a value"},
        {"--faster", 2, "unknown option --faster"},
        {"--set no_such=1", 1, "there is no property no_such"},
        {"--project none", 1, "there is no project none; the solution has: lib"},
        {"--configuration None", 1, "there is no configuration None"},
    };
    for (const auto& [arguments, status, message] : misuses) {
        const Outcome outcome = build(arguments);
        EXPECT_EQ(outcome.status, status) << arguments;
        EXPECT_TRUE(outcome.errors.starts_with(std::string("gantry: ") + message))
            << outcome.errors;
        EXPECT_EQ(outcome.output, "") << arguments;
    }
    EXPECT_EQ(gantry("build").status, 2);
    EXPECT_FALSE(has("Debug"));
}

} // namespace
