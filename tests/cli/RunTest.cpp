#include "TestExecutable.h"

#include <gmock/gmock.h>

namespace {

using testing::EndsWith;
using testing::HasSubstr;
using testing::MatchesRegex;
using testing::StartsWith;

/// MOV #5, R4; MOV #1, R5; ADD R4, R5; SUB #1, R4; JNZ 0xF006; JMP $.
const Words counting = {0x4034, 5, 0x4315, 0x5405, 0x8314, 0x23FD, 0x3FFF};

class RunTest : public CliTest {
protected:
    /// A program at 0xF000 that the reset vector starts.
    Outcome run(const Words& words, const std::string& options = "") const
    {
        make("in.hex", hexRecord(0xF000, words) + hexRecord(0xFFFE, {0xF000}) + hexEnd);
        return gantry("run " + path("in.hex") + " " + options);
    }

    /// A native program that asks the debugger to end it with this status.
    std::string leaving(unsigned status) const
    {
        TestExecutable program;
        program.symbol("__debug_io_control", new TOBFConstExpr(0x200));
        program.symbol("__debug_io_communication", new TOBFConstExpr(0x202));
        program.section("CODE", SectionKind::Code, 0xF000);
        program.label("_start");
        program.words({0x40B2, status, 0x0300, 0x40B2, 0x0300, 0x0202});
        program.label("leave");
        program.words({0x40B2, 46, 0x0200, 0x4343, 0x3FFF});
        program.section("RESET", SectionKind::Const, 0xFFFE);
        program.words({0xF000});
        return make("leaving.kvx", program.bytes());
    }
};

TEST_F(RunTest, TheProgramsOwnStatus)
{
    for (const unsigned status : {0U, 1U, 7U, 255U}) {
        const Outcome outcome = gantry("run " + leaving(status));
        EXPECT_EQ(outcome.status, static_cast<int>(status));
        EXPECT_EQ(outcome.output + outcome.errors, "");
    }
    EXPECT_EQ(gantry("run " + leaving(0x102)).status, 2); // its low eight bits
}

TEST_F(RunTest, WhatStopsAProgram)
{
    const struct {
        Words words;
        const char* options;
        int status;
        const char* says;
    } cases[] = {
        {counting, "--max-cycles 100", 124, "gantry: stopped at 0xF00C: cycle limit reached\n"},
        {counting, "--steps 3", 125, "gantry: stopped at 0xF008: step count reached\n"},
        {counting, "--steps 4 --max-cycles 1000", 125, "stopped at 0xF00A: step count reached"},
        {counting, "--break 0xF00A", 125, "gantry: stopped at 0xF00A: breakpoint\n"},
        {counting, "--break 61450 --break 0xF008", 125, "gantry: stopped at 0xF008: breakpoint\n"},
        {{0x4303, 0x4343}, "", 125, "software breakpoint"},
        {{0xD032, 0x0010}, "", 125, "the processor is off and nothing can wake it"},
        {{0x4214, 0x0301}, "", 125, "Unaligned access on word read"},
        {{0x13A0}, "", 125, "Unsupported opcode"},
        {{0x4382, 0xFFFF}, "", 125, "Unaligned access on word write"},
    };
    for (const auto& c : cases) {
        const Outcome outcome = run(c.words, c.options);
        EXPECT_EQ(outcome.status, c.status) << c.says;
        EXPECT_EQ(outcome.output, "") << c.says;
        EXPECT_THAT(outcome.errors, HasSubstr(c.says));
    }
}

TEST_F(RunTest, RegistersAtTheEnd)
{
    // R4 = 5, R5 = 6, no flag set by the addition.
    EXPECT_EQ(run(counting, "--steps 3 --registers").output,
              "PC 0f008\nSP 00000\nSR 00000\nR3 00000\nR4 00005\nR5 00006\nR6 00000\nR7 00000\n"
              "R8 00000\nR9 00000\nR10 00000\nR11 00000\nR12 00000\nR13 00000\nR14 00000\n"
              "R15 00000\n");
    // 1 + 5 + 4 + 3 + 2 + 1 = 16, and Z and C of the last subtraction.
    EXPECT_THAT(run(counting, "--break 0xF00C --registers").output,
                StartsWith("PC 0f00c\nSP 00000\nSR 00003\nR3 00000\nR4 00000\nR5 00010\n"));
    // MOVA #0xABCDE, R6.
    EXPECT_THAT(run({0x0A86, 0xBCDE}, "--steps 1 --registers").output, HasSubstr("R6 abcde\n"));
}

TEST_F(RunTest, StatisticsGoToTheErrorStream)
{
    // Two cycles of MOV #5, R4, one each of the two others.
    const Outcome outcome = run(counting, "--steps 3 --stats");
    EXPECT_EQ(outcome.output, "");
    EXPECT_THAT(outcome.errors,
                MatchesRegex("gantry: stopped .*\n3 instructions, 4 cycles, "
                             "[0-9]+\\.[0-9]+ seconds, [0-9]+\\.[0-9] MIPS\n"));
}

TEST_F(RunTest, TraceAndCounts)
{
    // Cycles count up to where the instruction starts.
    EXPECT_EQ(run(counting, "--steps 4 --trace 10").output, "0f000 0\n0f004 2\n0f006 3\n0f008 4\n");
    EXPECT_EQ(run(counting, "--break 0xF00C --counts").output,
              "0f000 1\n0f004 1\n0f006 5\n0f008 5\n0f00a 5\n");
}

TEST_F(RunTest, StartAndFilledMemory)
{
    EXPECT_THAT(run(counting, "--pc 0xF006 --steps 1 --registers").output,
                StartsWith("PC 0f008\n"));
    const std::string noVector = make("load.hex", hexRecord(0xF000, {0x4214, 0x0300}) + hexEnd);
    const Outcome outcome = gantry("run " + noVector);
    EXPECT_EQ(outcome.status, 1);
    EXPECT_THAT(outcome.errors, HasSubstr("has no reset vector; --pc tells where to start"));
    EXPECT_THAT(gantry("run " + noVector + " --pc 0xF000 --fill 0xA5 --steps 1 --registers").output,
                HasSubstr("R4 0a5a5\n"));
    // The fill is the vector too: 0x4242 is an even address, and what stands there MOV.B R2, R2.
    EXPECT_THAT(gantry("run " + noVector + " --fill 66 --steps 1 --registers").output,
                StartsWith("PC 04244\n"));
    make("load.bin", "\x34\x40\x39\x30"); // MOV #0x3039, R4
    EXPECT_THAT(
        gantry("run " + path("load.bin") + " --address 0xF100 --pc 0xF100 --steps 1 --registers")
            .output,
        HasSubstr("R4 03039\n"));
}

TEST_F(RunTest, BreakpointsOnSymbols)
{
    EXPECT_THAT(gantry("run " + leaving(0) + " --break leave").errors,
                EndsWith("stopped at 0xF00C: breakpoint\n"));
    // A name of the C language goes by its spelling without the underscore.
    EXPECT_THAT(gantry("run " + leaving(0) + " --break start").errors,
                EndsWith("stopped at 0xF000: breakpoint\n"));
    EXPECT_EQ(gantry("run " + leaving(0) + " --break nowhere").status, 1);
    EXPECT_THAT(gantry("run " + leaving(0) + " --break nowhere").errors,
                HasSubstr("no such symbol"));
}

TEST_F(RunTest, UsesThatMakeNoSense)
{
    const std::string program = "run " + make("in.hex", hexRecord(0xF000, counting) + hexEnd) + " ";
    const struct {
        std::string arguments;
        const char* says;
    } cases[] = {
        {"", "usage: gantry COMMAND"},
        {"walk", "unknown command \"walk\""},
        {"run", "no program is named"},
        {program + "more.hex", "more than one program"},
        {program + "--wrong", "unknown option --wrong"},
        {program + "--steps", "option --steps needs a value"},
        {program + "--steps many", "--steps many isn't a number"},
        {program + "--fill 256", "--fill 256 isn't a number from 0 to 255"},
        {program + "--pc 0x100000", "--pc 0x100000 isn't a number"},
        {program + "--pc -1", "--pc -1 isn't a number"},
        {program + "--device msp430none", "unknown device msp430none"},
        {program + "--type elf", "unknown format elf"},
        {program + "--type bin", "needs --address"},
        {"run " + make("in.dat", "x"), "isn't known; --type names it"},
    };
    for (const auto& c : cases) {
        const Outcome outcome = gantry(c.arguments);
        EXPECT_EQ(outcome.status, 2) << c.arguments;
        EXPECT_EQ(outcome.output, "") << c.arguments;
        EXPECT_THAT(outcome.errors, HasSubstr(c.says));
    }
}

TEST_F(RunTest, ProgramsThatDontFitTheDevice)
{
    // One byte behind the 20-bit address space.
    make("far.s19", "S3060010000000E9\n");
    const Outcome outcome = gantry("run " + path("far.s19") + " --pc 0");
    EXPECT_EQ(outcome.status, 1);
    EXPECT_THAT(outcome.errors,
                HasSubstr("doesn't fit the device generic in range 0x100000 - 0x100000"));
}

} // namespace
