#include "toolchain/tools/Kex.h"

#include "base/HException.h"
#include "objfile/format/TOBFWriter.h"
#include "objfile/model/TOBFDirectives.h"
#include "objfile/model/TOBFExpr.h"

#include <gtest/gtest.h>

#include <unistd.h>

#include <filesystem>
#include <fstream>

namespace fs = std::filesystem;

namespace {

class KexTest : public testing::Test {
protected:
    void SetUp() override
    {
        fs::remove_all(folder);
        fs::create_directories(folder);
        Pool pool;
        const CurrentPool current(&pool);
        auto* module = new TOBFModule;
        auto* section = new TOBFSection(HString::intern("CODE"));
        section->setFlags(1 | TOBFSection::LoadFlag);
        module->addSection(section);
        auto* insn = new TOBFDefBytesInsn(new TOBFConstExpr(0x4031), 2);
        insn->setPC(0xF000);
        insn->encode();
        section->addInsn(insn);
        TOBFWriter writer;
        module->externalize(&writer, false);
        writer.finish();
        std::ofstream(path("a.kvx"), std::ios::binary)
            .write(reinterpret_cast<const char*>(writer.data().data()),
                   static_cast<std::streamsize>(writer.data().size()));
    }

    std::string path(const std::string& name) const { return (folder / name).string(); }
    std::string contents(const std::string& name) const
    {
        std::ifstream in(path(name), std::ios::binary);
        return {std::istreambuf_iterator<char>(in), {}};
    }
    static std::string messageOf(const std::vector<std::string>& words)
    {
        Diagnostics diagnostics("kex", [](const std::string&) {});
        try {
            kex(words, diagnostics);
        } catch (const HException& error) {
            return error.message();
        }
        return "(no failure)";
    }

    const fs::path folder = fs::path(testing::TempDir()) / ("kex-" + std::to_string(::getpid()));
};

TEST_F(KexTest, EachFormatUnderItsEnding)
{
    const std::pair<const char*, const char*> cases[] = {
        {"hex", ":02F0000031409D\n:00000001FF\n"},
        {"lst", "0000F000 31 40\n"},
        {"srec", "S0030000FC\nS105F000314099\nS9030000FC\n"},
        {"bin", "1@"},
        {"txt", "@0F000\n31 40\nq\n"},
        // Sums of digits: 1+2 + 6 + 8+F + 3+1+4 = 28 hexadecimal; 0+E + 8 + 8 = 1E.
        {"tek",
         "%126288"
         "0000F000"
         "3140\n%0E81E800000000\n"},
    };
    for (const auto& [format, text] : cases) {
        Diagnostics diagnostics("kex", [](const std::string& line) { ADD_FAILURE() << line; });
        const std::vector<std::string> words = {path("a.kvx"), "-o", path("out"),
                                                std::string("-F") + format};
        kex(words, diagnostics);
        EXPECT_EQ(contents(std::string("out.") + format), text) << format;
    }
}

TEST_F(KexTest, FailuresLeaveNoOutput)
{
    EXPECT_EQ(messageOf({}), "one executable has to be named");
    EXPECT_EQ(messageOf({path("a.kvx"), "-o", path("x")}), "no output format");
    EXPECT_EQ(messageOf({path("a.kvx"), "-o", path("x"), "-Felf"}), "unknown format elf");
    EXPECT_EQ(messageOf({path("b.kvx"), "-o", path("x"), "-Fhex"}),
              "Can't access " + path("b.kvx"));
    EXPECT_EQ(messageOf({path("a.kvx"), "-Z"}), "unknown option -Z");
    std::size_t files = 0;
    for (const auto& entry : fs::directory_iterator(folder))
        files += entry.is_regular_file() ? 1 : 0;
    EXPECT_EQ(files, 1u);
}

} // namespace
