#include "target/TargetMemoryInterface.h"
#include "target/msp430/MSP430Registers.h"

#include <gtest/gtest.h>

#include <array>
#include <set>

namespace {

/// 64 KB of plain memory that notes the blocks in which it is accessed.
class BlockMemory : public TargetMemoryInterface {
public:
    explicit BlockMemory(Endian::EndianType endian = Endian::Little)
        : TargetMemoryInterface(endian, 2)
    {
    }
    void pokeBytes(unsigned address, unsigned length, const unsigned char* data) override
    {
        pokes.push_back(length);
        std::copy_n(data, length, bytes.begin() + address);
    }
    void peekBytes(unsigned address, unsigned length, unsigned char* data) override
    {
        peeks.push_back(length);
        std::copy_n(bytes.begin() + address, length, data);
    }
    std::array<unsigned char, 0x10000> bytes{};
    std::vector<unsigned> pokes, peeks;
};

using Blocks = std::vector<unsigned>;

} // namespace

TEST(TargetMemoryInterface, BulkOperationsGoInBlocks)
{
    BlockMemory memory;
    std::fill_n(memory.bytes.begin(), 200, 'a');
    memory.bytes[70] = 0;
    EXPECT_EQ(memory.peekString(0, 200).size(), 70);
    EXPECT_EQ(memory.peeks, (Blocks{64, 64}));
    EXPECT_EQ(memory.peekString(0, 10).size(), 10);

    memory.memsetBytes(0x100, 600, 0x55);
    EXPECT_EQ(memory.pokes, (Blocks{256, 256, 88}));
    EXPECT_EQ(memory.bytes[0x100 + 599], 0x55);
    EXPECT_EQ(memory.bytes[0x100 + 600], 0);
    memory.pokes.clear();
    memory.memsetBytes(0x100, 0, 1);
    EXPECT_TRUE(memory.pokes.empty());

    memory.peeks.clear();
    std::vector<unsigned char> expected(2000, 0);
    EXPECT_TRUE(memory.verifyBytes(0x2000, 2000, expected.data()));
    EXPECT_EQ(memory.peeks, (Blocks{1024, 976}));
    expected[1999] = 1;
    EXPECT_FALSE(memory.verifyBytes(0x2000, 2000, expected.data()));
    memory.peeks.clear();
    EXPECT_TRUE(memory.verifyBytes(0, 0, nullptr));
    EXPECT_TRUE(memory.peeks.empty());

    memory.pokes.clear();
    memory.memsetUint16(0x3000, 200, 0x1234);
    EXPECT_EQ(memory.pokes, (Blocks{256, 144}));
    EXPECT_EQ(memory.peekUint16(0x3000 + 398), 0x1234);
}

TEST(TargetMemoryInterface, NumbersFollowTheByteOrder)
{
    for (const auto endian : {Endian::Little, Endian::Big}) {
        BlockMemory memory(endian);
        memory.pokeUint32(0, 0x12345678);
        EXPECT_EQ(memory.bytes[0], endian == Endian::Little ? 0x78 : 0x12);
        EXPECT_EQ(memory.peekUint32(0), 0x12345678u);
        memory.pokeWord(8, 0xABCD1234);
        EXPECT_EQ(memory.peekNumber(8, 2), 0x1234u);
        EXPECT_EQ(memory.peekWord(8), 0x1234u);
        memory.pokeNumber(16, 8, 0x1122334455667788);
        EXPECT_EQ(memory.peekNumber(16, 8), 0x1122334455667788u);
        memory.pokeUint16(30, 0xFFEE);
        EXPECT_EQ(memory.peekUint16(30), 0xFFEE);
    }
}

TEST(TargetMemoryInterface, BaseErasesNothingAndReportsTheRequest)
{
    BlockMemory memory;
    unsigned erasedStart = 0, erasedLength = 0;
    memory.eraseBytes(0x100, 0x20, &erasedStart, &erasedLength);
    EXPECT_EQ(erasedStart, 0x100u);
    EXPECT_EQ(erasedLength, 0x20u);
    memory.eraseBytes(0x100, 0x20, nullptr, nullptr);
    EXPECT_TRUE(memory.pokes.empty());
    EXPECT_FALSE(memory.memoryExists(0, 1));
    memory.addressRanges().add(0x100, 0x1FF, false);
    EXPECT_TRUE(memory.memoryExists(0x100, 0x100));
    EXPECT_FALSE(memory.memoryExists(0x1FF, 2));
    EXPECT_FALSE(memory.memoryExists(0x1FF, 0xFFFFFFFF));
    EXPECT_EQ(memory.addressDisplayWidthInCharacters(), 4u);
}

TEST(MSP430Registers, NamesSizesAndDirtyMarks)
{
    MSP430Registers registers(true);
    const std::pair<const char*, int> names[] = {{"pc", 0},   {"SP", 1},   {"sr", 2}, {"R0", 0},
                                                 {"r1", 1},   {"R2", 2},   {"R3", 3}, {"r12", 12},
                                                 {"R15", 15}, {"R16", -1}, {"", -1},  {"R012", -1}};
    for (const auto& [name, number] : names)
        EXPECT_EQ(registers.nameToNumber(QString::fromLatin1(name)), number) << name;
    EXPECT_EQ(registers.numberToName(0), QStringLiteral("PC"));
    EXPECT_TRUE(registers.numberToName(16).isNull());
    EXPECT_EQ(registers.sizeInBytes(0), 3u);
    EXPECT_EQ(registers.sizeInBytes(1), 2u);
    EXPECT_EQ(MSP430Registers().sizeInBytes(0), 2u);
    registers.setPC(0x8001);
    registers.setValue(5, 7);
    EXPECT_EQ(registers.dirty(), 0x21u);
    EXPECT_EQ(registers.getPC(), 0x8001u);
    EXPECT_EQ(MSP430Registers(registers).getPC(), 0x8000u);
    MSP430Registers assigned;
    assigned = registers;
    EXPECT_EQ(assigned.getPC(), 0x8000u);
    EXPECT_EQ(assigned.getValue(5), 7u);
}
