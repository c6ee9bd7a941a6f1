#include "FailureMessage.h"
#include "FakeTarget.h"

#include <gtest/gtest.h>

namespace {

using Lines = std::vector<std::string>;

class TargetLoadingTest : public testing::Test {
protected:
    FakeTargetHost host;
    FakeTarget target{&host};
    FakeMemory& memory = target.code;
    FakeLoadFile file;

    std::vector<unsigned char> bytes(unsigned length, unsigned char value = 0x11)
    {
        return std::vector<unsigned char>(length, value);
    }
    /// What was done since the last question.
    Lines done()
    {
        Lines result;
        result.swap(memory.done);
        return result;
    }
};

} // namespace

TEST_F(TargetLoadingTest, AFileIsErasedProgrammedAndVerifiedInBlocks)
{
    file.add(0x1000, bytes(0x180), "CODE");
    file.add(0x1180, bytes(0x20));
    file.addZeros(0x2000, 0x100);
    target.loadBegin();
    target.eraseLoadFile(&file, "a.hex", false, false);
    EXPECT_EQ(done(), (Lines{"erase 1000 180", "erase 2000 100"}))
        << "the second section lies in the segment that was erased";
    EXPECT_EQ(host.lines,
              (Lines{"[c100] Erasing \"a.hex\" to Fake", "bar Erasing",
                     "Erasing 384 bytes of CODE addresses 1000 - 117f",
                     "Erasing 32 bytes of addresses 1180 - 119f",
                     "Erasing 256 bytes of addresses 2000 - 20ff", "[]"}));
    EXPECT_EQ(host.at, 0x2A0);
    EXPECT_EQ(host.end, 0x2A0);
    host.lines.clear();

    target.downloadLoadFile(&file, "a.hex", false, false);
    EXPECT_EQ(done(),
              (Lines{"write 1000 100", "write 1100 80", "write 1180 20", "fill 2000 80",
                     "fill 2080 80"}));
    EXPECT_EQ(host.lines.front(), "[c100] Downloading \"a.hex\" to Fake");
    EXPECT_EQ(host.lines[2], "Programming 384 bytes of CODE addresses 1000 - 117f");
    EXPECT_EQ(host.at, 0x2A0);
    target.loadEnd();
    EXPECT_EQ(target.begins, 1);
    EXPECT_EQ(target.ends, 1);

    host.lines.clear();
    EXPECT_TRUE(target.verifyLoadFile(&file, "a.hex", false, false));
    EXPECT_EQ(done().size(), 4u);
    EXPECT_EQ(host.lines.front(), "[c100] Verifying \"a.hex\" on Fake");
    memory.bytes[0x1080] = 0;
    host.lines.clear();
    EXPECT_FALSE(target.verifyLoadFile(&file, "a.hex", false, false));
    EXPECT_EQ(done(), (Lines{"verify 1000 100"})) << "the first mismatch stops all";
    EXPECT_EQ(host.lines[host.lines.size() - 2], "Verify failed (104)");
    EXPECT_EQ(host.at, 0x2A0);

    host.lines.clear();
    LoadFileSections uploaded;
    target.uploadLoadFile(&file, "a.hex", uploaded);
    EXPECT_EQ(host.lines[2], "uploading section CODE: size 0x180, addr 0x1000");
    EXPECT_EQ(host.lines[host.lines.size() - 2], "Upload complete (100)");
    ASSERT_EQ(uploaded.sections().size(), 3u);
    EXPECT_EQ(uploaded.sections()[0]->data(false)[0x80], 0);
    EXPECT_EQ(uploaded.sections()[2]->data(false)[0], 0);
}

TEST_F(TargetLoadingTest, TheLastBlockIsMarkedForData)
{
    file.add(0x1000, bytes(0x180));
    target.downloadLoadFile(&file, "a", false, false);
    EXPECT_EQ(done(), (Lines{"write 1000 100", "last 1100 80"}));
}

TEST_F(TargetLoadingTest, ADifferentialLoadTouchesOnlyWhatDiffers)
{
    file.add(0x1000, bytes(0x600));
    std::fill_n(memory.bytes.begin() + 0x1000, 0x600, static_cast<unsigned char>(0x11));
    const auto load = [&] {
        target.loadBegin();
        target.eraseLoadFile(&file, "a", false, true);
        const Lines erased = done();
        target.downloadLoadFile(&file, "a", false, true);
        const Lines written = done();
        EXPECT_EQ(host.at, 0x600) << "the bar ends at its end";
        const bool same = target.verifyLoadFile(&file, "a", false, true);
        target.loadEnd();
        EXPECT_TRUE(same);
        return std::make_pair(erased, written);
    };
    auto [erased, written] = load();
    EXPECT_EQ(erased.size(), 6u) << "compared in blocks, nothing erased";
    EXPECT_TRUE(std::all_of(erased.begin(), erased.end(),
                            [](const std::string& line) { return line.starts_with("verify"); }));
    EXPECT_TRUE(written.empty());
    EXPECT_TRUE(done().empty()) << "and nothing is left to be verified";

    memory.bytes[0x1250] = 0;
    std::tie(erased, written) = load();
    EXPECT_NE(std::find(erased.begin(), erased.end(), "erase 1200 200"), erased.end());
    EXPECT_EQ(written, (Lines{"write 1200 100", "last 1300 100"}));
    EXPECT_EQ(memory.bytes[0x1250], 0x11);

    done();
    host.differential = false;
    target.eraseLoadFile(&file, "a", false, true);
    EXPECT_EQ(done(), (Lines{"erase 1000 200", "erase 1200 200", "erase 1400 200"}));
}

TEST_F(TargetLoadingTest, WhatIsErasedIsRememberedInASession)
{
    file.add(0x1000, bytes(0x100));
    target.loadBegin();
    target.eraseAll();
    EXPECT_EQ(done(), (Lines{"erase all 0 0"}));
    EXPECT_EQ(host.lines,
              (Lines{"[c100] Erasing All Memory", "bar Erasing entire FLASH memory", "[]"}));
    target.eraseLoadFile(&file, "a", false, false);
    EXPECT_TRUE(done().empty());
    target.loadEnd();
    target.eraseLoadFile(&file, "a", false, false);
    EXPECT_EQ(done(), (Lines{"erase 1000 100"})) << "a new session knows nothing";

    memory.eraseRequired = false;
    target.eraseLoadFile(&file, "a", false, false);
    EXPECT_TRUE(done().empty()) << "memory that needs no erase";
}

TEST_F(TargetLoadingTest, SessionsNestAndEndOnEveryRoad)
{
    target.loadBegin();
    target.loadBegin();
    target.loadEnd();
    EXPECT_EQ(target.ends, 0);
    target.loadEnd();
    EXPECT_EQ(target.ends, 1);
    target.endFails = true;
    target.loadBegin();
    EXPECT_EQ(messageOf([&] { target.loadEnd(); }), "cannot release");
    target.endFails = false;
    target.loadBegin();
    target.loadEnd();
    EXPECT_EQ(target.begins, 3) << "the failed end has reduced the nesting";

    file.add(0x1000, bytes(0x100));
    memory.fail = true;
    memory.failOn = "erase";
    host.lines.clear();
    EXPECT_EQ(messageOf([&] { target.eraseLoadFile(&file, "a", false, false); }), "the wire broke");
    EXPECT_EQ(host.lines.back(), "[]");
    EXPECT_EQ(host.lines[host.lines.size() - 2], "Erase failed (104)");
    EXPECT_EQ(target.begins, target.ends);
}

TEST_F(TargetLoadingTest, CancellingEndsAnOperationWithItsName)
{
    file.add(0x1000, bytes(0x400));
    const struct {
        const char* text;
        std::function<void()> run;
    } operations[] = {
        {"Erase cancelled", [&] { target.eraseLoadFile(&file, "a", false, false); }},
        {"Download cancelled", [&] { target.downloadLoadFile(&file, "a", false, false); }},
        {"Verify cancelled", [&] { target.verifyLoadFile(&file, "a", false, false); }},
        {"Lock cancelled", [&] { target.lockBytes(&memory, 0x1000, 0x400); }},
        {"Unlock cancelled", [&] { target.unlockBytes(&memory, 0x1000, 0x400); }},
        {"Erase cancelled", [&] { target.eraseBytes(&memory, nullptr, 0x1000, 0x400); }},
    };
    std::fill(memory.bytes.begin(), memory.bytes.end(), static_cast<unsigned char>(0x11));
    for (const auto& operation : operations) {
        SCOPED_TRACE(operation.text);
        host.lines.clear();
        host.questionsUntilCancel = 0;
        EXPECT_EQ(messageOf(operation.run), operation.text);
        EXPECT_EQ(host.lines[host.lines.size() - 2], std::string(operation.text) + " (104)");
        EXPECT_EQ(host.lines.back(), "[]");
        EXPECT_EQ(target.begins, target.ends);
        std::fill(memory.bytes.begin(), memory.bytes.end(), static_cast<unsigned char>(0x11));
    }
    host.questionsUntilCancel = -1;
    target.eraseLoadFile(&file, "a", false, false);
}

TEST_F(TargetLoadingTest, RangesAndWholeMemories)
{
    AddressRanges erased;
    erased.add(0x1000, 0x11FF, true);
    target.eraseBytes(&memory, &erased, 0x1100, 0x300);
    EXPECT_EQ(done(), (Lines{"erase 1200 200"}));
    EXPECT_EQ(host.lines,
              (Lines{"[c100] Erasing Memory Range", "bar Erasing",
                     "Erasing 768 bytes of addresses 1100 - 13ff", "[]"}));
    host.lines.clear();
    target.lockBytes(&memory, 0x1000, 0x400);
    EXPECT_EQ(done(), (Lines{"lock 1000 300", "lock 1300 100"}));
    EXPECT_EQ(host.lines,
              (Lines{"[c100] Locking Memory Range", "bar Locking",
                     "Locking 1 KB of addresses 1000 - 13ff", "[]"}));
    host.lines.clear();
    target.hasEeprom = true;
    target.lockAll();
    EXPECT_EQ(host.lines,
              (Lines{"[c100] Locking All Memory", "bar Locking entire FLASH memory",
                     "bar Locking entire EEPROM memory", "[]"}));
    host.lines.clear();
    target.unlockAll(&memory, QStringLiteral("Info"));
    EXPECT_EQ(host.lines,
              (Lines{"[c100] Unlocking All Memory", "bar Unlocking entire Info memory", "[]"}));
}

TEST_F(TargetLoadingTest, AnEepromHasItsOwnSections)
{
    file.add(0x1000, bytes(0x10));
    EXPECT_TRUE((target.downloadLoadFile(&file, "a", false, false),
                 target.verifyLoadFile(&file, "a", false, false)))
        << "without such sections no EEPROM is needed";
    file.addEeprom(0x10, bytes(0x20));
    target.hasEeprom = true;
    target.downloadLoadFile(&file, "a", false, false);
    EXPECT_EQ(target.eeprom.done, (Lines{"last 10 20"}));
    EXPECT_TRUE(target.verifyLoadFile(&file, "a", false, false));
}

TEST_F(TargetLoadingTest, SectionsHaveToFit)
{
    file.add(0x1000, bytes(0x100));
    target.checkLoadFileFits(&file);
    memory.addressRanges().add(0x1000, 0x10EF, false);
    EXPECT_EQ(messageOf([&] { target.checkLoadFileFits(&file); }),
              "The 0x00001000 - 0x000010FF load section does not fit the target description.");
    memory.addressRanges().add(0x1000, 0x10FF, true);
    target.checkLoadFileFits(&file);
}
