#include "LoadFileTestSupport.h"

#include "objfile/loadfiles/LoadFileList.h"

namespace {

/// A load file of sections that a test lays out.
class MadeLoadFile : public StandardLoadFile {
public:
    explicit MadeLoadFile(std::vector<ByteRun> runs) : m_runs(std::move(runs)) { }

    bool hasLoadAddress() const override { return true; }
    void setLoadAddress(unsigned long) override { }
    bool createLoadFileSections() override
    {
        for (ByteRun& run : m_runs)
            m_sections.add(std::make_unique<StandardLoadFileSection>(
                "made", run.address, static_cast<unsigned>(run.bytes.size()), run.bytes.data()));
        return !failing;
    }

    bool failing = false;

private:
    std::vector<ByteRun> m_runs;
};

TEST(LoadFileSection, PatchIsACopyOfItsOwn)
{
    unsigned char bytes[] = {1, 2, 3};
    StandardLoadFileSection section("s", 0x1000, 3, bytes);
    EXPECT_EQ(section.data(true), bytes);
    unsigned char* patch = section.createPatch();
    patch[1] = 9;
    EXPECT_EQ(section.createPatch(), patch) << "made once";
    EXPECT_EQ(section.data(true)[1], 9);
    EXPECT_EQ(section.data(false)[1], 2);
    section.clearPatch();
    EXPECT_EQ(section.data(true), bytes);
}

TEST(LoadFileSection, Equality)
{
    unsigned char a[] = {1, 2}, b[] = {1, 2}, c[] = {1, 3};
    const StandardLoadFileSection first("first", 0, 2, a), second("second", 0, 2, b);
    const StandardLoadFileSection bytes("first", 0, 2, c), address("first", 1, 2, a);
    const StandardLoadFileSection length("first", 0, 1, a), none("", 0, 2, nullptr);
    const StandardLoadFileSection noneEither("", 0, 2, nullptr);
    EXPECT_TRUE(first == second);
    EXPECT_FALSE(first == bytes);
    EXPECT_FALSE(first == address);
    EXPECT_FALSE(first == length);
    EXPECT_FALSE(first == none);
    EXPECT_TRUE(none == noneEither);
}

TEST(LoadFileSections, Queries)
{
    MadeLoadFile file({{0x2000, {1, 2}}, {0x1000, {3, 4, 5}}, {0xFFFFFFFE, {6, 7}}});
    LoadFileSections& sections = file.loadFileSections();
    EXPECT_EQ(sections.length(), 7u);
    EXPECT_EQ(sections.eelength(), 0u);
    EXPECT_EQ(sections.firstSectionStartAddress(), 0x2000u);
    EXPECT_EQ(sections.find(0x1001, 2)->address(), 0x1000u);
    EXPECT_EQ(sections.find(0x1001, 3), nullptr);
    EXPECT_EQ(sections.find(0xFFFFFFFF, 2), nullptr);
    file.sortLoadFileSections();
    EXPECT_EQ(sections.firstSectionStartAddress(), 0x1000u);
    AddressRanges ranges;
    sections.getSectionAddressRanges(ranges);
    EXPECT_EQ(
        std::vector<AddressRange>(ranges.begin(), ranges.end()),
        (std::vector<AddressRange>{{0x1000, 0x1002}, {0x2000, 0x2001}, {0xFFFFFFFE, 0xFFFFFFFF}}));
    EXPECT_EQ(LoadFileSections().firstSectionStartAddress(), 0u);
}

TEST(LoadFile, SectionsAreMadeOnceUntilInvalidated)
{
    MadeLoadFile file(std::vector<ByteRun>{{0x1000, {1}}});
    EXPECT_EQ(file.loadFileSections().sections().size(), 1u);
    EXPECT_EQ(file.loadFileSections().sections().size(), 1u);
    file.loadFileSections().sections()[0]->createPatch()[0] = 9;
    file.clearPatches();
    EXPECT_EQ(file.loadFileSections().sections()[0]->data(true)[0], 1);
    file.invalidateLoadFileSections();
    file.failing = true;
    try {
        file.loadFileSections();
        FAIL();
    } catch (const HException& error) {
        EXPECT_EQ(error.message(), "cannot read sections from load file");
    }
}

TEST(LoadFile, MakeContiguousFillsTheGaps)
{
    MadeLoadFile file({{0x1004, {3, 4}}, {0x1000, {1, 2}}});
    file.makeContiguous(0xFF);
    EXPECT_EQ(runsOf(file), (std::vector<ByteRun>{{0x1000, {1, 2, 0xFF, 0xFF, 3, 4}}}));
    EXPECT_EQ(file.loadFileSections().sections()[0]->name(), "Contiguous section");

    MadeLoadFile empty(std::vector<ByteRun>{});
    empty.makeContiguous(0);
    EXPECT_TRUE(runsOf(empty).empty());

    MadeLoadFile wide({{0, {1}}, {0xFFFFFFFF, {2}}});
    EXPECT_THROW(wide.makeContiguous(0), HException);
    EXPECT_EQ(runsOf(wide).size(), 2u);
}

TEST(LoadFileList, SortsByFirstSection)
{
    MadeLoadFile high({{0x3000, {1}}, {0x2000, {2}}}), low({{0x4000, {3}}, {0x1000, {4}}});
    LoadFileList list;
    list.add(&high, "high", true);
    list.add(&low, "low", false);
    list.sort();
    EXPECT_EQ(list[0].path, "low");
    EXPECT_TRUE(list[1].flag);
    EXPECT_EQ(runsOf(high)[0].address, 0x2000u);
}

TEST(LoadFileList, OverlapBetweenFilesOnly)
{
    MadeLoadFile a({{0x1000, {1, 2}}, {0x1001, {3}}}), b(std::vector<ByteRun>{{0x1002, {1, 2}}}),
        c({{0x0FFF, {1}}, {0x1003, {1}}});
    LoadFileList list;
    EXPECT_FALSE(list.overlap());
    list.add(&a, "a", false);
    EXPECT_FALSE(list.overlap()) << "a file may overlap itself";
    list.add(&b, "b", false);
    EXPECT_FALSE(list.overlap());
    list.add(&c, "c", false);
    EXPECT_TRUE(list.overlap());
}

} // namespace
