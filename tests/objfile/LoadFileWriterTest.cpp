#include "LoadFileTestSupport.h"

#include "objfile/loadfiles/CodeBuffer.h"
#include "objfile/loadfiles/LoadFileWriter.h"

#include <cstdlib>

namespace {

struct Format {
    const char* writer;
    const char* reader;  ///< null where there is none
    const char* srecCat; ///< the name that srec_cat knows it by
};

constexpr Format Formats[] = {
    {"hex", "ihex", "-intel"},
    {"srec", "srec", "-motorola"},
    {"txt", "tihex", "-ti-txt"},
    {"tek", nullptr, "-tektronix-extended"},
};

const std::vector<ByteRun>& image()
{
    static const std::vector<ByteRun> runs = [] {
        std::vector<ByteRun> made = {{0x0200, {1}}, {0x1100, {}}, {0xFFF8, {}}, {0x1F000, {}}};
        for (unsigned i = 0; i < 300; ++i)
            made[1].bytes.push_back(static_cast<unsigned char>(i * 7));
        for (unsigned i = 0; i < 24; ++i) // over the boundary of 64 KB
            made[2].bytes.push_back(static_cast<unsigned char>(0xFF - i));
        made[3].bytes = {0xDE, 0xAD, 0xBE};
        return made;
    }();
    return runs;
}

void write(const std::vector<ByteRun>& runs, const char* format, const std::string& path,
           unsigned entry = 0)
{
    const auto buffer = CodeBuffer::make(format, path);
    for (const ByteRun& run : runs) {
        buffer->setAddress(run.address);
        for (const unsigned char byte : run.bytes)
            buffer->addByte(byte);
    }
    buffer->endRecord(entry);
}

bool srecCat(const std::string& arguments)
{
    return std::system(("srec_cat " + arguments).c_str()) == 0;
}

TEST(CodeBuffer, RecordsOfEachFormat)
{
    const std::vector<ByteRun> runs = {{0x1000, {1, 2}}, {0x12345, {0xAB}}};
    const struct {
        const char* format;
        std::string text;
    } cases[] = {
        {"hex",
         ":021000000102EB\n:020000040001F9\n:01234500ABEC\n:0400000500001002E5\n:00000001FF\n"},
        {"srec", "S0030000FC\nS10510000102E7\nS205012345ABE6\nS9031002EA\n"},
        {"lst", "00001000 01 02\n00012345 AB\n"},
        {"txt", "@01000\n01 02\n@12345\nAB\nq\n"},
        {"bin", std::string("\1\2", 2) + std::string(0x11343, '\0') + "\xAB"},
    };
    const ScratchFolder folder("code_buffer");
    for (const auto& c : cases) {
        write(runs, c.format, folder.path("out"), 0x1002);
        EXPECT_EQ(folder.contents("out"), c.text) << c.format;
    }
    EXPECT_EQ(CodeBuffer::make("elf", folder.path("out")), nullptr);
    EXPECT_THROW(CodeBuffer::make("hex", folder.path("no/where")), HException);
}

TEST(CodeBuffer, BreaksOnlyWhereAddressesDo)
{
    const ScratchFolder folder("code_buffer_breaks");
    write({{0x1000, {1}}, {0x1001, {2}}, {0x1003, {3}}}, "txt", folder.path("out"));
    EXPECT_EQ(folder.contents("out"), "@01000\n01 02\n@01003\n03\nq\n");
    write({{0x1000, std::vector<unsigned char>(17, 0xFF)}}, "lst", folder.path("out"));
    EXPECT_EQ(folder.contents("out"),
              "00001000 FF FF FF FF FF FF FF FF FF FF FF FF FF FF FF FF\n00001010 FF\n");
    write({{0xFFFE, {1, 2, 3}}}, "hex", folder.path("out"), 0);
    EXPECT_EQ(folder.contents("out"),
              ":02FFFE000102FE\n:020000040001F9\n:0100000003FC\n:00000001FF\n");
    write({}, "srec", folder.path("out"), 0x123456);
    EXPECT_EQ(folder.contents("out"), "S0030000FC\nS8041234565F\n");
}

TEST(CodeBuffer, BinaryGoesUpFromItsFirstAddress)
{
    const ScratchFolder folder("code_buffer_binary");
    EXPECT_THROW(write({{0x1000, {1}}, {0x0FFF, {2}}}, "bin", folder.path("out")), HException);
    EXPECT_THROW(write({{0, {1}}, {0xF0000000, {2}}}, "bin", folder.path("out")), HException);
    write({{0x1000, {1}}, {0x1004, {2}}, {0x1002, {3}}}, "bin", folder.path("out"));
    EXPECT_EQ(folder.contents("out"), std::string("\1\0\3\0\2", 5));
}

TEST(CodeBuffer, OwnReadersGetBackWhatWasWritten)
{
    const ScratchFolder folder("code_buffer_own");
    for (const Format& format : Formats) {
        if (format.reader == nullptr)
            continue;
        write(image(), format.writer, folder.path("out"), 0x1100);
        const auto file = openLoadFile(folder.path("out"), format.reader);
        EXPECT_EQ(runsOf(*file), image()) << format.writer;
        if (std::string(format.writer) != "txt") {
            EXPECT_EQ(file->entryPoint(), 0x1100u) << format.writer;
        }
    }
    write(image(), "lst", folder.path("out"));
    EXPECT_EQ(runsOf(*openLoadFile(folder.path("out"), "hex")), image());
}

/// An independent reader of what we write: srec_cat turns it into S-records and so into runs.
TEST(CodeBuffer, SrecCatReadsWhatWeWrite)
{
    const ScratchFolder folder("code_buffer_peer");
    for (const Format& format : Formats) {
        write(image(), format.writer, folder.path("out"));
        ASSERT_TRUE(srecCat(folder.path("out") + " " + format.srecCat + " -o " + folder.path("peer")
                            + " -motorola"))
            << format.writer;
        EXPECT_EQ(runsOf(*openLoadFile(folder.path("peer"), "srec")), image()) << format.writer;
    }
    write({{0, image()[1].bytes}}, "bin", folder.path("out"));
    ASSERT_TRUE(srecCat(folder.path("out") + " -binary -o " + folder.path("peer") + " -motorola"));
    EXPECT_EQ(runsOf(*openLoadFile(folder.path("peer"), "srec"))[0].bytes, image()[1].bytes);
}

/// And an independent writer of what we read.
TEST(CodeBuffer, WeReadWhatSrecCatWrites)
{
    const ScratchFolder folder("code_buffer_other_way");
    write(image(), "srec", folder.path("ours"));
    for (const Format& format : Formats) {
        if (format.reader == nullptr)
            continue;
        ASSERT_TRUE(
            srecCat(folder.path("ours") + " -o " + folder.path("peer") + " " + format.srecCat))
            << format.writer;
        EXPECT_EQ(runsOf(*openLoadFile(folder.path("peer"), format.reader)), image())
            << format.writer;
    }
    for (const char* mode : {"-address-length=2", "-address-length=4"}) {
        ASSERT_TRUE(srecCat(folder.path("ours") + " -crop 0 0x10000 -o " + folder.path("peer")
                            + " -motorola " + mode));
        const auto runs = runsOf(*openLoadFile(folder.path("peer"), "srec"));
        ASSERT_EQ(runs.size(), 3u);
        EXPECT_EQ(runs[1], image()[1]);
    }
    ASSERT_TRUE(srecCat(folder.path("ours") + " -crop 0x1100 0x1200 -offset -0x1100 -o "
                        + folder.path("peer") + " -binary"));
    const auto file = openLoadFile(folder.path("peer"), "bin");
    file->setLoadAddress(0x1100);
    EXPECT_EQ(runsOf(*file)[0].bytes,
              std::vector<unsigned char>(image()[1].bytes.begin(), image()[1].bytes.begin() + 256));
}

TEST(LoadFileWriter, SortsAndKeepsTheEntryPoint)
{
    const ScratchFolder folder("load_file_writer");
    const std::string in =
        folder.make("in", ":01200000AA35\n:01100000BB34\n:0400000500001000E7\n:00000001FF\n");
    const auto file = openLoadFile(in, "ihex");
    writeLoadFile(*file, *CodeBuffer::make("srec", folder.path("out")));
    EXPECT_EQ(folder.contents("out"), "S0030000FC\nS1041000BB30\nS1042000AA31\nS9031000EC\n");
}

} // namespace
