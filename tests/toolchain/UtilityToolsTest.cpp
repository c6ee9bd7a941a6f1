#include "base/HException.h"
#include "toolchain/tools/Kbc.h"
#include "toolchain/tools/Kmh.h"
#include "toolchain/tools/Kxc.h"

#include <gtest/gtest.h>

#include <unistd.h>

#include <filesystem>
#include <fstream>

namespace fs = std::filesystem;

namespace {

class UtilityTools : public testing::Test {
protected:
    void SetUp() override
    {
        fs::remove_all(folder);
        fs::create_directories(folder);
    }

    std::string path(const std::string& name) const { return (folder / name).string(); }
    std::string make(const std::string& name, const std::string& text) const
    {
        std::ofstream(path(name), std::ios::binary) << text;
        return path(name);
    }
    std::string contents(const std::string& name) const
    {
        std::ifstream in(path(name), std::ios::binary);
        return {std::istreambuf_iterator<char>(in), {}};
    }

    /// The messages, an exception's among them.
    static std::string run(void (*tool)(std::span<const std::string>, Diagnostics&),
                           const char* name, const std::vector<std::string>& words)
    {
        std::string messages;
        Diagnostics diagnostics(name, [&](const std::string& line) { messages += line + "\n"; });
        try {
            tool(words, diagnostics);
        } catch (const FatalDiagnostic&) {
        } catch (const HException& error) {
            messages += error.message() + "\n";
        }
        return messages;
    }

    const fs::path folder =
        fs::path(testing::TempDir()) / ("utility_tools-" + std::to_string(::getpid()));
};

TEST_F(UtilityTools, KbcSaysThatThereIsNoCompiler)
{
    EXPECT_EQ(run(kbc, "kbc", {"a.bas", "-o", "a.kvo"}),
              "kbc: fatal: no Basic compiler is installed\n");
}

TEST_F(UtilityTools, KxcMergesCutsAndFills)
{
    const std::string boot = make("boot.txt", "@1000\n01 02\nq\n");
    const std::string program = make("program.txt", "@1001\n02\n@1004\n05\nq\n");
    const std::string raw = make("raw.bin", "\x0A\x0B");
    const struct {
        std::vector<std::string> words;
        std::string text;
    } cases[] = {
        {{boot, program}, "@01000\n01 02\n@01004\n05\nq\n"},
        {{program, raw + "@1002"}, "@01001\n02 0A 0B 05\nq\n"},
        {{boot, program, "-fFF"}, "@01000\n01 02 FF FF 05\nq\n"},
        {{boot, program, "-R1001-1005"}, "@01001\n02\n@01004\n05\nq\n"},
        {{boot, program, "-R1001-1005", "-f0"}, "@01001\n02 00 00 05 00\nq\n"},
    };
    for (auto c : cases) {
        c.words.insert(c.words.end(), {"-o", path("out.txt")});
        EXPECT_EQ(run(kxc, "kxc", c.words), "");
        EXPECT_EQ(contents("out.txt"), c.text);
    }
    EXPECT_EQ(run(kxc, "kxc", {boot, "-o", path("out.dat"), "-Flst"}), "");
    EXPECT_EQ(contents("out.dat"), "00001000 01 02\n");
}

TEST_F(UtilityTools, KxcPrintsChecksums)
{
    // The check values of the catalogue of parametrised CRC algorithms, over "123456789".
    const std::string digits = make("digits.bin", "123456789");
    const std::pair<const char*, const char*> cases[] = {
        {"crc16", "crc16 0x29B1, 9 bytes\n"},
        {"crc32", "crc32 0xFC891918, 9 bytes\n"},
        {"sum", "sum 0x01DD, 9 bytes\n"},
        {"xor", "xor 0x31, 9 bytes\n"},
    };
    for (const auto& [name, text] : cases) {
        testing::internal::CaptureStdout();
        EXPECT_EQ(run(kxc, "kxc", {digits, std::string("-H") + name}), "");
        EXPECT_EQ(testing::internal::GetCapturedStdout(), text);
    }
}

TEST_F(UtilityTools, KxcCompares)
{
    const std::string a = make("a.txt", "@1000\n01 02 03 04\nq\n");
    const std::string b = make("b.lst", "00001000 01 09 09 04\n00001008 07\n");
    EXPECT_EQ(run(kxc, "kxc", {"-c", a, a}), "");
    EXPECT_EQ(run(kxc, "kxc", {"-c", a, b}),
              "kxc: error: different in 0x01001-0x01002\n"
              "kxc: error: different in 0x01008-0x01008\n");
    EXPECT_EQ(run(kxc, "kxc", {"-c", a, b, "-R1003-1005"}), "");
}

TEST_F(UtilityTools, KxcRefuses)
{
    const std::string a = make("a.txt", "@1000\n01\nq\n");
    const std::string b = make("b.txt", "@1000\n02\nq\n");
    const std::string out = path("out.hex");
    const struct {
        std::vector<std::string> words;
        std::string message;
    } cases[] = {
        {{}, "no input file\n"},
        {{a}, "nothing to do; name an output with -o or a checksum with -H\n"},
        {{a, b, "-o", out}, b + " has another byte at 0x01000 than a file in front of it\n"},
        {{a + "@2000", "-o", out},
         "'" + a + "@2000' gives an address to a file that has its own\n"},
        {{path("x.bin") + "@G", "-o", out}, "cannot open " + path("x.bin") + "\n"},
        {{path("x.elf"), "-o", out}, "the name of " + path("x.elf") + " doesn't tell its format\n"},
        {{a, "-o", path("out")}, "the name of " + path("out") + " doesn't tell its format\n"},
        {{a, "-o", out, "-Felf"}, "unknown format elf\n"},
        {{a, "-Hmd5"}, "unknown checksum md5\n"},
        {{a, "-R20-10", "-o", out}, "'20-10' isn't a range, FIRST-LAST\n"},
        {{a, "-R20", "-o", out}, "'20' isn't a range, FIRST-LAST\n"},
        {{a, "-f100", "-o", out}, "'100' doesn't fit a byte\n"},
        {{a, "-fxy", "-o", out}, "'xy' has a malformed number\n"},
        {{a, "-R0-FFFFFFFF", "-f0", "-o", out}, "the range to fill is too long\n"},
        {{"-c", a}, "two files have to be named\n"},
    };
    for (const auto& c : cases)
        EXPECT_EQ(run(kxc, "kxc", c.words), c.message);
    EXPECT_FALSE(fs::exists(out));
}

TEST_F(UtilityTools, KmhMakesDefinitions)
{
    make("timers.xml",
         "<Root><RegisterGroup name=\"Timer A\" start=\"0x160\">"
         "<Register name=\"TACTL\" start=\"+0\" size=\"2\"/>"
         "<Register name=\"TAR\" start=\"+16\" size=\"2\" access=\"ReadOnly\"/>"
         "</RegisterGroup></Root>");
    const std::string map =
        make("map.xml",
             "<Root>\n<MemorySegment name=\"RAM\" start=\"0x200\" size=\"512\"/>\n"
             "<Register name=\"IE1\" start=\"0\">\n"
             "<BitField name=\"WDT\" start=\"4\" size=\"2\">\n"
             "<Enum name=\"ON\" start=\"2\"/></BitField></Register>\n"
             "<Register name=\"banked\" start=\"(1)\"/>\n"
             "<Import filename=\"timers.xml\"/></Root>\n");
    EXPECT_EQ(run(kmh, "kmh", {map, "-o", path("map.h")}), "");
    EXPECT_EQ(contents("map.h"),
              "/* Made by kmh from map.xml; changes would be lost. */\n\n"
              "#ifndef map_h\n#define map_h\n\n"
              "#define RAM_START 0x0200\n#define RAM_SIZE 0x0200\n"
              "#define IE1 (*(volatile unsigned char *)0x0000)\n"
              "#define IE1_WDT 0x0030\n#define IE1_WDT_ON 0x0020\n"
              "\n/* Timer_A */\n"
              "#define TACTL (*(volatile unsigned short *)0x0160)\n"
              "#define TAR (*(const volatile unsigned short *)0x0170)\n\n#endif\n");
}

TEST_F(UtilityTools, KmhLocatesFaults)
{
    const std::pair<const char*, const char*> cases[] = {
        {"<Root>\n<MemorySegment name=\"RAM\"/></Root>",
         "(2): error: segment without name, start and size\n"},
        {"<Root><Register start=\"1\"/></Root>", "(1): error: register without name and start\n"},
        {"<Root><Register name=\"R\" start=\"1\" size=\"3\"/></Root>",
         "(1): error: register 'R' isn't of 1, 2 or 4 bytes\n"},
        {"<Root><BitField name=\"B\" start=\"0\"/></Root>",
         "(1): error: bit field outside of a register\n"},
        {"<Root><Register name=\"R\" start=\"1\"><BitField name=\"B\" "
         "start=\"32\"/></Register></Root>",
         "(1): error: bit field without name or with bits that a register doesn't have\n"},
        {"<Root><Enum name=\"E\" start=\"0\"/></Root>",
         "(1): error: value outside of a bit field\n"},
        {"<Root><Import/></Root>", "(1): error: import without filename\n"},
    };
    for (const auto& [text, message] : cases) {
        const std::string map = make("bad.xml", text);
        EXPECT_EQ(run(kmh, "kmh", {map, "-o", path("bad.h")}), map + message);
    }
    EXPECT_NE(run(kmh, "kmh", {make("bad.xml", "<Root>"), "-o", path("bad.h")})
                  .find("bad.xml(1): error: "),
              std::string::npos);
    const std::string endless = make("a.xml", "<Root><Import filename=\"a.xml\"/></Root>");
    EXPECT_EQ(run(kmh, "kmh", {endless, "-o", path("bad.h")}),
              endless + "(1): error: files import each other too deeply\n");
    EXPECT_FALSE(fs::exists(path("bad.h")));
}

} // namespace
