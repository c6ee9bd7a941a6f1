// The sample solutions: they are as the product writes them, and they build and run.

#include "TestFolder.h"
#include "base/Path.h"
#include "build/projectsystem/MSP430ProjectSystem.h"
#include "build/workspace/Workspace.h"
#include "cli/CliTestSupport.h"

#include <ostream>

namespace {

const std::filesystem::path Samples = GANTRY_ROOT_TREE "/samples";

struct Program {
    std::string path; ///< with % for the configuration
    std::string input;
    std::string output;
};

struct Sample {
    std::string name;
    std::vector<std::string> outputs; ///< with % for the configuration
    std::vector<Program> programs;
};

void PrintTo(const Sample& sample, std::ostream* out) { *out << sample.name; }

const Sample AllSamples[] = {
    {"hello",
     {"%/hello.kvo"},
     {{"%/hello.kvx", "",
       "Hello from the MSP430!\n1 squared is 1\n2 squared is 4\n3 squared is 9\n"
       "4 squared is 16\n5 squared is 25\n"}}},
    {"blink", {"%/blink.kvo", "%/blink.kvx", "%/blink.map"}, {}},
    {"printf",
     {"%/average.kvo"},
     {{"%/printf.kvx", "20000\n20000\n5\n",
       "Numbers, please, one on each line:\n3 numbers, sum 40005, average 13335\n"},
      {"%/printf.kvx", "", "Numbers, please, one on each line:\nThere were none.\n"}}},
    {"library",
     {"statistics/%/statistics.kva"},
     {{"%/mean.kvx", "", "The mean is 22\n"}, {"%/median.kvx", "", "The median is 18\n"}}},
    {"mixed",
     {"%/main.kvo", "%/bits.kvo"},
     {{"%/mixed.kvx", "", "0x1234 reversed is 0x2c48; its bits are 2 4 5 9 12\n"}}},
    {"import", {"counter/%/counter.kva"}, {{"%/count.kvx", "", "23:45\n00:15\n"}}},
    {"template", {"main.c", "%/start.kvx"}, {}},
    {"staging", {"%/site/pages/index.html", "%/site/pages/wiring.html"}, {}},
};

std::string in(const std::string& configuration, std::string text)
{
    if (const std::size_t at = text.find('%'); at != std::string::npos)
        text.replace(at, 1, configuration);
    return text;
}

class SampleTest : public CliTest, public testing::WithParamInterface<Sample> {
protected:
    SampleTest() { std::filesystem::copy(Samples / GetParam().name, folder, CopyRecursively); }

    Outcome build(const std::string& arguments) const
    {
        return gantry("build " + path(GetParam().name + ".kvp") + " " + arguments);
    }

    static constexpr auto CopyRecursively = std::filesystem::copy_options::recursive;
};

TEST_P(SampleTest, BuildsAndRuns)
{
    for (const std::string configuration : {"Debug", "Release"}) {
        const std::string choice = "--configuration " + configuration;
        const Outcome first = build(choice);
        EXPECT_EQ(first.status, 0) << first.errors << first.output;
        EXPECT_TRUE(first.output.ends_with("\nBuild complete\n")) << first.output;
        EXPECT_EQ(first.output.find("warning"), std::string::npos) << first.output;
        for (const std::string& output : GetParam().outputs)
            EXPECT_TRUE(std::filesystem::exists(folder / in(configuration, output))) << output;

        for (const Program& program : GetParam().programs) {
            const Outcome run =
                gantry("run " + path(in(configuration, program.path))
                       + " --device MSP430F449 --stdin " + make("input", program.input));
            EXPECT_EQ(run.status, 0) << run.errors;
            EXPECT_EQ(run.output, program.output);
        }

        const Outcome second = build(choice + " --command-lines");
        EXPECT_EQ(second.status, 0);
        EXPECT_TRUE(second.output.ends_with("\nBuild up to date\n")) << second.output;
        EXPECT_EQ(second.output.find("/bin/"), std::string::npos) << second.output;
    }
}

INSTANTIATE_TEST_SUITE_P(All, SampleTest, testing::ValuesIn(AllSamples),
                         [](const auto& info) { return info.param.name; });

/// Solutions that nothing is missing from come out of the product as they went in.
TEST(SampleFileTest, AreAsTheProductWritesThem)
{
    const TestFolder scratch;
    Workspace workspace({.root = QStringLiteral(GANTRY_ROOT_TREE),
                         .settingsFolder = QString::fromStdString(scratch / "settings")});
    int files = 0;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(Samples)) {
        if (entry.path().extension() != ".kvp" || entry.path().stem() == "template")
            continue;
        const auto& path = entry.path();
        MSP430ProjectSystem& projects = workspace.projects();
        projects.loadSolution(QString::fromStdString(path.string()), nullptr, nullptr);
        EXPECT_FALSE(projects.modified()) << path;
        const std::string saved = scratch / path.filename().string();
        ASSERT_TRUE(projects.saveProjectFile(projects.solutionElement(),
                                             Path(QString::fromStdString(saved))));
        EXPECT_EQ(scratch.read(path.filename().string()), readFile(path)) << path;
        ++files;
    }
    EXPECT_EQ(files, 8);
}

} // namespace
