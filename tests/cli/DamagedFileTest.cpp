// Files that can't be read: every command says why, leaves with 1 and writes nothing.

#include "TestExecutable.h"

#include <gmock/gmock.h>

namespace {

using testing::HasSubstr;
using testing::StartsWith;

class DamagedFileTest : public CliTest {
protected:
    std::string executable() const
    {
        TestExecutable program;
        program.section("CODE", SectionKind::Code, 0xF000);
        program.label("_start");
        program.words({0x4303, 0x3FFF});
        return program.bytes();
    }
};

TEST_F(DamagedFileTest, EveryCommandRefuses)
{
    const std::string whole = executable();
    const struct {
        const char* name;
        std::string bytes;
        const char* says;
    } cases[] = {
        {"sum.hex", ":02F0000031409E\n", "invalid checksum : line 1"},
        {"cut.hex", ":02F0000031409D\n:02F0", " : line 2"},
        {"end.hex", ":02F0000031409D\n", "invalid end of file in hex file"},
        {"mark.hex", "02F0000031409D\n", "missing record mark in hex file : line 1"},
        {"sum.s19", "S105F000314098\n", "invalid checksum : line 1"},
        {"letter.s19", "X105F000314099\n", "no leading 'S' character : line 1"},
        {"digit.txt", "@F000\n31 4G\nq\n", "invalid ASCII encoded byte : line 2"},
        {"end.txt", "@F000\n31 40\n", "unexpected end of file : line 3"},
        {"digit.lst", "0000F000 31 4G\n", "invalid ASCII encoded byte : line 1"},
        {"cut.kvx", whole.substr(0, whole.size() - 1), "gantry: "},
        {"head.kvx", whole.substr(0, 3), "gantry: "},
        {"tag.kvx", std::string("\xFF", 1) + whole, "gantry: "},
        {"empty.kvx", "", "gantry: "},
    };
    for (const auto& c : cases) {
        const std::string file = make(c.name, c.bytes);
        for (const std::string& arguments :
             {"dump " + file, "dump " + file + " --disassembly", "run " + file + " --pc 0xF000",
              "convert " + file + " " + path("out.bin")}) {
            const Outcome outcome = gantry(arguments);
            EXPECT_EQ(outcome.status, 1) << arguments;
            EXPECT_EQ(outcome.output, "") << arguments;
            EXPECT_THAT(outcome.errors, StartsWith("gantry: ")) << arguments;
            EXPECT_THAT(outcome.errors, HasSubstr(c.says)) << arguments;
        }
        EXPECT_FALSE(std::filesystem::exists(folder / "out.bin")) << c.name;
    }
}

TEST_F(DamagedFileTest, FilesThatAreNotThere)
{
    for (const char* name :
         {"none.hex", "none.txt", "none.s19", "none.lst", "none.bin", "none.kvx"})
        for (const std::string command : {"dump ", "run --pc 0 --address 0 "}) {
            const Outcome outcome = gantry(command + path(name));
            EXPECT_EQ(outcome.status, 1) << command << name;
            EXPECT_THAT(outcome.errors, HasSubstr(path(name))) << command;
        }
}

} // namespace
