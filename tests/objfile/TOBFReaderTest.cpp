#include "objfile/TOBFTestSupport.h"
#include "objfile/model/TOBFDirectives.h"
#include "objfile/model/TOBFExpr.h"
#include "objfile/model/TOBFMarker.h"
#include "objfile/model/TOBFType.h"
#include "objfile/msp430/TOBFMSP430Insn.h"

#include <gtest/gtest.h>

namespace {

TEST(TOBFReader, NothingButAPoolIsNoModule) { EXPECT_EQ(readObject({0x00, 0x26}), nullptr); }

TEST(TOBFReader, FailuresHaveTheirMessages)
{
    const auto text = [] { return ObjectText(); };
    const struct {
        const char* message;
        Bytes bytes;
    } cases[] = {
        {"premature end of TOBF file", {0x00, 0x26, 0x08}},
        {"premature end of TOBF file", {0x00, 0x26, 0x08, 0x02, 0x01}},
        {"premature end of TOBF file", {0x07, 0x26, 'a', 'b'}},
        {"bad object file: unknown tag", {0x00, 0x26, 0x1E}},
        {"bad object file: unknown tag", {0x00, 0x26, 0x34}},
        {"bad object file: unknown tag", {0x00, 0x26, 0x4D}},
        {"bad object file: unknown tag", {0x00, 0x26, 0x5A}},
        {"bad object file: unknown tag", {0x00, 0x26, 0x72}},
        {"bad object file: reader empty stack", {0x00, 0x26, TAG_DROP}},
        {"bad object file: stack not empty at EOF", {0x00, 0x26, 0x05}},
        {"bad object file: alias not defined", {0x00, 0x26, 0x03, TAG_ALIAS}},
        {"bad object file: alias defined more than once",
         {0x00, 0x26, 0x01, 0x00, TAG_MKALIAS, 0x01, 0x00, TAG_MKALIAS}},
        {"bad object file: no defined section",
         text().module().number(0).number(1).tag(TAG_DEFBYTES).bytes()},
        {"bad object file: no defined section", text().module().tag(TAG_BREAK).bytes()},
        {"bad object file: no instruction defined",
         text().module().section("S").string("x").tag(TAG_SETBYTES).bytes()},
        {"bad object file: no instruction defined",
         text().module().section("S").number(1).tag(TAG_INSTRUMENTATION_DATA).bytes()},
        {"bad object file: operand type error (constant expression expected)",
         text().module().tag(TAG_NULL).tag(TAG_SETPC).bytes()},
        {"bad object file: operand value error (constant out of range)",
         text().module().section("S").number(0).number(5).tag(TAG_DEFBYTES).bytes()},
        {"bad object file: operand value error (constant out of range)",
         text().number(1).number(0).tag(TAG_MKSTRING).bytes()},
        {"bad object file: operand value error (constant out of range)",
         {0x08, 0x04, 0x01, 0x00, 0x00, 0x00, 0x26}},
        {"bad object file: operand type error (expression expected)",
         text().tag(TAG_NULL).number(1).tag(TAG_ADD).bytes()},
        {"bad object file: operand type error (scope expected)",
         text().number(1).string("s").tag(TAG_MKSYMBOL).tag(TAG_SETSCOPE).bytes()},
        {"bad object file: operand type error (string expected)",
         text().number(1).tag(TAG_MKSYMBOL).bytes()},
        {"bad object file: operand type error (section expected)",
         text().number(1).tag(TAG_SECTION).bytes()},
        {"bad object file: operand type error (type expected)",
         text().number(1).number(2).tag(TAG_ARRAY).bytes()},
        {"operand type error: symbol expected", text().number(1).tag(TAG_SYMBOLVAL).bytes()},
        {"bad object file: operand type error (file expected)",
         text().module().section("S").number(1).number(2).tag(TAG_LOCUS).bytes()},
        {"bad object file: operand type error (structure expected)",
         text()
             .number(2)
             .tag(TAG_INT)
             .string("f")
             .number(0)
             .number(16)
             .number(2)
             .tag(TAG_INT)
             .tag(TAG_DYNAMIC_FIELD)
             .bytes()},
        {"bad object file: operand type error (function type expected)",
         text().number(2).tag(TAG_INT).string("p").tag(TAG_MKSYMBOL).tag(TAG_PARAMIN).bytes()},
        {"bad object file: operand type error (pointer expected)",
         text().number(2).tag(TAG_INT).number(2).tag(TAG_INT).tag(TAG_PTR).bytes()},
    };
    for (const auto& it : cases)
        EXPECT_EQ(readFailure(it.bytes), it.message);
}

TEST(TOBFReader, TheStackHoldsAHundred)
{
    Bytes bytes = {0x00, 0x26};
    bytes.insert(bytes.end(), 100, 0x01);
    EXPECT_EQ(readFailure(bytes), "bad object file: stack not empty at EOF");
    bytes.push_back(0x01);
    EXPECT_EQ(readFailure(bytes), "bad object file: reader stack overflow");
}

TEST(TOBFReader, HostileNumbersTakeNoMemory)
{
    // An alias number of 2^60 is a number like any other.
    EXPECT_EQ(
        readFailure(ObjectText().number(1).number(std::int64_t{1} << 60).tag(TAG_MKALIAS).bytes()),
        "(read)");
    // One of the numbers in between was never given.
    EXPECT_EQ(readFailure(ObjectText()
                              .number(1)
                              .number(1000)
                              .tag(TAG_MKALIAS)
                              .number(999)
                              .tag(TAG_ALIAS)
                              .bytes()),
              "bad object file: alias not defined");
    // A pool of 16 MB in a file of ten bytes.
    EXPECT_EQ(readFailure({0x08, 0x03, 0xFF, 0xFF, 0xFF, 0x26, 1, 2, 3, 4}),
              "premature end of TOBF file");
    // More than eight bytes of a number push the first ones out.
    EXPECT_EQ(readFailure({0x00, 0x26, 0x08, 0x09, 0xFF, 0, 0, 0, 0, 0, 0, 0, 1, TAG_DROP}),
              "(read)");
}

TEST(TOBFReader, NestingEndsInAMessage)
{
    ObjectText expression;
    expression.module().section("S").string("s").tag(TAG_MKSYMBOL).tag(TAG_SYMBOLVAL);
    for (int i = 0; i < 100000; ++i)
        expression.number(1).tag(TAG_XOR);
    expression.number(2).tag(TAG_DEFBYTES);
    EXPECT_EQ(readFailure(expression.bytes()), "object file is nested too deeply");

    // Sums of a sum with itself: 2^60 additions if written out.
    ObjectText doubled;
    doubled.string("s").tag(TAG_MKSYMBOL).tag(TAG_SYMBOLVAL);
    for (int i = 0; i < 60; ++i)
        doubled.tag(TAG_DUP).tag(TAG_ADD);
    doubled.tag(TAG_DROP);
    EXPECT_EQ(readFailure(doubled.bytes()), "object file is nested too deeply");
}

TEST(TOBFReader, SymbolsDefinedByEachOtherEvaluateToAFailure)
{
    // Each of 100,000 symbols is the one before: a chain too deep to walk.
    ObjectText text;
    text.module();
    for (int i = 0; i < 100000; ++i) {
        text.string("s").tag(TAG_MKSYMBOL).tag(TAG_DUP).number(i).tag(TAG_MKALIAS);
        if (i > 0)
            text.number(i - 1).tag(TAG_ALIAS).tag(TAG_SYMBOLVAL).tag(TAG_SYMBOLDEF);
        else
            text.tag(TAG_DROP);
    }
    const OwnedModule module = readObject(text.bytes());
    EXPECT_TRUE(module->allSymbols().back()->definition()->evaluate().failed);
    EXPECT_NO_THROW(module->allSymbols().front()->markReachable(true));
    EXPECT_THROW(module->allSymbols().back()->markReachable(true), HException);
}

TEST(TOBFReader, ReadsAQuickOneOnlyUpToTheInformation)
{
    ObjectText text;
    text.module()
        .string("dependencies")
        .string("a.c;b.h")
        .tag(TAG_ATTRIBUTE)
        .string("m")
        .tag(TAG_LIBRARY);
    text.tag(TAG_END_OF_INFO).tag(0xFF).tag(0xFF);
    const OwnedModule module = readObject(text.bytes(), true, true);
    ASSERT_NE(module, nullptr);
    EXPECT_EQ(module->attribute(HString::intern("dependencies")), HString::intern("a.c;b.h"));
    EXPECT_TRUE(module->libraries().contains(HString::intern("m")));
    EXPECT_EQ(readFailure(text.bytes()), "bad object file: unknown tag");
}

TEST(TOBFReader, AMarkerMayBeUsedBeforeItStandsSomewhere)
{
    ObjectText text;
    text.module().section("S");
    text.string("here").tag(TAG_MKSYMBOL).number(5).tag(TAG_MARKERREF).tag(TAG_SYMBOLDEF);
    text.number(0x1234).tag(TAG_SETPC).tag(TAG_NULL).number(5).tag(TAG_MARKERDEF);
    const OwnedModule module = readObject(text.bytes());
    TOBFSymbol* symbol = module->allSymbols().front();
    const TOBFValue value = symbol->definition()->evaluate();
    EXPECT_FALSE(value.failed);
    EXPECT_EQ(value.value, 0x1234);
    EXPECT_EQ(value.section, module->findSection(HString::intern("S")));
    // The marker has the symbol's name now, and knows the way back.
    auto* marker = static_cast<TOBFMarker*>(itemsOf(module.get(), "S").front());
    EXPECT_EQ(marker->name(), HString::intern("here"));
    EXPECT_EQ(marker->symbol(), symbol);
}

TEST(TOBFReader, APositionStaysInForceOnlyIfItIsKept)
{
    ObjectText text;
    text.module().section("S").string("f.c").tag(TAG_MKFILENAME).number(12).tag(TAG_LOCUS);
    for (int i = 0; i < 3; ++i)
        text.number(0).number(2).tag(TAG_DEFBYTES);
    text.tag(TAG_RESET_LOCUS).number(0).number(2).tag(TAG_DEFBYTES);
    const auto positions = [&](bool keep) {
        const OwnedModule module = readObject(text.bytes(), keep);
        std::string result;
        for (TOBFInsn* item : itemsOf(module.get(), "S"))
            result += item->locus() != nullptr ? '+' : '-';
        return result;
    };
    EXPECT_EQ(positions(true), "++++-");
    EXPECT_EQ(positions(false), "-+---");
}

TEST(TOBFReader, ABreakBecomesAnItemWhenAnAddressFollows)
{
    ObjectText text;
    text.module().section("S").tag(TAG_BREAK).number(0).number(1).tag(TAG_DEFBYTES);
    text.number(0x200).tag(TAG_SETPC).number(0).number(1).tag(TAG_DEFBYTES);
    const OwnedModule module = readObject(text.bytes());
    const auto items = itemsOf(module.get(), "S");
    ASSERT_EQ(items.size(), 3u);
    EXPECT_EQ(items[0]->kind(), TOBFKind::DefBytesInsn);
    EXPECT_EQ(items[0]->pc(), -1);
    EXPECT_EQ(items[1]->kind(), TOBFKind::BreakInsn);
    EXPECT_EQ(items[2]->pc(), 0x200);
}

/// One module with every record that the writer makes.
Bytes everyRecord()
{
    Pool pool;
    const CurrentPool current(&pool);
    const auto name = [](const char* text) { return HString::intern(text); };
    auto* module = new TOBFModule;
    module->addLibrary(name("libx"));
    module->setAttribute(name("dependencies"), name("a.c"));
    module->setProtected();
    module->setPriority(3);
    auto* section = new TOBFSection(name("CODE"));
    section->setFlags(0x80001);
    module->addSection(section);
    auto* file = new TOBFFilename(name("a.c"));
    auto* marker = new TOBFMarker(name("main"));
    auto* end = new TOBFMarker;
    auto* main = new TOBFSymbol(name("main"));
    auto* undefined = new TOBFSymbol(name("elsewhere"));
    main->setDefinition(new TOBFMarkerExpr(marker));
    main->setLocus(new TOBFLocus(file, 4, TAG_SYMBOL_LOCUS));
    main->setCodelet(2);
    undefined->setPatchable(9);
    undefined->setPatched();
    module->addMarked(undefined);
    section->newFragment();
    section->addInsn(marker);
    section->addInsn(new TOBFLocus(file, 5, TAG_LOCUS));
    TOBFExpr* const target = new TOBFSymbolExpr(undefined);
    const auto plus = [&](TOBFExpr* it, int n) {
        return TOBFBinaryExpr::make(TAG_ADD, it, new TOBFConstExpr(n));
    };
    section->addInsn(new TOBFDefBytesInsn(plus(target, 300), 2));
    section->addInsn(new TOBFDefAddrInsn(target));
    section->addInsn(new TOBFLinkIf(target));
    section->addInsn(new TOBFFillInsn(70000, 0xFF));
    section->addInsn(new TOBFEndLinkIf);
    section->addInsn(new TOBFAlignInsn(2));
    section->addInsn(new TOBFOriginInsn(16));
    section->addInsn(new TOBFSpaceInsn(new TOBFConstExpr(10)));
    section->addInsn(new TOBFLocalInsn(target));
    section->addInsn(new TOBFInitInsn(name("IDATA0"), module));
    section->newFragment();
    auto* insn = new TOBFMSP430Insn(0x40B1, new TOBFConstExpr(1), target, false);
    insn->setStackAdjustment(-6);
    insn->setExtensionWord(0x1840);
    insn->encodeWord(0x12345678, 4, false);
    section->addInsn(insn);
    auto* counted = new TOBFDefBytesInsn(new TOBFConstExpr(-1), 4);
    counted->setInstrumentationData(7);
    section->addInsn(counted);
    section->addInsn(end);

    auto* integer = new TOBFSimpleType(TAG_INT, 2);
    integer->setName(name("int"));
    auto* real = new TOBFFloatType(4);
    auto* nothing = new TOBFUntypedType(0);
    auto* structure = new TOBFStrucType(8);
    structure->setName(name("node"));
    auto* pointer = new TOBFPtrType(2);
    pointer->setTarget(structure);
    pointer->setRepresentation(TAG_PTR_REP_ALTERNATIVE);
    structure->addField(new TOBFDynamicField(name("next"), 0, 16, pointer));
    structure->addField(new TOBFDynamicField(name("bits"), 16, 3, integer));
    structure->addField(new TOBFStaticField(name("count"), target, integer));
    structure->addField(new TOBFDynamicField(
        name("far"), 32, 16, new TOBFQualifiedType(integer, static_cast<TOBFTag>(0x6B))));
    structure->addField(new TOBFDynamicField(name("array"), 48, 16, new TOBFArrayType(real, 3)));
    structure->addField(
        new TOBFDynamicField(name("counted"), 48, 16, new TOBFCountedArrayType(integer, real, 3)));
    auto* function = new TOBFFunctionType(1, -4, 0x0300);
    auto* parameter = new TOBFSymbol(name("p"));
    parameter->setType(pointer);
    parameter->setDefinition(
        TOBFBinaryExpr::make(TAG_BASE_OFFSET, new TOBFRegisterExpr(1), new TOBFConstExpr(-2)));
    function->addParameter(parameter);
    auto* returned = new TOBFSymbol(name(""));
    returned->setType(nothing);
    function->addReturn(returned);
    auto* method = new TOBFMemberFunctionType(structure);
    method->addParameter(parameter);
    main->setType(function);
    auto* other = new TOBFSymbol(name("other"));
    other->setDefinition(new TOBFConstExpr(-5));
    other->setType(method);
    other->setScope(module);
    auto* scope = new TOBFScope(TAG_SCOPE_FUNCTION);
    scope->setScope(module);
    scope->setRange(new TOBFMarkerExpr(marker), new TOBFMarkerExpr(end));
    scope->setFunctionSymbol(main);
    parameter->setScope(scope);
    auto* block = new TOBFScope(TAG_SCOPE_BLOCK);
    block->setScope(scope);
    main->setScope(module);
    module->makePublic(main);
    return writeModule(module);
}

TEST(TOBFFormat, WhatIsReadAndWrittenAgainIsTheSame)
{
    const Bytes first = everyRecord();
    const OwnedModule module = readObject(first);
    ASSERT_NE(module, nullptr);
    EXPECT_EQ(writeModule(module.get()), first);
    EXPECT_TRUE(module->isProtected());
    EXPECT_EQ(module->priority(), 3);
}

TEST(TOBFFormat, TypesCarryTheirNames)
{
    const OwnedModule module = readObject(everyRecord());
    const auto typeName = [&](const char* symbol) {
        return module->symbols().at(HString::intern(symbol))->type()->getName()->str();
    };
    EXPECT_EQ(typeName("main"), "(node*)->(VOID)");
    TOBFSymbol* main = module->publicSymbols().at(HString::intern("main"));
    auto* function = static_cast<TOBFFunctionType*>(main->type());
    EXPECT_EQ(function->savedOffset(), -4);
    EXPECT_EQ(function->savedMask(), 0x0300);
    TOBFType* node = function->parameters().front()->type()->getElementType();
    std::string fields;
    for (TOBFField* field : static_cast<TOBFStrucType*>(node)->fields())
        fields += field->name()->str() + ":" + field->type()->getName()->str() + " ";
    EXPECT_EQ(fields,
              "next:node* bits:int count:int far:int array:FLOAT(4)[3] counted:int::[FLOAT(4)] ");
    EXPECT_EQ(function->parameters().front()->definition()->printString(), "-2[SP]");
}

TEST(TOBFFormat, HidingMarksEveryItem)
{
    ObjectText text;
    text.module().section("S").tag(TAG_NULL_NULL).number(0x4303).tag(TAG_INSN);
    const OwnedModule plain = readObject(text.bytes());
    EXPECT_FALSE(plain->hasHiddenInsns());
    const OwnedModule hidden = readObject(writeModule(plain.get(), true));
    EXPECT_TRUE(hidden->hasHiddenInsns());
}

TEST(TOBFWriter, NumbersTakeTheFewestBytes)
{
    const struct {
        std::int64_t value;
        Bytes bytes;
    } cases[] = {
        {0, {0x00}},
        {7, {0x07}},
        {8, {0x08, 0x01, 0x08}},
        {300, {0x08, 0x02, 0x01, 0x2C}},
        {0xFFFFFFFF, {0x08, 0x04, 0xFF, 0xFF, 0xFF, 0xFF}},
        {-1, {0x08, 0x08, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF}},
    };
    for (const auto& it : cases) {
        TOBFWriter writer;
        writer.externalizeLiteral(static_cast<unsigned long long>(it.value));
        EXPECT_EQ(writer.data(), it.bytes) << it.value;
    }
}

} // namespace
