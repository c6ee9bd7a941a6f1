#include "TestExecutable.h"

#include <gmock/gmock.h>

namespace {

using testing::HasSubstr;

class DumpTest : public CliTest {
protected:
    std::string dump(const std::string& file, const std::string& options = "") const
    {
        const Outcome outcome = gantry("dump " + file + " " + options);
        EXPECT_EQ(outcome.status, 0) << outcome.errors;
        EXPECT_EQ(outcome.errors, "");
        return outcome.output;
    }
};

TEST_F(DumpTest, SectionsOfALoadFile)
{
    const std::string file = make("in.hex",
                                  ":02F0000031409D\n:01F0040055B6\n"
                                  ":040000050000F00007\n:00000001FF\n");
    const std::string table = "section             bytes  addresses\n"
                              "                        2  0F000-0F001\n"
                              "                        1  0F004-0F004\n"
                              "entry point 0F000\n";
    EXPECT_EQ(dump(file), table);
    EXPECT_EQ(dump(file, "--sections"), table);
    EXPECT_EQ(dump(file, "--symbols"), ""); // it has none
}

TEST_F(DumpTest, DisassemblyOfALoadFile)
{
    // What makes no whole instruction stands alone: at an odd address, and at the end.
    const std::string file = make("in.txt",
                                  "@F000\n31 40 00 02 03 43 31 40\n"
                                  "@0301\n12 03 43 55\n@10000\nFF 3F\nq\n");
    EXPECT_EQ(dump(file, "--disassembly"),
              "0F000  31400002            MOV.W     #0x0200, SP\n"
              "0F004  0343                NOP\n"
              "0F006  3140\n"
              "\n"
              "00301  12\n"
              "00302  0343                NOP\n"
              "00304  55\n"
              "\n"
              "10000  ff3f                JMP       0x10000\n");
}

TEST_F(DumpTest, DisassemblyOfAnExecutable)
{
    TestExecutable program;
    program.section("CODE", SectionKind::Code, 0xF000);
    program.label("_start");
    program.words({0x4303});
    program.label("again");
    program.words({0x3FFF});
    program.section("EMPTY", SectionKind::Code, 0xF100);
    program.section("RESET", SectionKind::Const, 0xFFFE); // no code
    program.words({0xF000});
    EXPECT_EQ(dump(make("in.kvx", program.bytes()), "--disassembly"),
              "SECTION CODE\n"
              "_start:\n"
              "0F000  0343                NOP\n"
              "again:\n"
              "0F002  ff3f                JMP       0x0f002\n");
}

TEST_F(DumpTest, NothingToDisassemble)
{
    TestExecutable object;
    object.section("CODE", SectionKind::Code, TestExecutable::NotPlaced);
    object.words({0x4303});
    EXPECT_EQ(dump(make("in.kvo", object.bytes()), "--disassembly"), "nothing to disassemble\n");
    EXPECT_EQ(dump(make("in.hex", hexEnd), "--disassembly"), "nothing to disassemble\n");
}

TEST_F(DumpTest, SectionsAndSymbolsOfAnExecutable)
{
    TestExecutable program;
    program.section("CODE", SectionKind::Code, 0xF000);
    program.label("_start");
    program.words({0x4303, 0x3FFF});
    const std::string text = dump(make("in.kvx", program.bytes()));
    EXPECT_THAT(text, HasSubstr("CODE             code    yes          4  0F000-0F003\n"));
    EXPECT_THAT(text, HasSubstr("0F000      P _start"));
}

TEST_F(DumpTest, UsesThatMakeNoSense)
{
    const std::string file = make("in.hex", hexEnd);
    const struct {
        std::string arguments;
        const char* says;
    } cases[] = {
        {"dump", "no file"},
        {"dump " + file + " " + file, "more than one file"},
        {"dump " + file + " --everything", "unknown option --everything"},
    };
    for (const auto& c : cases) {
        const Outcome outcome = gantry(c.arguments);
        EXPECT_EQ(outcome.status, 2) << c.says;
        EXPECT_THAT(outcome.errors, HasSubstr(c.says));
        EXPECT_THAT(outcome.errors, HasSubstr("[--disassembly]"));
    }
}

} // namespace
