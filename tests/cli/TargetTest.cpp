// gantry target on the simulator, whose memory lives as long as the command.

#include "CliTestSupport.h"

namespace {

class TargetTest : public CliTest {
protected:
    /// Two ranges of flash of the MSP430F449.
    std::string program() const
    {
        return make("program.hex",
                    hexRecord(0x1100, {0x1234, 0x5678}) + hexRecord(0xFFFE, {0x1100}) + hexEnd);
    }
    Outcome target(const std::string& arguments) const
    {
        return gantry("target " + arguments + " --device MSP430F449");
    }
};

TEST_F(TargetTest, ListsTheTargets)
{
    const Outcome outcome = gantry("target list");
    EXPECT_EQ(outcome.output, "MSP430 Core Simulator\tMSP430Monitor\n");
    EXPECT_EQ(outcome.status, 0);
}

TEST_F(TargetTest, ProgramsVerifiesAndReadsBack)
{
    const Outcome outcome =
        target("erase then program " + program() + " --type ihex then verify " + path("program.hex")
               + " --type ihex then upload " + path("back.bin") + " --address 0x1100 --size 6");
    EXPECT_EQ(outcome.errors, "");
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(contents("back.bin"), std::string("\x34\x12\x78\x56\xff\xff", 6));
    std::string verbs;
    std::istringstream lines(outcome.output);
    for (std::string line; std::getline(lines, line);)
        verbs += line.substr(0, line.find(' ')) + " ";
    EXPECT_EQ(verbs,
              "Erasing Erasing Erasing Programming Programming Verifying Verifying Verifying "
              "Verifying Verifier uploading ");
    EXPECT_NE(outcome.output.find("Verifier has found no errors."), std::string::npos);
}

TEST_F(TargetTest, EndsWhereAnActionFails)
{
    Outcome outcome = target("verify " + program() + " --type ihex then upload " + path("never.bin")
                             + " --address 0 --size 1");
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.errors,
              "gantry: " + path("program.hex") + " differs from what the target holds\n");
    EXPECT_FALSE(std::filesystem::exists(path("never.bin")));

    // What doesn't fit isn't written in part.
    make("big.hex", hexRecord(0x1100, {1}) + hexRecord(0x0A10, {2}) + hexEnd);
    outcome = target("program " + path("big.hex") + " --type ihex");
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.output, "");
    EXPECT_NE(outcome.errors.find("does not fit"), std::string::npos) << outcome.errors;

    make("damaged.hex", hexRecord(0x1100, {1}) + ":0211");
    outcome = target("program " + path("damaged.hex") + " --type ihex");
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.output, "");
    EXPECT_NE(outcome.errors, "");
}

TEST_F(TargetTest, ErasesRanges)
{
    Outcome outcome =
        target("program " + program()
               + " --type ihex --no-verify then "
                 "erase --address 0x1102 --size 2 then upload "
               + path("left.bin") + " --address 0x1100 --size 4 then erase then upload "
               + path("none.bin") + " --address 0x1100 --size 4");
    EXPECT_EQ(outcome.status, 0) << outcome.errors;
    EXPECT_EQ(contents("left.bin"), "\x34\x12\xff\xff");
    EXPECT_EQ(contents("none.bin"), "\xff\xff\xff\xff");
    EXPECT_EQ(outcome.output.find("Verifying"), std::string::npos);
}

TEST_F(TargetTest, RefusesWhatMakesNoSense)
{
    const struct {
        const char* arguments;
        const char* message;
        int status;
    } cases[] = {
        {"", "target takes list, program, verify", 2},
        {"burn x.hex", "target takes list, program, verify", 2},
        {"list more", "takes nothing else", 2},
        {"program", "target program needs a load file", 2},
        {"program a b", "takes one file", 2},
        {"program a.hex then", "target takes list", 2},
        {"program a.hex --size 3", "takes no size", 2},
        {"verify a.hex --erase-all", "are for target program", 2},
        {"erase --address 1", "go together", 2},
        {"upload a.hex --address 1", "needs a file, --address and --size", 2},
        {"upload a.zzz --address 1 --size 1", "doesn't tell its format", 2},
        {"erase --speed 3", "unknown option --speed", 2},
        {"erase --memory", "option --memory needs a value", 2},
        {"erase --device NONE", "unknown device NONE", 2},
        {"erase --target board", "there is no target board; there are: MSP430 Core Simulator", 1},
        {"erase --memory x", "there is no memory x", 1},
        {"erase --address huge --size 1", "invalid start address", 1},
        {"upload a.bin --address 0 --size 0xffffffffff", "invalid length", 1},
        {"program none.hex", "invalid file", 1},
        {"lock --address 0x1100 --size 2", "the target has no memory that can be locked", 1},
        {"erase then unlock", "the target has no memory that can be locked", 1},
    };
    for (const auto& one : cases) {
        const Outcome outcome = gantry(std::string("target ") + one.arguments);
        EXPECT_EQ(outcome.status, one.status) << one.arguments;
        EXPECT_NE(outcome.errors.find(one.message), std::string::npos) << one.arguments << '\n'
                                                                       << outcome.errors;
    }
}

} // namespace
