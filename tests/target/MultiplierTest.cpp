#include "target/msp430/Multiplier.h"

#include <gtest/gtest.h>

#include <vector>

namespace {

struct Store {
    unsigned offset;
    unsigned value;
};

struct Case {
    const char* name;
    std::vector<Store> stores;
    std::uint64_t result;
    unsigned sumExtension;
};

std::uint64_t resultOf(const Multiplier& multiplier)
{
    std::uint64_t result = 0;
    for (unsigned offset : {42u, 40u, 38u, 36u})
        result = result << 16 | multiplier.load(offset);
    return result;
}

const Case cases[] = {
    {"MPY", {{0, 0xFFFF}, {8, 0xFFFF}}, 0xFFFE0001, 0},
    {"MPYS negative", {{2, 0xFFFF}, {8, 2}}, 0xFFFFFFFE, 0xFFFF},
    {"MPYS positive", {{2, 0xFFFF}, {8, 0xFFFF}}, 1, 0},
    {"MAC", {{10, 5}, {12, 0}, {4, 3}, {8, 4}}, 17, 0},
    {"MAC passes 32 bits", {{10, 0xFFFF}, {12, 0xFFFF}, {4, 1}, {8, 2}}, 1, 1},
    {"MACS negative", {{10, 1}, {12, 0}, {6, 0xFFFF}, {8, 2}}, 0xFFFFFFFF, 0xFFFF},
    {"MACS positive", {{10, 5}, {12, 0}, {6, 0xFFFF}, {8, 2}}, 3, 0},
    {"writing a result word clears the high half",
     {{16, 0xFFFF}, {18, 0xFFFF}, {32, 0xFFFF}, {34, 0xFFFF}, {10, 7}},
     7,
     0},
    {"MPY32", {{16, 0x5678}, {18, 0x1234}, {32, 2}, {34, 0}}, 0x2468ACF0, 0},
    {"MPY32 keeps 64 bits", {{16, 0}, {18, 0x8000}, {32, 0}, {34, 0x8000}}, 0x4000000000000000, 0},
    {"MPYS32", {{20, 0xFFFF}, {22, 0xFFFF}, {32, 3}, {34, 0}}, 0xFFFFFFFFFFFFFFFD, 0xFFFF},
    {"MAC32", {{10, 1}, {12, 0}, {24, 3}, {26, 0}, {32, 5}, {34, 0}}, 16, 0},
    {"MACS32 carries out of 64 bits",
     {{10, 5}, {12, 0}, {28, 0xFFFF}, {30, 0xFFFF}, {32, 2}, {34, 0}},
     3,
     1},
    {"the low word of the second 32-bit operand starts nothing", {{0, 3}, {8, 4}, {32, 9}}, 12, 0},
    {"stores beside the registers do nothing", {{0, 3}, {8, 4}, {44, 9}, {9, 9}}, 12, 0},
};

} // namespace

TEST(Multiplier, Modes)
{
    for (const Case& multiplication : cases) {
        SCOPED_TRACE(multiplication.name);
        Multiplier multiplier(true);
        for (const Store& store : multiplication.stores)
            multiplier.store(store.offset, store.value);
        EXPECT_EQ(resultOf(multiplier), multiplication.result);
        EXPECT_EQ(multiplier.load(14), multiplication.sumExtension);
    }
}

TEST(Multiplier, OperandsReadBack)
{
    Multiplier multiplier(true);
    multiplier.store(16, 0x5678);
    multiplier.store(18, 0x1234);
    multiplier.store(32, 0xDEF0);
    multiplier.store(34, 0x9ABC);
    for (unsigned offset : {0u, 2u, 4u, 6u})
        EXPECT_EQ(multiplier.load(offset), 0x5678u);
    for (unsigned offset : {16u, 20u, 24u, 28u})
        EXPECT_EQ(multiplier.load(offset), 0x12345678u);
    for (unsigned offset : {18u, 22u, 26u, 30u})
        EXPECT_EQ(multiplier.load(offset), 0x1234u);
    EXPECT_EQ(multiplier.load(8), 0xDEF0u);
    EXPECT_EQ(multiplier.load(32), 0xDEF0u);
    EXPECT_EQ(multiplier.load(34), 0x9ABCu);
    EXPECT_EQ(multiplier.load(44), 0u);
    EXPECT_EQ(multiplier.length(), 46u);
    EXPECT_EQ(Multiplier(false).length(), 16u);
}
