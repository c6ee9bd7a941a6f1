#include "objfile/model/TOBFDirectives.h"
#include "objfile/model/TOBFExpr.h"
#include "objfile/model/TOBFMarker.h"
#include "objfile/model/TOBFModule.h"
#include "objfile/model/TOBFType.h"

#include <gtest/gtest.h>

#include <cstring>

namespace {

HString* name(const char* text) { return HString::intern(text); }
TOBFExpr* number(std::int64_t value) { return new TOBFConstExpr(value); }

class TOBFModel : public testing::Test {
protected:
    Pool m_pool;
    CurrentPool m_current{&m_pool};
};

using TOBFExpression = TOBFModel;
using TOBFItems = TOBFModel;

TEST_F(TOBFExpression, OperationsFoldConstants)
{
    const struct {
        int operation;
        std::int64_t left, right, result;
    } cases[] = {
        {TAG_ADD, 2, 3, 5},          {TAG_ADD, INT64_MAX, 1, INT64_MIN},
        {TAG_SUB, 2, 3, -1},         {TAG_MUL, -4, 3, -12},
        {TAG_DIV, -7, 2, -3},        {TAG_DIV, INT64_MIN, -1, INT64_MIN},
        {TAG_MOD, -7, 2, -1},        {TAG_MOD, INT64_MIN, -1, 0},
        {TAG_AND, 0xF0, 0x3C, 0x30}, {TAG_OR, 0xF0, 0x0C, 0xFC},
        {TAG_XOR, 0xF0, 0x3C, 0xCC}, {TAG_SHL, 1, 65, 2},
        {TAG_SHR, -1, 60, 15},       {TAG_ASHR, -16, 2, -4},
        {TAG_EQ, 3, 3, 1},           {TAG_NE, 3, 3, 0},
        {TAG_GT, -1, 1, 0},          {TAG_LT, -1, 1, 1},
        {TAG_GE, 1, 1, 1},           {TAG_LE, 2, 1, 0},
        {TAG_LOGICAL_AND, 2, 4, 1},  {TAG_LOGICAL_OR, 0, 0, 0},
    };
    for (const auto& it : cases) {
        const TOBFExpr* made =
            TOBFBinaryExpr::make(it.operation, number(it.left), number(it.right));
        ASSERT_TRUE(made->isConstant()) << it.operation;
        EXPECT_EQ(made->evaluate().value, it.result) << it.operation;
    }
}

TEST_F(TOBFExpression, DivisionByZeroIsKeptAndFails)
{
    const TOBFExpr* quotient = TOBFBinaryExpr::make(TAG_DIV, number(1), number(0));
    EXPECT_FALSE(quotient->isConstant());
    EXPECT_EQ(quotient->evaluate().message, "division by zero");
    EXPECT_EQ(TOBFBinaryExpr::make(TAG_MOD, number(1), number(0))->evaluate().message,
              "modulus by zero");
}

TEST_F(TOBFExpression, SumsCollectTheirConstants)
{
    const auto symbol = [] { return new TOBFSymbolExpr(new TOBFSymbol(name("sym"))); };
    const auto add = [](TOBFExpr* a, TOBFExpr* b) { return TOBFBinaryExpr::make(TAG_ADD, a, b); };
    EXPECT_EQ(add(add(symbol(), number(2)), number(3))->printString(), "sym + 5");
    EXPECT_EQ(add(number(2), add(symbol(), number(3)))->printString(), "sym + 5");
    EXPECT_EQ(TOBFBinaryExpr::make(TAG_SUB, symbol(), number(2))->printString(), "sym - 2");
    EXPECT_TRUE(add(symbol(), number(1))->isBinaryAdd());
    EXPECT_FALSE(add(number(1), symbol())->isBinaryAdd());
}

TEST_F(TOBFExpression, FailuresSayWhatIsMissing)
{
    auto* symbol = new TOBFSymbol(name("x"));
    const TOBFSymbolExpr reference(symbol);
    EXPECT_EQ(reference.evaluate().message, "undefined symbol x");
    symbol->setDefinition(TOBFBinaryExpr::make(TAG_ADD, new TOBFSymbolExpr(symbol), number(1)));
    // The definition holds a reference of its own, which is the one found to go round.
    EXPECT_EQ(TOBFSymbolExpr(symbol).evaluate().message, "circular reference to x");
    EXPECT_EQ(TOBFMarkerExpr(new TOBFMarker).evaluate().message, "forward reference to label");
    EXPECT_EQ(TOBFMarkerExpr(new TOBFMarker(name("l"))).evaluate().message,
              "forward reference to label l");
}

TEST_F(TOBFExpression, TheSectionFollowsTheOperation)
{
    auto* a = new TOBFSection(name("A"));
    auto* b = new TOBFSection(name("B"));
    const auto in = [](TOBFSection* section, long pc) {
        auto* marker = new TOBFMarker;
        marker->setPC(pc);
        section->addInsn(marker);
        return new TOBFMarkerExpr(marker);
    };
    const struct {
        int operation;
        TOBFSection *left, *right, *result;
    } cases[] = {
        {TAG_ADD, a, nullptr, a},       {TAG_ADD, nullptr, b, b}, {TAG_ADD, a, b, a},
        {TAG_SUB, a, nullptr, a},       {TAG_SUB, nullptr, b, b}, {TAG_SUB, a, b, nullptr},
        {TAG_MUL, a, nullptr, a},       {TAG_MUL, a, b, nullptr}, {TAG_MUL, nullptr, b, nullptr},
        {TAG_AND, a, nullptr, nullptr},
    };
    for (const auto& it : cases) {
        TOBFExpr* left = it.left != nullptr ? static_cast<TOBFExpr*>(in(it.left, 6)) : number(6);
        TOBFExpr* right = it.right != nullptr ? static_cast<TOBFExpr*>(in(it.right, 2)) : number(2);
        EXPECT_EQ(TOBFBinaryExpr::make(it.operation, left, right)->evaluate().section, it.result)
            << it.operation;
    }
    const TOBFExpr* word = TOBFBinaryExpr::make(TAG_WORD_ADDRESS, in(a, 6), number(0));
    EXPECT_EQ(word->evaluate().value, 3);
    EXPECT_EQ(word->evaluate().section, a);
}

TEST_F(TOBFItems, ListingTexts)
{
    auto* local = new TOBFSymbol(name("loc"));
    local->setDefinition(number(3));
    auto* undefined = new TOBFSymbolExpr(new TOBFSymbol(name("u")));
    const struct {
        TOBFInsn* item;
        const char* text;
    } cases[] = {
        {new TOBFDefBytesInsn(undefined, 1), "\tDB\tu"},
        {new TOBFDefBytesInsn(undefined, 2), "\tDW\tu"},
        {new TOBFDefBytesInsn(undefined, 3), "\tDC3\tu"},
        {new TOBFDefBytesInsn(undefined, 4), "\tDL\tu"},
        {new TOBFDefAddrInsn(undefined), "\tDA\tu"},
        {new TOBFInitInsn(name("IDATA0"), nullptr), "\t.INIT\t\"IDATA0\""},
        {new TOBFLinkIf(undefined), "\tLINKIF\tu"},
        {new TOBFEndLinkIf, "\tENDLINKIF"},
        {new TOBFAlignInsn(2), "\t.ALIGN\tBYTE[2]"},
        {new TOBFOriginInsn(30), "\tORG\t30"},
        {new TOBFFillInsn(5, 255), "\t.FILL\t5, 255"},
        {new TOBFBreakInsn, ""},
        {new TOBFSpaceInsn(number(9)), "\t.SPACE\t9"},
        {new TOBFLocalInsn(new TOBFSymbolExpr(local)), "\tLOCAL\tloc @ 3"},
        {new TOBFResetLocusInsn, ""},
        {new TOBFMarker(name("l")), "l"},
    };
    for (const auto& it : cases)
        EXPECT_EQ(it.item->printString(), it.text);
}

TEST_F(TOBFItems, AlignmentReachesTheNextMultiple)
{
    TOBFAlignInsn align(4);
    EXPECT_EQ(align.length(), 0); // not placed
    align.setPC(8);
    EXPECT_EQ(align.length(), 0);
    align.setPC(9);
    EXPECT_EQ(align.length(), 3);
}

TEST_F(TOBFItems, EncodingTakesTheLowBytes)
{
    TOBFDefBytesInsn bytes(number(0x12345678), 3);
    bytes.encode();
    bytes.encode();
    EXPECT_EQ(bytes.printOpCode(), "785634");
    TOBFDefAddrInsn address(number(0x123456));
    address.encode();
    EXPECT_EQ(address.printOpCode(), "5634");
    TOBFMarker item;
    item.encodeWord(0x010203, 3, true);
    item.encodeWord(0x0102, 5, true); // no such size in this order
    EXPECT_EQ(item.printOpCode(), "010203");
    EXPECT_EQ(TOBFModule::processorAddress(0x123456), 0x23456u);
}

TEST_F(TOBFItems, SectionsMeasureTheirPlacedBytes)
{
    TOBFSection& section = *new TOBFSection(name("S"));
    section.addInsn(new TOBFMarker);
    EXPECT_EQ(section.lowestAddress(), TOBFSection::NoAddress);
    EXPECT_EQ(section.getSize(), 0u);
    auto* fill = new TOBFFillInsn(4, 0xAA);
    auto* behind = new TOBFFillInsn(2, 0xBB);
    section.addInsn(fill);
    section.addInsn(behind);
    section.invalidateMetrics();
    EXPECT_EQ(section.getSize(), 6u);
    fill->setPC(0x200);
    behind->setPC(0x208);
    section.invalidateMetrics();
    EXPECT_EQ(section.lowestAddress(), 0x200u);
    EXPECT_EQ(section.highestAddress(), 0x209);
    EXPECT_EQ(section.getSize(), 10u);
    EXPECT_EQ(section.accumulatedSize(), 6u);
    unsigned char bytes[10];
    std::memset(bytes, 0xFF, sizeof bytes);
    section.dump(sizeof bytes, bytes);
    EXPECT_EQ(std::string(reinterpret_cast<char*>(bytes), 10),
              "\xAA\xAA\xAA\xAA\xFF\xFF\xFF\xFF\xBB\xBB");
    EXPECT_EQ(section.findInsnAt(0x208), behind);
    EXPECT_EQ(section.findInsnAt(0x209), nullptr);
    EXPECT_EQ(section.findInsnInRange(0x203), fill);
    EXPECT_EQ(section.findInsnInRange(0x204), nullptr);
}

TEST_F(TOBFItems, AnImageIsACopyOfItsSection)
{
    TOBFModule& module = *new TOBFModule;
    auto* data = new TOBFSection(name("IDATA0"));
    module.addSection(data);
    auto* value = new TOBFDefBytesInsn(number(0x1234), 2);
    value->setPC(0x200);
    value->encode();
    data->addInsn(value);
    TOBFInitInsn image(name("IDATA0"), &module);
    EXPECT_EQ(image.length(), 2);
    EXPECT_EQ(image.getByte(0), 0x34);
    EXPECT_EQ(image.getByte(1), 0x12);
    TOBFInitInsn missing(name("NONE"), &module);
    EXPECT_EQ(missing.length(), 0);
}

TEST_F(TOBFModel, ReachabilityFollowsWhatIsNeeded)
{
    auto* code = new TOBFSection(name("CODE"));
    const auto function = [&](const char* text, TOBFSymbol* calls) {
        code->newFragment();
        auto* marker = new TOBFMarker(name(text));
        code->addInsn(marker);
        if (calls != nullptr)
            code->addInsn(new TOBFDefAddrInsn(new TOBFSymbolExpr(calls)));
        auto* symbol = new TOBFSymbol(name(text));
        symbol->setDefinition(new TOBFMarkerExpr(marker));
        return symbol;
    };
    TOBFSymbol* leaf = function("leaf", nullptr);
    TOBFSymbol* middle = function("middle", leaf);
    TOBFSymbol* unused = function("unused", middle);
    // A long chain of fragments is walked without descending into each.
    TOBFSymbol* last = middle;
    for (int i = 0; i < 20000; ++i)
        last = function("chain", last);
    last->markReachable(true);
    EXPECT_TRUE(leaf->isReachable());
    EXPECT_FALSE(unused->isReachable());
    last->markReachable(false);
    EXPECT_FALSE(leaf->isReachable());
}

TEST_F(TOBFModel, ScopesKeepTheirFirstAndTakeNewNames)
{
    TOBFScope& first = *new TOBFScope(TAG_SCOPE_FUNCTION);
    TOBFScope& second = *new TOBFScope(TAG_SCOPE_BLOCK);
    TOBFSymbol symbol(name("x")), namesake(name("x"));
    symbol.setScope(&first);
    symbol.setScope(&second);
    EXPECT_EQ(symbol.scope(), &first);
    EXPECT_TRUE(second.symbols().empty());
    namesake.setScope(&first);
    EXPECT_EQ(first.symbols().at(name("x")), &namesake);
}

TEST_F(TOBFModel, TypesDescribeThemselves)
{
    TOBFSimpleType integer(TAG_INT, 2), character(TAG_CHAR, 1);
    EXPECT_EQ(integer.getName()->str(), "INT(2)");
    EXPECT_EQ(character.getName()->str(), "UNSIGNED(1)");
    TOBFStrucType& unnamed = *new TOBFStrucType(4);
    unnamed.addField(new TOBFDynamicField(name("a"), 0, 16, &integer));
    unnamed.addField(new TOBFDynamicField(name("b"), 16, 8, &character));
    EXPECT_EQ(unnamed.getName()->str(), "{ INT(2) a; UNSIGNED(1) b;  }");
    EXPECT_EQ(unnamed.findField(name("b"))->type(), &character);
    EXPECT_EQ(unnamed.findField(name("c")), nullptr);
    // One that holds a pointer to itself has a name that ends.
    TOBFStrucType& list = *new TOBFStrucType(2);
    TOBFPtrType next(2);
    next.setTarget(&list);
    list.addField(new TOBFDynamicField(name("next"), 0, 16, &next));
    EXPECT_EQ(list.getName()->str(), "{ { ... }* next;  }");
}

TEST(Pool, ChunksAreReusedAndOverwritten)
{
    Pool pool;
    auto* first = static_cast<unsigned char*>(pool.allocate(1));
    auto* second = static_cast<unsigned char*>(pool.allocate(8));
    EXPECT_EQ(second - first, 8);
    EXPECT_EQ(static_cast<unsigned char*>(pool.allocate(Pool::ChunkSize - 16)) - first, 16);
    pool.clear();
    EXPECT_EQ(first[0], Pool::ReleasedByte);
    Pool next;
    EXPECT_EQ(next.allocate(16), first);
    EXPECT_NE(next.allocate(Pool::ChunkSize + 8), nullptr);
}

TEST(HString, EqualTextsAreOne)
{
    EXPECT_EQ(HString::intern("abc"), HString::intern(std::string("abc")));
    EXPECT_EQ(HString::intern("a\0b", 3), HString::intern(std::string_view("a\0b", 3)));
    EXPECT_NE(HString::intern("a\0b", 3), HString::intern("a"));
    EXPECT_EQ(HString::intern(42L)->view(), "42");
    const auto modifier = [](int value) { return static_cast<HString::Modifier>(value); };
    EXPECT_EQ(HString::intern("aB\\c", modifier(0x10))->view(), "AB/C");
    EXPECT_EQ(HString::intern("aB/c", modifier(0x21))->view(), "ab\\c");
    EXPECT_EQ(HString::intern("aB\\c", modifier(0x12))->view(), "aB/c");
}

} // namespace
