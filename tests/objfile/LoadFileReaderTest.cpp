#include "LoadFileTestSupport.h"

namespace {

using Bytes = std::vector<unsigned char>;

struct Reading {
    const char* what;
    const char* type;
    std::string text;
    std::vector<ByteRun> runs;
    long entry = -1; ///< -1 for none
};

/// The checksums were worked out by the formats' published rules.
const std::vector<Reading> Readings = {
    {"contiguous records make one section",
     "ihex",
     ":02100000AABB89\n:01100200CC21\n:00000001FF\n",
     {{0x1000, {0xAA, 0xBB, 0xCC}}}},
    {"a gap starts another",
     "ihex",
     ":01100000AA45\n:01100200CC21\n:00000001FF\n",
     {{0x1000, {0xAA}}, {0x1002, {0xCC}}}},
    {"going back starts another",
     "ihex",
     ":01100200CC21\n:01100000AA45\n:00000001FF\n",
     {{0x1002, {0xCC}}, {0x1000, {0xAA}}}},
    {"extended linear address",
     "ihex",
     ":020000040001F9\n:01001000559A\n:00000001FF\n",
     {{0x10010, {0x55}}}},
    {"extended segment address, lower case, end of line of another system",
     "ihex",
     ":020000021000ec\r\n:01001000559a\r\n:00000001ff\r\n",
     {{0x10010, {0x55}}}},
    {"both extended addresses add up",
     "ihex",
     ":020000021000EC\n:020000040001F9\n:01001000559A\n:00000001FF\n",
     {{0x20010, {0x55}}}},
    {"a record may cross 64 KB",
     "ihex",
     ":02FFFF001122CD\n:020000040001F9\n:0100010033CB\n:00000001FF\n",
     {{0xFFFF, {0x11, 0x22, 0x33}}}},
    {"start addresses", "ihex", ":0400000312345678E5\n:00000001FF\n", {}, 0x12345678},
    {"the last start address counts",
     "ihex",
     ":0400000312345678E5\n:040000050000F00007\n:00000001FF\n",
     {},
     0xF000},
    {"an unknown type that adds up", "ihex", ":00000006FA\n:00000001FF\n", {}},
    {"an empty record starts no section", "ihex", ":00100000F0\n:00000001FF\n", {}},
    {"what stands behind the end isn't read", "ihex", ":00000001FF\nrubbish\n", {}},
    {"the longest record",
     "ihex",
     ":FF000000" + std::string(510, '0') + "01\n:00000001FF\n",
     {{0, Bytes(255, 0)}}},

    {"each address width",
     "srec",
     "S0030000FC\nS1041000AA41\nS205012000BB1E\nS30600012001CC0B\n",
     {{0x1000, {0xAA}}, {0x12000, {0xBB, 0xCC}}}},
    {"a matching count",
     "srec",
     "S1041000AA41\nS1041001BB2F\nS5030002FA\n",
     {{0x1000, {0xAA, 0xBB}}}},
    {"start address of two bytes", "srec", "S9031000EC\n", {}, 0x1000},
    {"start address of three bytes", "srec", "S804012000DA\n", {}, 0x12000},
    {"start address of four bytes", "srec", "S70500012000D9\n", {}, 0x12000},
    {"a header with text", "srec", "S00600004844521B\nS1041000aa41\n", {{0x1000, {0xAA}}}},
    {"types without a meaning", "srec", "S401FE\nS601FE\n", {}},
    {"nothing at all", "srec", "", {}},

    {"lines of bytes",
     "tihex",
     "@F000\n31 40 00 03\n@FFFE\n00 F0\nq\n",
     {{0xF000, {0x31, 0x40, 0, 3}}, {0xFFFE, {0, 0xF0}}}},
    {"an address that goes on joins",
     "tihex",
     "@F000\n31 40\n@F002\n00 03 \nq\n",
     {{0xF000, {0x31, 0x40, 0, 3}}}},
    {"without an address from 0", "tihex", "01 02\nq", {{0, {1, 2}}}},
    {"20-bit address, lower case, other end of line",
     "tihex",
     "@1f000 x\r\nab cd\r\nq\r\n",
     {{0x1F000, {0xAB, 0xCD}}}},
    {"any separator", "tihex", "01,02;03\nq\n", {{0, {1, 2, 3}}}},
    {"empty lines", "tihex", "\n@F000\n\n31 40\nq\n", {{0xF000, {0x31, 0x40}}}},

    {"listing lines",
     "hex",
     "0000F000 31 40\n0000F002 00\n0001F000 AB\n",
     {{0xF000, {0x31, 0x40, 0}}, {0x1F000, {0xAB}}}},
    {"an address alone", "hex", "0000F000\n", {}},
    {"an unfinished last byte is left out", "hex", "0000F000 31 40", {{0xF000, {0x31}}}},
};

TEST(LoadFileReader, SectionsAndEntryPoints)
{
    const ScratchFolder folder("load_file_reader");
    for (const Reading& c : Readings) {
        const auto file = openLoadFile(folder.make("in", c.text), c.type);
        EXPECT_EQ(runsOf(*file), c.runs) << c.what;
        EXPECT_EQ(file->hasEntryPoint(), c.entry >= 0) << c.what;
        if (c.entry >= 0) {
            EXPECT_EQ(file->entryPoint(), static_cast<unsigned long>(c.entry)) << c.what;
        }
        EXPECT_TRUE(file->hasLoadAddress()) << c.what;
    }
}

struct Failure {
    const char* what;
    const char* type;
    std::string text;
    const char* message;
};

const std::vector<Failure> Failures = {
    {"no record mark", "ihex", ":00000006FA\n00000001FF\n",
     "missing record mark in hex file : line 2"},
    {"an empty line", "ihex", "\n", "missing record mark in hex file : line 1"},
    {"no end record", "ihex", ":01100000AA45\n", "invalid end of file in hex file : line 2"},
    {"nothing at all", "ihex", "", "invalid end of file in hex file : line 1"},
    {"wrong checksum", "ihex", ":01100000AA46\n", "invalid checksum : line 1"},
    {"an unknown type", "ihex", ":011000065594\n", "invalid checksum : line 1"},
    {"record too short", "ihex", ":02100000AA44\n", "invalid ASCII encoded byte : line 1"},
    {"half a byte", "ihex", ":0", "invalid ASCII encoded byte : line 1"},
    {"no digit", "ihex", ":0G", "invalid ASCII encoded byte : line 1"},

    {"no S", "srec", "S1041000AA41\n\n", "no leading 'S' character : line 2"},
    {"wrong checksum", "srec", "S1041000AA42\n", "invalid checksum : line 1"},
    {"wrong count", "srec", "S1041000AA41\nS5030002FA\n", "incorrect data record count : line 2"},
    {"shorter than its address", "srec", "S1020000FD\n", "invalid ASCII encoded byte : line 1"},
    {"no count", "srec", "S", "invalid ASCII encoded byte : line 1"},
    {"only a type", "srec", "S1", "invalid ASCII encoded byte : line 1"},
    {"a meaningless type with content", "srec", "S603000AF2\n", "invalid checksum : line 1"},

    {"no q", "tihex", "@F000\n31 40\n", "unexpected end of file : line 3"},
    {"no digit", "tihex", "@F000\n31 4G\nq\n", "invalid ASCII encoded byte : line 2"},
    {"a line beyond the buffer comes in pieces", "tihex", "@0\n" + std::string(63, '0') + "zz\nq\n",
     "invalid ASCII encoded byte : line 3"},
    {"the piece behind the buffer counts as a line", "tihex",
     "@0000" + std::string(58, ' ') + "zz\nq\n", "invalid ASCII encoded byte : line 2"},
    {"no address", "tihex", "@\nq\n", "invalid address : line 1"},
    {"address with other characters", "tihex", "@F00x\nq\n", "invalid address : line 1"},
    {"address of more than 32 bits", "tihex", "@123456789\nq\n", "invalid address : line 1"},

    {"a short line", "hex", "0000F000 31\n0000F00\n", "invalid address : line 2"},
    {"no digits", "hex", "Address: 31\n", "invalid ASCII encoded byte : line 1"},
    {"no blank", "hex", "0000F000:31\n", "invalid seperator : line 1"},
    {"two blanks", "hex", "0000F000  31\n", "invalid ASCII encoded byte : line 1"},
};

std::string messageOf(const std::string& path, const char* type)
{
    try {
        openLoadFile(path, type);
    } catch (const HException& error) {
        return error.message();
    }
    return "(no failure)";
}

TEST(LoadFileReader, FailuresNameTheLine)
{
    const ScratchFolder folder("load_file_failures");
    for (const Failure& c : Failures)
        EXPECT_EQ(messageOf(folder.make("in", c.text), c.type), c.message)
            << c.type << " " << c.what;
}

TEST(LoadFileReader, UnreadableFiles)
{
    const ScratchFolder folder("load_file_unreadable");
    const std::string absent = folder.path("absent");
    for (const char* type : {"bin", "ihex", "srec", "tihex", "hex"}) {
        EXPECT_EQ(messageOf(absent, type), "cannot open " + absent) << type;
        EXPECT_EQ(messageOf(folder.path("."), type), "cannot read " + folder.path(".")) << type;
    }
}

TEST(LoadFileReader, BinaryStandsAtItsLoadAddress)
{
    const ScratchFolder folder("load_file_binary");
    const auto file = openLoadFile(folder.make("in.bin", "abc"), "bin");
    EXPECT_FALSE(file->hasLoadAddress());
    EXPECT_EQ(runsOf(*file), (std::vector<ByteRun>{{0, {'a', 'b', 'c'}}}));
    EXPECT_EQ(file->loadFileSections().sections()[0]->name(), "data");
    file->setLoadAddress(0xF000);
    EXPECT_EQ(runsOf(*file), (std::vector<ByteRun>{{0xF000, {'a', 'b', 'c'}}}));
    EXPECT_FALSE(file->hasEntryPoint());
    file->setEntryPoint(0xF002);
    EXPECT_EQ(file->entryPoint(), 0xF002u);
}

TEST(LoadFileFactory, DetectsTheTwoSpellingsOfEachEnding)
{
    const struct {
        const char* name;
        const char* type;
    } cases[] = {
        {"a.bin", "bin"},   {"a.BIN", "bin"},    {"a.rom", "bin"},   {"a.ROM", "bin"},
        {"a.hex", "ihex"},  {"a.HEX", "ihex"},   {"a.lst", "hex"},   {"a.LST", "hex"},
        {"a.txt", "tihex"}, {"a.TXT", "tihex"},  {"a.srec", "srec"}, {"a.SREC", "srec"},
        {"a.s19", "srec"},  {"a.S19", "srec"},   {"a.HeX", nullptr}, {"a", nullptr},
        {"hex", nullptr},   {"a.hex2", nullptr}, {"a.kvx", "kvx"},   {"a.kvx.hex", "kvx"},
        {"a.KVX", nullptr},
    };
    for (const auto& c : cases)
        EXPECT_STREQ(LoadFileFactory::instance()->detect(c.name), c.type) << c.name;
    EXPECT_EQ(LoadFileFactory::instance()->create("x", "elf"), nullptr);
    EXPECT_EQ(LoadFileFactory::instance()->create("x", nullptr), nullptr);
}

} // namespace
