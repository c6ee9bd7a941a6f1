#include "base/HException.h"
#include "toolchain/common/Diagnostics.h"
#include "toolchain/common/Options.h"
#include "toolchain/common/OutputFile.h"

#include <gtest/gtest.h>

#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <regex>

namespace fs = std::filesystem;

namespace {

TEST(Diagnostics, LinesAreTheBuildLogsForms)
{
    std::vector<std::string> lines;
    Diagnostics diagnostics("kas", [&](const std::string& line) { lines.push_back(line); });
    diagnostics.note({"a.s", 7}, "seen here");
    diagnostics.warning({"dir/a.s", 12}, "value truncated");
    diagnostics.error({"a.s", 0}, "empty");
    diagnostics.error("no input file");
    EXPECT_THROW(diagnostics.fatal("given up"), FatalDiagnostic);
    EXPECT_EQ(lines,
              (std::vector<std::string>{
                  "a.s(7): note: seen here", "dir/a.s(12): warning: value truncated",
                  "a.s: error: empty", "kas: error: no input file", "kas: fatal: given up"}));
    EXPECT_EQ(diagnostics.errors(), 3u);
    EXPECT_EQ(diagnostics.warnings(), 1u);
    // The expression by which the log finds file, line and text.
    std::smatch match;
    ASSERT_TRUE(
        std::regex_search(lines[1], match, std::regex(R"((.*)\((\d+)\): warning.*:\s(.+$))")));
    EXPECT_EQ(match.str(1) + "|" + match.str(2) + "|" + match.str(3), "dir/a.s|12|value truncated");
}

TEST(Diagnostics, WarningModes)
{
    std::vector<std::string> lines;
    const auto sink = [&](const std::string& line) { lines.push_back(line); };
    Diagnostics silent("kas", sink);
    silent.suppressWarnings(true);
    silent.treatWarningsAsErrors(true);
    silent.warning("nothing of this");
    EXPECT_TRUE(lines.empty());
    EXPECT_FALSE(silent.failed());

    Diagnostics strict("kas", sink);
    strict.treatWarningsAsErrors(true);
    strict.warning("this fails");
    EXPECT_EQ(lines, std::vector<std::string>{"kas: error: this fails"});
    EXPECT_TRUE(strict.failed());
}

TEST(Diagnostics, GivesUpAtTheLimit)
{
    std::vector<std::string> lines;
    Diagnostics diagnostics("kas", [&](const std::string& line) { lines.push_back(line); });
    const auto flood = [&] {
        for (;;)
            diagnostics.error("again");
    };
    EXPECT_THROW(flood(), FatalDiagnostic);
    EXPECT_EQ(lines.size(), Diagnostics::ErrorLimit + 1);
    EXPECT_EQ(lines.back(), "kas: fatal: too many errors");
}

TEST(ToolOptions, TheLongestSpellingWinsAndOrderStays)
{
    std::string log;
    const auto take = [&](const char* name) {
        return [&log, name](const std::string& value) { log += std::string(name) + value + ";"; };
    };
    const std::vector<ToolOption> options = {
        {"-w", ToolOption::Flag, "", take("w")},
        {"-we", ToolOption::Flag, "", take("we")},
        {"-O", ToolOption::Attached, "", take("O")},
        {"-Oxc=", ToolOption::Attached, "", take("Oxc")},
        {"-o", ToolOption::Separate, "", take("o")},
    };
    const std::vector<std::string> words = {"a",  "-we", "-Oxc=4", "-Oxj", "-o", "x",
                                            "-w", "-",   "-oy",    "--",   "-q"};
    EXPECT_EQ(parseToolOptions(words, options), (std::vector<std::string>{"a", "-", "-q"}));
    EXPECT_EQ(log, "we;Oxc4;Oxj;ox;w;oy;");

    const auto message = [&](std::vector<std::string> bad) {
        try {
            parseToolOptions(bad, options);
        } catch (const HException& error) {
            return error.message();
        }
        return std::string();
    };
    EXPECT_EQ(message({"-q"}), "unknown option -q");
    EXPECT_EQ(message({"-wx"}), "unknown option -wx");
    EXPECT_EQ(message({"-o"}), "option -o needs a value");
    EXPECT_EQ(message({"-O"}), "option -O needs a value");
}

TEST(ToolOptions, HelpText)
{
    const ToolDescription tool = {"kxx", "FILE", "Does nothing."};
    EXPECT_EQ(toolHelp(tool, {}),
              "usage: kxx FILE\nDoes nothing.\n\n"
              "  --help     show this text\n  --version  show the version\n");
    const ToolOption options[] = {{"-output", ToolOption::Separate, "a file", {}},
                                  {"-V", ToolOption::Flag, nullptr, {}}};
    EXPECT_NE(toolHelp(tool, options).find("  -output VALUE  a file\n  --help         show"),
              std::string::npos);
}

std::string contents(const fs::path& path)
{
    std::ifstream in(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
}

TEST(OutputFile, StandsOnlyWhenComplete)
{
    const fs::path folder =
        fs::path(testing::TempDir()) / ("output_file-" + std::to_string(::getpid()));
    fs::remove_all(folder);
    fs::create_directories(folder);
    const fs::path target = folder / "out.bin";
    {
        OutputFile given(target.string());
        given.write("half");
    }
    EXPECT_TRUE(fs::is_empty(folder));
    {
        OutputFile kept(target.string());
        kept.write("whole");
        EXPECT_FALSE(fs::exists(target));
        kept.commit();
    }
    {
        OutputFile abandoned(target.string());
    }
    EXPECT_EQ(contents(target), "whole");

    fs::create_symlink("out.bin", folder / "link");
    OutputFile through((folder / "link").string());
    through.write("through");
    through.commit();
    EXPECT_EQ(contents(target), "through");
    EXPECT_TRUE(fs::is_symlink(folder / "link"));

    OutputFile device("/dev/null");
    device.write("gone");
    device.commit();
    EXPECT_TRUE(fs::is_character_file("/dev/null"));

    EXPECT_THROW(OutputFile((folder / "no" / "where").string()), HException);
    EXPECT_THROW(OutputFile(folder.string()), HException);
}

} // namespace
