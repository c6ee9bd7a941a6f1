#include <gtest/gtest.h>

#include <array>
#include <cstdio>
#include <filesystem>
#include <fstream>

namespace fs = std::filesystem;

namespace {

struct Outcome {
    int status;
    std::string output; ///< both streams
};

Outcome gantry(const std::string& arguments)
{
    std::FILE* pipe = popen((GANTRY_ROOT_TREE "/bin/gantry " + arguments + " 2>&1").c_str(), "r");
    std::string output;
    std::array<char, 4096> block;
    while (const std::size_t size = std::fread(block.data(), 1, block.size(), pipe))
        output.append(block.data(), size);
    return {WEXITSTATUS(pclose(pipe)), output};
}

class ConvertTest : public testing::Test {
protected:
    void SetUp() override
    {
        fs::remove_all(folder);
        fs::create_directories(folder);
        make("in.hex", ":02F0000031409D\n:01F0040055B6\n:040000050000F00007\n:00000001FF\n");
        make("in.bin", "1@");
    }
    void make(const std::string& name, const std::string& bytes) const
    {
        std::ofstream(folder / name, std::ios::binary) << bytes;
    }
    std::string contents(const std::string& name) const
    {
        std::ifstream in(folder / name, std::ios::binary);
        return {std::istreambuf_iterator<char>(in), {}};
    }
    Outcome convert(const std::string& in, const std::string& out,
                    const std::string& options = "") const
    {
        return gantry("convert " + (folder / in).string() + " " + (folder / out).string() + " "
                      + options);
    }

    const fs::path folder = fs::path(testing::TempDir()) / "convert";
};

TEST_F(ConvertTest, BetweenFormats)
{
    const struct {
        const char* in;
        const char* out;
        const char* options;
        std::string text;
    } cases[] = {
        {"in.hex", "a.txt", "", "@0F000\n31 40\n@0F004\n55\nq\n"},
        {"in.hex", "a.s19", "", "S0030000FC\nS105F000314099\nS104F00455B2\nS903F0000C\n"},
        {"in.hex", "a.lst", "--fill 255", "0000F000 31 40 FF FF 55\n"},
        {"in.hex", "a.bin", "", std::string("1@\0\0U", 5)},
        {"in.hex", "a.data", "--to bin --fill 0xff", "1@\xFF\xFFU"},
        {"in.bin", "b.txt", "--address 0x1F000", "@1F000\n31 40\nq\n"},
        {"in.bin", "b.s19", "--address 61440", "S0030000FC\nS105F000314099\nS9030000FC\n"},
        {"in.hex", "c.hex", "--from bin --to hex", ""},
    };
    for (const auto& c : cases) {
        const Outcome outcome = convert(c.in, c.out, c.options);
        EXPECT_EQ(outcome.status, 0) << outcome.output;
        EXPECT_EQ(outcome.output, "");
        if (!c.text.empty()) {
            EXPECT_EQ(contents(c.out), c.text) << c.out;
        }
    }
}

TEST_F(ConvertTest, FailuresSayWhyAndLeaveNoOutput)
{
    make("bad.hex", ":02F0000031409E\n");
    make("far.s19", "S3060010000000E9\n");
    const struct {
        const char* in;
        const char* out;
        const char* options;
        int status;
        const char* says;
    } cases[] = {
        {"bad.hex", "x.bin", "", 1, "gantry: invalid checksum : line 1\n"},
        {"none.hex", "x.bin", "", 1, "gantry: cannot open "},
        {"far.s19", "x.txt", "", 1, "gantry: addresses above 0xFFFFF can't be written as tihex\n"},
        {"in.hex", "x.dat", "", 2, "doesn't tell its format; give it with --to"},
        {"in.dat", "x.hex", "", 2, "doesn't tell its format; give it with --from"},
        {"in.hex", "x.kvx", "", 2, "format kvx can only be read"},
        {"in.tek", "x.hex", "", 2, "format tek can only be written"},
        {"in.hex", "x.bin", "--to elf", 2, "unknown format elf"},
        {"in.hex", "x.bin", "--address 1", 2, "--address has no use"},
        {"in.bin", "x.hex", "--address 1G", 2, "--address 1G isn't a number"},
        {"in.hex", "x.bin", "--fill 256", 2, "--fill 256 isn't a number from 0 to 255"},
        {"in.hex", "x.bin", "--fill", 2, "option --fill needs a value"},
        {"in.hex", "x.bin", "--wrong 1", 2, "unknown option --wrong"},
        {"in.hex", "x.bin", "more", 2, "convert takes an input and an output file"},
    };
    for (const auto& c : cases) {
        const Outcome outcome = convert(c.in, c.out, c.options);
        EXPECT_EQ(outcome.status, c.status) << c.says;
        EXPECT_NE(outcome.output.find(c.says), std::string::npos) << outcome.output;
        EXPECT_FALSE(fs::exists(folder / c.out)) << c.says;
    }
}

} // namespace
