#include "packages/archive/Archive2.h"
#include "packages/archive/CompressedFile.h"
#include "packages/archive/Crc32.h"

#include <gtest/gtest.h>

#include <unistd.h>

#include <filesystem>
#include <fstream>

namespace fs = std::filesystem;

namespace {

class ArchiveTest : public testing::Test {
protected:
    void SetUp() override
    {
        folder = fs::path(testing::TempDir()) / ("archive-" + std::to_string(::getpid()));
        fs::remove_all(folder);
        fs::create_directories(folder);
    }

    std::string path(const std::string& name) const { return (folder / name).string(); }

    std::string make(const std::string& name, const std::string& bytes) const
    {
        std::ofstream(path(name), std::ios::binary) << bytes;
        return path(name);
    }

    std::string contents(const std::string& name) const
    {
        std::ifstream in(path(name), std::ios::binary);
        return {std::istreambuf_iterator<char>(in), {}};
    }

    static int open(Archive2& archive, const std::string& file)
    {
        return archive.open(std::fopen(file.c_str(), "rb"), file.c_str());
    }

    static std::string member(Archive2& archive, const char* name)
    {
        std::vector<unsigned char> bytes;
        ArchiveChunk2* chunk = archive.findMember(name);
        if (chunk == nullptr || !archive.readMember(*chunk, bytes))
            return "(unreadable)";
        return {bytes.begin(), bytes.end()};
    }

    fs::path folder;
};

std::string word(std::uint32_t value)
{
    std::string bytes;
    for (int i = 0; i < 4; ++i)
        bytes += static_cast<char>(value >> 8 * i);
    return bytes;
}

/// A member's header, laid down from the format's description.
std::string header(std::string name, std::uint32_t offset, std::uint32_t length, bool readOnly,
                   std::uint32_t time)
{
    name.resize(1024, '\0');
    return name + word(offset) + word(length) + std::string(readOnly ? "\1" : "\0", 1)
        + std::string(3, '\0') + word(time);
}

TEST_F(ArchiveTest, FileIsLaidOutAsDescribed)
{
    const std::string magic("\xC8\xC3\x52\x41", 4);
    Archive2 empty;
    ASSERT_EQ(empty.write(path("empty").c_str()), 0);
    EXPECT_EQ(contents("empty"), magic + word(0));

    const std::string source = make("source", "xxHELLO");
    Archive2 archive;
    archive.addMember(source.c_str(), "a/b", 2, 5, true, 1000);
    archive.addMember(source.c_str(), std::string(1030, 'n').c_str(), 0, 2, false, -1);
    ASSERT_EQ(archive.write(path("two").c_str()), 0);
    EXPECT_EQ(contents("two"),
              magic + word(2) + header("a/b", 8 + 2080, 5, true, 1000)
                  + header(std::string(1024, 'n'), 8 + 2085, 2, false, 0xFFFFFFFF) + "HELLO"
                  + "xx");
    EXPECT_EQ(archive.members()[0].offset, 2) << "the memory copy keeps its old offset";
}

TEST_F(ArchiveTest, RewrittenFromItselfAndNewFiles)
{
    const std::string first = make("first", std::string(3000, 'f'));
    const std::string second = make("second", "second");
    fs::permissions(first, fs::perms::owner_read);
    Archive2 made;
    ASSERT_TRUE(addFileToPackage(first.c_str(), "one", made));
    ASSERT_TRUE(addFileToPackage(first.c_str(), "empty", made));
    EXPECT_FALSE(addFileToPackage(path("absent").c_str(), "none", made));
    EXPECT_FALSE(addFileToPackage(folder.c_str(), "folder", made));
    made.findMember("empty")->length = 0;
    ASSERT_EQ(made.write(path("old").c_str()), 0);

    Archive2 kept;
    ASSERT_EQ(open(kept, path("old")), 0);
    ASSERT_TRUE(addFileToPackage(second.c_str(), "two", kept));
    ASSERT_TRUE(addFileToPackage(second.c_str(), "one", kept)) << "names may repeat";
    ASSERT_EQ(kept.write(path("new").c_str()), 0);

    Archive2 read;
    ASSERT_EQ(open(read, path("new")), 0);
    ASSERT_EQ(read.members().size(), 4u);
    EXPECT_EQ(member(read, "one"), std::string(3000, 'f'));
    EXPECT_EQ(member(read, "empty"), "");
    EXPECT_EQ(member(read, "two"), "second");
    EXPECT_TRUE(read.findMember("one")->readOnly);
    EXPECT_FALSE(read.findMember("two")->readOnly);
    EXPECT_GT(read.findMember("two")->modificationTime, 1000000000);
    EXPECT_EQ(read.findMember("three"), nullptr);

    read.remove();
    EXPECT_EQ(read.file(), nullptr);
    EXPECT_FALSE(fs::exists(path("new")));
    EXPECT_EQ(read.fileName(), "");
}

TEST_F(ArchiveTest, OpenCodes)
{
    const std::string magic("\xC8\xC3\x52\x41", 4);
    const struct {
        const char* what;
        std::string bytes;
        int code;
    } cases[] = {
        {"nothing", "", 1},
        {"short header", magic + "\0\0\0", 1},
        {"other magic", "PK\3\4" + word(0), 1},
        {"negative count", magic + word(0x80000000), 1},
        {"no members", magic + word(0), 0},
        {"cut directory", magic + word(1) + std::string(1039, 'a'), 2},
        {"count beyond the file", magic + word(0x7FFFFFFF) + std::string(1040, 'a'), 2},
        {"bytes beyond the file are no matter here", magic + word(1) + header("m", 1, 99, false, 0),
         0},
    };
    for (const auto& c : cases) {
        Archive2 archive;
        EXPECT_EQ(open(archive, make("case", c.bytes)), c.code) << c.what;
    }
    Archive2 none;
    EXPECT_EQ(none.open(nullptr, "none"), 0);
    EXPECT_TRUE(none.members().empty());
}

TEST_F(ArchiveTest, HostileMembersCantBeRead)
{
    const std::string magic("\xC8\xC3\x52\x41", 4);
    const std::string file = make("bad",
                                  magic + word(3) + header("far", 0x7FFFFFFF, 0x7FFFFFFF, false, 0)
                                      + header("before", 0xFFFFFFF0, 4, false, 0)
                                      + header("negative", 8, 0xFFFFFFFF, false, 0));
    Archive2 archive;
    ASSERT_EQ(open(archive, file), 0);
    for (const char* name : {"far", "before", "negative"})
        EXPECT_EQ(member(archive, name), "(unreadable)");
    EXPECT_EQ(archive.write(path("copy").c_str()), 3);
}

TEST_F(ArchiveTest, WriteErrorsNameTheFile)
{
    Archive2 archive;
    EXPECT_EQ(archive.write(path("no/where").c_str()), 3);
    EXPECT_EQ(archive.errorText(), "FATAL: write error on " + path("no/where") + ".\n");

    archive.addMember(path("absent").c_str(), "m", 0, 1, false, 0);
    EXPECT_EQ(archive.write(path("out").c_str()), 3);
    EXPECT_EQ(archive.errorText(), "FATAL: read error on " + path("absent") + ".\n");
    EXPECT_TRUE(fs::exists(path("out"))) << "the partly written file stays";

    Archive2 shortSource;
    shortSource.addMember(make("three", "abc").c_str(), "m", 1, 3, false, 0);
    EXPECT_EQ(shortSource.write(path("out").c_str()), 3);
    EXPECT_EQ(shortSource.errorText(), "FATAL: read error on " + path("three") + ".\n");
}

TEST_F(ArchiveTest, CompressedWrapper)
{
    const auto q = [&](const char* name) { return QString::fromStdString(path(name)); };
    for (const std::string& bytes : {std::string(), std::string("x"), std::string(100000, 'z')}) {
        make("plain", bytes);
        ASSERT_TRUE(QTx::compressFile(q("plain"), q("packed")));
        EXPECT_TRUE(QTx::isCompressedFile(q("packed")));
        EXPECT_EQ(contents("packed").substr(0, 8), std::string("\x7A\xF4\x31\xB2\x01\0\0\0", 8));
        ASSERT_TRUE(QTx::decompressFile(q("packed"), q("back")));
        EXPECT_EQ(contents("back"), bytes);
    }
    // The stream behind header and big-endian length is plain zlib.
    EXPECT_EQ(contents("packed").substr(8, 6), std::string("\x00\x01\x86\xA0\x78\x9C", 6));
    EXPECT_FALSE(QTx::compressFile(q("absent"), q("out")));
    EXPECT_FALSE(QTx::decompressFile(q("absent"), q("out")));
    EXPECT_FALSE(QTx::compressFile(q("plain"), q("no/where")));
}

TEST_F(ArchiveTest, WreckedWrappers)
{
    const std::string head("\x7A\xF4\x31\xB2\x01\0\0\0", 8);
    const auto q = [&](const char* name) { return QString::fromStdString(path(name)); };
    const struct {
        std::string bytes;
        bool looksCompressed;
    } cases[] = {
        {"", false},
        {head.substr(0, 7), false},
        {head.substr(0, 7) + "\1", false},
        {head, true},
        {head + std::string("\0\0\0", 3), true},
        {head + std::string("\0\0\0\5abcdef", 10), true},
        {head + std::string("\xFF\xFF\xFF\xFFx\x9C\x03\0\0\0\0\1", 12), true},
    };
    for (const auto& c : cases) {
        make("bad", c.bytes);
        EXPECT_EQ(QTx::isCompressedFile(q("bad")), c.looksCompressed);
        EXPECT_FALSE(QTx::decompressFile(q("bad"), q("out")));
    }
    EXPECT_FALSE(fs::exists(path("out")));
}

TEST(Crc32, PublishedCheckValue)
{
    // The catalogue of parametrised CRC algorithms gives this for CRC-32/BZIP2.
    const std::string digits = "123456789";
    EXPECT_EQ(calc_crc32(reinterpret_cast<const unsigned char*>(digits.data()), 9), 0xFC891918u);
    EXPECT_EQ(calc_crc32(nullptr, 0), 0u);
}

} // namespace
