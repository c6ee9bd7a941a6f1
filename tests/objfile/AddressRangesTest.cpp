#include "objfile/loadfiles/AddressRanges.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <vector>

namespace {

constexpr std::uint32_t Top = 0xFFFFFFFF;

struct Addition {
    std::uint32_t low;
    std::uint32_t high;
    int type;
    bool merge;
};

struct AddCase {
    const char* what;
    std::vector<Addition> additions;
    std::vector<AddressRange> expected;
};

AddressRanges build(const std::vector<Addition>& additions)
{
    AddressRanges ranges;
    for (const Addition& a : additions)
        ranges.add(a.low, a.high, a.type, a.merge);
    return ranges;
}

const std::vector<AddCase> AddCases = {
    {"touching ranges of one type join", {{0, 9, 0, true}, {10, 19, 0, true}}, {{0, 19}}},
    {"touching from below", {{10, 19, 0, true}, {0, 9, 0, true}}, {{0, 19}}},
    {"types never join", {{0, 9, 0, true}, {10, 19, 1, true}}, {{0, 9, 0}, {10, 19, 1}}},
    {"types never absorb", {{0, 9, 0, true}, {5, 19, 1, true}}, {{0, 9, 0}, {5, 19, 1}}},
    {"a gap stays", {{0, 9, 0, true}, {11, 19, 0, true}}, {{0, 9}, {11, 19}}},
    {"reversed bounds are swapped", {{9, 0, 0, true}}, {{0, 9}}},
    {"contained", {{0, 99, 0, true}, {10, 19, 0, true}}, {{0, 99}}},
    {"containing", {{10, 19, 0, true}, {30, 39, 0, true}, {0, 99, 0, true}}, {{0, 99}}},
    {"bridge", {{0, 9, 0, true}, {20, 29, 0, true}, {10, 19, 0, true}}, {{0, 29}}},
    {"without merge all stay, sorted",
     {{5, 20, 0, false}, {0, 9, 0, false}, {6, 7, 0, false}},
     {{0, 9}, {5, 20}, {6, 7}}},
    {"a chain of overlaps is absorbed whole",
     {{0, 10, 0, false}, {8, 20, 0, false}, {18, 30, 0, false}, {29, 35, 0, true}},
     {{0, 35}}},
    {"what overlaps only a touching range stays",
     {{10, 19, 0, false}, {15, 30, 0, false}, {0, 9, 0, true}},
     {{0, 19}, {15, 30}}},
    {"the ends of the address space don't touch",
     {{Top, Top, 0, true}, {0, 0, 0, true}},
     {{0, 0}, {Top, Top}}},
    {"the whole address space", {{4, Top, 0, true}, {0, 3, 0, true}}, {{0, Top}}},
};

TEST(AddressRanges, AddKeepsOrderAndMergesByType)
{
    for (const AddCase& c : AddCases) {
        const AddressRanges ranges = build(c.additions);
        EXPECT_EQ(std::vector<AddressRange>(ranges.begin(), ranges.end()), c.expected) << c.what;
    }
}

TEST(AddressRanges, RangeArithmetic)
{
    const AddressRange range(19, 10);
    EXPECT_EQ(range.length(), 10u);
    EXPECT_EQ(AddressRange(0, Top).length(), 0x100000000u);
    EXPECT_TRUE(range.contains(10, 19));
    EXPECT_FALSE(range.contains(9, 19));
    EXPECT_FALSE(range.contains(10, 20));
    const AddressRange edge(19, 25), beside(20, 25), around(0, 99);
    EXPECT_TRUE(range.occludedBy(&edge));
    EXPECT_FALSE(range.occludedBy(&beside));
    EXPECT_TRUE(range.occludedBy(&around));
}

TEST(AddressRanges, SetQueries)
{
    const AddressRanges memory = build({{0x200, 0x9FF, 1, true}, {0x1100, 0xFFFF, 2, true}});
    EXPECT_EQ(memory.find(0x9FF)->type, 1);
    EXPECT_EQ(memory.find(0xA00), nullptr);
    EXPECT_EQ(memory.find(0x900, 0x1200), nullptr);
    EXPECT_TRUE(memory.isOccludedBy(0x1200, 0xA00));
    EXPECT_FALSE(memory.isOccludedBy(0xA00, 0x10FF));

    const AddressRanges inside = build({{0x200, 0x200, 0, true}, {0xFFE0, 0xFFFF, 0, true}});
    EXPECT_TRUE(inside.isSubsetOf(memory));
    EXPECT_FALSE(memory.isSubsetOf(inside));
    EXPECT_TRUE(AddressRanges().isSubsetOf(inside));
    EXPECT_TRUE(memory.isOccludedBy(inside));
    EXPECT_FALSE(memory.isOccludedBy(build({{0xA00, 0x10FF, 0, true}})));
    EXPECT_FALSE(AddressRanges().isOccludedBy(memory));
}

/// The text of the merge rule applied without any index.
void addPlainly(std::vector<AddressRange>& ranges, AddressRange range)
{
    for (const bool touching : {false, true}) {
        for (bool changed = true; changed;) {
            changed = false;
            std::vector<AddressRange> kept;
            const AddressRange sought = range;
            for (const AddressRange& r : ranges) {
                const bool joins = touching ? r.touches(sought) : r.occludedBy(&sought);
                if (r.type != range.type || !joins) {
                    kept.push_back(r);
                    continue;
                }
                range = {std::min(range.start, r.start), std::max(range.end, r.end), range.type};
                changed = true;
            }
            ranges = kept;
        }
    }
    ranges.insert(std::upper_bound(ranges.begin(), ranges.end(), range, AddressRangeLess()), range);
}

TEST(AddressRanges, RandomSetsAgreeWithTheRuleAppliedPlainly)
{
    std::mt19937 engine(1);
    const auto random = [&] { return static_cast<std::uint32_t>(engine()); };
    for (int round = 0; round < 300; ++round) {
        AddressRanges ranges;
        std::vector<AddressRange> plain;
        for (int i = 0; i < 40; ++i) {
            const std::uint32_t low = random() % 300;
            const AddressRange range(low, low + random() % 20, static_cast<int>(random() % 2));
            const bool merge = random() % 4 != 0;
            ranges.add(range.start, range.end, range.type, merge);
            if (merge)
                addPlainly(plain, range);
            else
                plain.insert(
                    std::upper_bound(plain.begin(), plain.end(), range, AddressRangeLess()), range);
            if (random() % 8 == 0) {
                const std::ptrdiff_t victim = static_cast<std::ptrdiff_t>(engine() % plain.size());
                ranges.remove(ranges.begin() + victim);
                plain.erase(plain.begin() + victim);
            }
            ASSERT_EQ(std::vector<AddressRange>(ranges.begin(), ranges.end()), plain);
        }
        for (std::uint32_t low = 0; low < 330; ++low) {
            const std::uint32_t high = low + random() % 30;
            const auto holds = [&](const AddressRange& r) { return r.contains(low, high); };
            const auto meets = [&](const AddressRange& r) {
                return r.start <= high && low <= r.end;
            };
            ASSERT_EQ(ranges.find(low, high) != nullptr,
                      std::any_of(plain.begin(), plain.end(), holds));
            ASSERT_EQ(ranges.isOccludedBy(low, high),
                      std::any_of(plain.begin(), plain.end(), meets));
        }
    }
}

TEST(AddressRanges, ManyRangesInAnyOrder)
{
    constexpr std::uint32_t Count = 100000;
    AddressRanges rising, falling;
    for (std::uint32_t i = 0; i < Count; ++i) {
        rising.add(i * 4, i * 4 + 1, true);
        falling.add((Count - 1 - i) * 4, (Count - 1 - i) * 4 + 1, true);
    }
    EXPECT_EQ(rising.count(), Count);
    EXPECT_TRUE(rising == falling);
    rising.add(0, Count * 4, true);
    EXPECT_EQ(rising.count(), 1u);
}

} // namespace
