#include "toolchain/kas/Kas.h"

#include "base/HException.h"
#include "objfile/format/TOBFfiles.h"
#include "objfile/model/TOBFExpr.h"
#include "objfile/model/TOBFModule.h"

#include <gtest/gtest.h>

#include <unistd.h>

#include <filesystem>
#include <fstream>

namespace fs = std::filesystem;

namespace {

class KasProgram : public testing::Test {
protected:
    void SetUp() override
    {
        fs::remove_all(folder);
        fs::create_directories(folder / "inc");
    }

    std::string path(const std::string& name) const { return (folder / name).string(); }
    std::string make(const std::string& name, const std::string& text) const
    {
        std::ofstream(path(name)) << text;
        return path(name);
    }

    /// The messages, an exception's among them.
    std::string run(std::vector<std::string> words) const
    {
        std::string messages;
        Diagnostics diagnostics("kas", [&](const std::string& line) { messages += line + "\n"; });
        words.insert(words.end(), {"-o", path("out.kvo")});
        try {
            kas(words, diagnostics);
        } catch (const FatalDiagnostic&) {
        } catch (const HException& error) {
            messages += error.message() + "\n";
        }
        return messages;
    }

    const fs::path folder =
        fs::path(testing::TempDir()) / ("kas_program-" + std::to_string(::getpid()));
};

struct LoadedModule {
    explicit LoadedModule(const std::string& path) : module(TOBFfiles::getModule(Path(path))) { }
    ~LoadedModule() { TOBFfiles::release(module); }
    LoadedModule(const LoadedModule&) = delete;
    LoadedModule& operator=(const LoadedModule&) = delete;

    std::int64_t value(const char* name) const
    {
        return module->publicSymbols().at(HString::intern(name))->definition()->evaluate().value;
    }
    std::string attribute(const char* name) const
    {
        return module->attribute(HString::intern(name))->str();
    }
    TOBFModule* module;
};

TEST_F(KasProgram, PlainSourceNeedsNoPreprocessor)
{
    const std::string inc = make("inc/part.inc", ".equ from_part, 7\n");
    const std::string source = make("a.s",
                                    ".include \"part.inc\"\n.include \"inc/part.inc\"\n"
                                    ".global size\nsize = from_part*2\nmain: mov #size, r5\n");
    EXPECT_EQ(run({source, "-I" + path("inc"), "-D__GANTRY", "-V"}), "");
    const LoadedModule loaded(path("out.kvo"));
    EXPECT_EQ(loaded.value("size"), 14);
    EXPECT_EQ(loaded.attribute("dependencies"), source + ";" + inc);
}

TEST_F(KasProgram, PreprocessedSource)
{
    const std::string header =
        make("inc/numbers.h", "#define TWICE(x) ((x)*2)\n#ifdef FIVE\n#define N FIVE\n#endif\n");
    const std::string source =
        make("a.S",
             "#include \"numbers.h\"\n.global n\n#if N > 4\nn = TWICE(N)\n#else\n"
             "#error too small\n#endif\n mov #N, r5 ; it's N\n");
    EXPECT_EQ(run({source, "-J" + path("inc"), "-DFIVE=5", "-mcpux"}), "");
    const LoadedModule loaded(path("out.kvo"));
    EXPECT_EQ(loaded.value("n"), 10);
    EXPECT_EQ(loaded.attribute("dependencies"), source + ";" + header);
}

TEST_F(KasProgram, ErrorsBehindThePreprocessorKeepTheirPlaces)
{
    make("inc/bad.h", "\nfoo r5\n");
    const std::string source = make("a.S", "#include \"bad.h\"\n#define X bar\n nop\n X r6\n");
    EXPECT_EQ(run({source, "-I" + path("inc")}),
              path("inc/bad.h") + "(2): error: unknown instruction 'foo'\n" + source
                  + "(4): error: unknown instruction 'bar'\n");
    EXPECT_FALSE(fs::exists(path("out.kvo")));
}

TEST_F(KasProgram, WhenASourceNeedsThePreprocessor)
{
    EXPECT_FALSE(needsPreprocessor("mov #5, r5\n# a comment\n# 1 \"file\"\n", {"FIVE=5"}));
    EXPECT_TRUE(needsPreprocessor("  #  include \"x\"\n", {}));
    EXPECT_TRUE(needsPreprocessor("mov #FIVE, r5\n", {"FIVE=5"}));
}

TEST_F(KasProgram, UsesThatMakeNoSense)
{
    EXPECT_EQ(run({}), "one source file has to be named\n");
    EXPECT_EQ(run({"a.s", "b.s"}), "one source file has to be named\n");
    EXPECT_EQ(run({path("none.s")}), "can't read the file '" + path("none.s") + "'\n");
    EXPECT_EQ(run({path("inc")}), "can't read the file '" + path("inc") + "'\n");
    EXPECT_EQ(run({"-Q", "a.s"}), "unknown option -Q\n");
    const std::string warned = make("w.s", ".warning \"old\"\n");
    EXPECT_EQ(run({warned, "-w"}), "");
    EXPECT_EQ(run({warned, "-we"}), warned + "(1): error: old\n");
}

TEST_F(KasProgram, FilesThatIncludeEachOther)
{
    const std::string source = make("a.s", ".include \"a.s\"\n");
    EXPECT_NE(run({source}).find("files include each other too deeply"), std::string::npos);
}

} // namespace
