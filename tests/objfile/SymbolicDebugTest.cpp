#include "objfile/query/SymbolicDebug.h"

#include "objfile/TestProgram.h"
#include "objfile/format/TOBFfiles.h"
#include "objfile/query/FileMappings.h"

#include "TestFolder.h"

#include <gtest/gtest.h>

#include <optional>

namespace {

QString nameOf(TOBFObject* object)
{
    return object != nullptr ? QString::fromStdString(object->getName()->str())
                             : QStringLiteral("(none)");
}

/// Two functions of two files, variables, and symbols of every kind.
class SymbolicDebugTest : public testing::Test {
protected:
    SymbolicDebugTest()
    {
        TestProgram program;
        code(program);
        data(program);
        m_module = program.finish();
        m_debug.emplace(m_module.get(), Path(QStringLiteral("/tmp/test.kvx")));
    }

    static void code(TestProgram& program)
    {
        TOBFType* integer = TestProgram::integer(2, "int");
        program.section("CODE", SectionKind::Code, 0x1000);
        program.beginFunction("_main");
        program.line("/src/main.c", 10);
        program.bytes({2, 4});
        program.line("/src/main.c", 12);
        program.bytes({2});
        program.symbol("count", TestProgram::atRegister(1, -2), integer);
        program.beginScope();
        program.symbol("count", TestProgram::atRegister(1, -4), integer);
        program.line("/src/main.c", 11);
        program.bytes({4});
        program.endScope();
        program.line("/src/main.c", 10);
        program.bytes({2});
        program.endScope();
        program.fragment();
        program.noLine();
        program.bytes({2}); // no position: 0x100E
        program.symbol("inner", program.here());
        program.bytes({2});
        program.line("/src/other.c", 5);
        program.beginFunction("helper");
        program.bytes({2});
        program.endScope();
    }

    static void data(TestProgram& program)
    {
        TOBFStrucType* point = TestProgram::structure("point", 4);
        TestProgram::field(point, "x", TestProgram::integer(2), 0);
        program.section("DATA", SectionKind::Data, 0x200);
        program.declared(program.variable("origin", TestProgram::pointer(point)), "/src/main.c", 3);
        program.declared(program.symbol("state", program.here(), TestProgram::integer(2)),
                         "/src/main.c", 4);
        program.bytes({2});
        program.declared(program.symbol("_state", program.here(), TestProgram::integer(2)),
                         "/src/other.c", 4);
        program.bytes({2});
        program.absolute("___FLASH_Size", 0x100F);
        program.symbol("unresolved", nullptr);
        program.absolute("_both", 1);
        program.absolute("both", 2);
    }

    /// "file:line" of an address.
    QString source(unsigned address) const
    {
        QString file;
        unsigned line = 0;
        if (!m_debug->sourceAddressMapping().AddressToSource(address, file, line))
            return QStringLiteral("(none)");
        return file + u':' + QString::number(line);
    }

    OwnedModule m_module;
    std::optional<SymbolicDebug> m_debug;
};

TEST_F(SymbolicDebugTest, ItemsAreFoundByTheirFirstByte)
{
    for (const unsigned address : {0x1000U, 0x1002U, 0x1006U, 0x1008U, 0x1012U})
        EXPECT_NE(m_debug->GetInsn(address), nullptr) << address;
    for (const unsigned address : {0U, 0xFFFU, 0x1001U, 0x1003U, 0x1014U, 0x200U, 0xFFFFFFFFU})
        EXPECT_EQ(m_debug->GetInsn(address), nullptr) << address;
}

TEST_F(SymbolicDebugTest, SectionsHoldTheirSpan)
{
    EXPECT_EQ(nameOf(m_debug->getSection(0x1000)), u"CODE");
    EXPECT_EQ(nameOf(m_debug->getSection(0x1013)), u"CODE");
    EXPECT_EQ(nameOf(m_debug->getSection(0x205)), u"DATA");
    EXPECT_EQ(m_debug->getSection(0x206), nullptr);
    EXPECT_EQ(m_debug->getSection(0x1FF), nullptr);
}

TEST_F(SymbolicDebugTest, SymbolsAreFoundByValue)
{
    using Find = TOBFSymbol* (SymbolicDebug::*)(int, bool) const;
    constexpr Find any = &SymbolicDebug::findSymbol;
    constexpr Find codeOnly = &SymbolicDebug::findCodeSymbol;
    constexpr Find dataOnly = &SymbolicDebug::findDataSymbol;
    constexpr Find function = &SymbolicDebug::findFunctionSymbol;
    const struct {
        Find find;
        int address;
        bool exact;
        const char* name;
    } cases[] = {
        {any, 0, false, "(none)"},           {any, 1, true, "_both"},
        {any, 0x1FF, false, "both"},         {any, 0x200, true, "origin"},
        {any, 0x201, true, "(none)"},        {any, 0x201, false, "origin"},
        {any, 0x7FFFFFFF, false, "helper"},  {any, -1, false, "(none)"},
        {codeOnly, 0x1000, true, "_main"},   {codeOnly, 0x1004, false, "_main"},
        {codeOnly, 0x203, false, "(none)"},  {codeOnly, 1, true, "(none)"}, // absolute
        {codeOnly, 0x100F, true, "(none)"},  {dataOnly, 0x200, true, "origin"},
        {dataOnly, 0x201, false, "origin"},  {dataOnly, 0x1000, true, "(none)"},
        {dataOnly, 1, true, "(none)"},       {function, 0x1000, true, "_main"},
        {function, 0x1002, true, "(none)"},  {function, 0x1006, false, "_main"},
        {function, 0x100F, false, "_main"},  // past a linker's number of that value
        {function, 0x1011, false, "(none)"}, // the label ahead isn't a function
        {function, 0x1013, false, "helper"},
    };
    for (const auto& it : cases)
        EXPECT_EQ(nameOf(((*m_debug).*it.find)(it.address, it.exact)), QString::fromLatin1(it.name))
            << std::hex << it.address << " case " << &it - cases;
}

TEST_F(SymbolicDebugTest, TheClosestLabelStandsAheadInTheFragment)
{
    EXPECT_EQ(nameOf(m_debug->findClosestSymbol(0x100A)), u"(none)"); // no item begins there
    EXPECT_EQ(nameOf(m_debug->findClosestSymbol(0x100C)), u"_main");
    EXPECT_EQ(nameOf(m_debug->findClosestSymbol(0x100E)), u"(none)"); // ahead of any label
    EXPECT_EQ(nameOf(m_debug->findClosestSymbol(0x1010)), u"inner");
    EXPECT_EQ(nameOf(m_debug->findClosestSymbol(0x1012)), u"helper");
}

TEST_F(SymbolicDebugTest, AddressesHaveTheirLine)
{
    EXPECT_EQ(source(0x1000), u"/src/main.c:10");
    EXPECT_EQ(source(0x1003), u"/src/main.c:10"); // inside an instruction
    EXPECT_EQ(source(0x1006), u"/src/main.c:12");
    EXPECT_EQ(source(0x1008), u"/src/main.c:11");
    EXPECT_EQ(source(0x100C), u"/src/main.c:10");
    EXPECT_EQ(source(0x1012), u"/src/other.c:5");
    for (const unsigned address : {0x100EU, 0xFFFU, 0x1014U, 0x200U})
        EXPECT_EQ(source(address), u"(none)") << address;
}

TEST_F(SymbolicDebugTest, StatementsAreRunsOfOnePosition)
{
    const struct {
        unsigned address, start, length;
    } cases[] = {{0x1000, 0x1000, 6}, {0x1002, 0x1000, 6}, {0x1005, 0x1000, 6}, {0x1006, 0x1006, 2},
                 {0x1009, 0x1008, 4}, {0x100C, 0x100C, 2}, {0x1012, 0x1012, 2}};
    for (const auto& it : cases) {
        unsigned start = 0;
        unsigned length = 0;
        ASSERT_TRUE(m_debug->sourceAddressMapping().AddressToRange(it.address, start, length));
        EXPECT_EQ(start, it.start) << it.address;
        EXPECT_EQ(length, it.length) << it.address;
    }
    unsigned start = 0;
    unsigned length = 0;
    EXPECT_FALSE(m_debug->sourceAddressMapping().AddressToRange(0x100E, start, length));
    EXPECT_FALSE(m_debug->sourceAddressMapping().AddressToRange(0x5000, start, length));
}

TEST_F(SymbolicDebugTest, LinesHaveTheirFirstAddress)
{
    const SourceAddressMapping& mapping = m_debug->sourceAddressMapping();
    const QString main = QStringLiteral("/src/main.c");
    unsigned address = 0;
    unsigned length = 0;
    ASSERT_TRUE(mapping.SourceToAddress(main, 10, address, length));
    EXPECT_EQ(address, 0x1000U);
    EXPECT_EQ(length, 6U);
    ASSERT_TRUE(mapping.SourceToAddress(main, 11, address));
    EXPECT_EQ(address, 0x1008U);
    for (const unsigned line : {0U, 9U, 13U})
        EXPECT_FALSE(mapping.SourceToAddress(main, line, address)) << line;
    EXPECT_FALSE(mapping.SourceToAddress(QStringLiteral("main.c"), 10, address));
    // The last statement runs into the end of its fragment.
    ASSERT_TRUE(mapping.SourceToAddress(QStringLiteral("/src/other.c"), 5, address));
    EXPECT_EQ(address, 0x1012U);
    EXPECT_FALSE(mapping.SourceToAddress(QStringLiteral("/src/other.c"), 5, address, length));

    EXPECT_EQ(mapping.getLineNumbers(main), (SourceAddressMapping::Lines{10, 12, 11, 10}));
    EXPECT_TRUE(mapping.getLineNumbers(QStringLiteral("none.c")).empty());
    EXPECT_EQ(mapping.fileNames().size(), 2);
}

TEST_F(SymbolicDebugTest, NamesAreTriedAsTheyStandAndWithAnUnderscore)
{
    const auto module = [&](const char* name) {
        return nameOf(m_debug->findModuleSymbol(QString::fromLatin1(name)));
    };
    const auto global = [&](const char* name) {
        return nameOf(m_debug->findGlobalSymbol(QString::fromLatin1(name)));
    };
    EXPECT_EQ(global("main"), u"_main");
    EXPECT_EQ(global("_main"), u"_main");
    EXPECT_EQ(global("helper"), u"helper");
    EXPECT_EQ(global("state"), u"(none)"); // not public
    EXPECT_EQ(module("both"), u"both");
    EXPECT_EQ(module("_both"), u"_both");
    EXPECT_EQ(module("count"), u"(none)"); // of a function
}

TEST_F(SymbolicDebugTest, DeclarationsTellNamesakesApart)
{
    const auto declared = [&](const char* name, const char* file, int line) {
        return nameOf(m_debug->findDeclaredSymbol(QString::fromLatin1(name),
                                                  QString::fromLatin1(file), line));
    };
    EXPECT_EQ(declared("state", "/src/main.c", 0), u"state");
    EXPECT_EQ(declared("state", "/src/other.c", 0), u"_state");
    EXPECT_EQ(declared("state", "/src/other.c", 4), u"_state");
    EXPECT_EQ(declared("state", "/src/other.c", 5), u"(none)");
    EXPECT_EQ(declared("main", "/src/main.c", 0), u"(none)");
}

TEST_F(SymbolicDebugTest, TheInnermostScopeWins)
{
    EXPECT_EQ(m_debug->findScope(0xFFF), nullptr);
    EXPECT_EQ(m_debug->findScope(0x1000)->scopeKind(), TAG_SCOPE_FUNCTION);
    EXPECT_EQ(m_debug->findScope(0x1008)->scopeKind(), TAG_SCOPE_BLOCK);
    EXPECT_EQ(m_debug->findScope(0x100C)->scopeKind(), TAG_SCOPE_FUNCTION);
    EXPECT_EQ(m_debug->findScope(0x100E), nullptr); // the end is outside
    EXPECT_EQ(m_debug->findScope(0x1008)->symbols().size(), 1U);
    EXPECT_NE(m_debug->findScopedSymbol(QStringLiteral("count"), 0x1008),
              m_debug->findScopedSymbol(QStringLiteral("count"), 0x100C));
    EXPECT_EQ(m_debug->findScopedSymbol(QStringLiteral("count"), 0x1012), nullptr);
    // Outward to the module.
    EXPECT_EQ(nameOf(m_debug->findScopedSymbol(QStringLiteral("origin"), 0x1008)), u"origin");
}

TEST_F(SymbolicDebugTest, StructuresAreFoundByTheirTag)
{
    for (const char* const name : {"point", "struct point"}) {
        TOBFType* type = m_debug->findNamedType(QString::fromLatin1(name));
        ASSERT_NE(type, nullptr) << name;
        EXPECT_EQ(type->size(), 4);
    }
    for (const char* const name : {"int", "structpoint", "struct ", ""})
        EXPECT_EQ(m_debug->findNamedType(QString::fromLatin1(name)), nullptr) << name;
}

TEST(SymbolicDebugOfDamagedModules, GivesNothing)
{
    TestProgram program;
    program.section("CODE", SectionKind::Code, 0x1000);
    // A pointer to itself, a symbol that is its own value, scopes that overlap.
    auto* self = static_cast<TOBFPtrType*>(TestProgram::pointer(nullptr));
    self->setTarget(self);
    TOBFSymbol* loop = program.symbol("loop", nullptr, self);
    loop->setDefinition(new TOBFSymbolExpr(loop));
    program.beginScope();
    program.bytes({2});
    program.endScope();
    const OwnedModule module = program.finish();
    SymbolicDebug debug(module.get(), Path());
    EXPECT_EQ(debug.findSymbol(0, true), nullptr);
    EXPECT_EQ(debug.findNamedType(QStringLiteral("loop")), nullptr);
    EXPECT_NE(debug.findModuleSymbol(QStringLiteral("loop")), nullptr);
}

TEST(SymbolicDebugOfScopes, AnyNestingIsSearched)
{
    TestProgram program;
    program.section("CODE", SectionKind::Code, 0x1000);
    constexpr int Depth = 1500;
    for (int i = 0; i < Depth; ++i)
        program.beginScope();
    program.absolute("deepest", 1);
    program.bytes({2});
    for (int i = 0; i < Depth; ++i)
        program.endScope();
    SymbolicDebug debug(program.module(), Path());
    // All have the same span: the last one is the innermost.
    EXPECT_EQ(nameOf(debug.findScopedSymbol(QStringLiteral("deepest"), 0x1001)), u"deepest");
}

TEST(SymbolicDebugOfEmptyModules, GivesNothing)
{
    const OwnedModule module = TestProgram().finish();
    const SymbolicDebug debug(module.get(), Path());
    EXPECT_EQ(debug.GetInsn(0), nullptr);
    EXPECT_EQ(debug.findSymbol(0, false), nullptr);
    EXPECT_EQ(debug.findScope(0), nullptr);
    unsigned address = 0;
    EXPECT_FALSE(debug.sourceAddressMapping().SourceToAddress(QString(), 0, address));
}

TEST(TOBFfilesIndex, IsSharedUntilItsLastRelease)
{
    const TestFolder folder;
    TestProgram program;
    program.section("CODE", SectionKind::Code, 0x1000);
    program.global("main");
    program.bytes({2});
    const Bytes bytes = program.written();
    const Path path(folder.write("a.kvx", {bytes.begin(), bytes.end()}));
    SymbolicDebug* first = TOBFfiles::getSymbolicDebug(path);
    ASSERT_NE(first, nullptr);
    EXPECT_EQ(TOBFfiles::getSymbolicDebug(path), first);
    TOBFModule* module = TOBFfiles::getModule(path);
    EXPECT_EQ(module, first->module());
    EXPECT_EQ(first->path(), path);
    TOBFfiles::release(first);
    EXPECT_NE(first->findGlobalSymbol(QStringLiteral("main")), nullptr);
    TOBFfiles::release(first);
    // The module stays for the one who holds it; a new index is made for it.
    SymbolicDebug* second = TOBFfiles::getSymbolicDebug(path);
    EXPECT_EQ(second->module(), module);
    TOBFfiles::release(module);
    TOBFfiles::release(second);
    EXPECT_THROW(TOBFfiles::getSymbolicDebug(Path(folder / "none.kvx")), HException);
}

TEST(TOBFfilesIndex, FilesWithoutAModuleHaveNone)
{
    const TestFolder folder;
    const Path path(folder.write("empty.kvx", std::string{"\0\x26", 2}));
    EXPECT_EQ(TOBFfiles::getSymbolicDebug(path), nullptr);
}

TEST(FileMappings, GoBothWays)
{
    FileMappings mappings;
    mappings.add(2, 0x1004, 2);
    mappings.add(1, 0x1000, 4);
    mappings.create();
    EXPECT_EQ(mappings.lineOf(0x1000), 1);
    EXPECT_EQ(mappings.lineOf(0x1003), 1);
    EXPECT_EQ(mappings.lineOf(0x1005), 2);
    EXPECT_EQ(mappings.lineOf(0x1006), FileMappings::None);
    EXPECT_EQ(mappings.lineOf(0xFFF), FileMappings::None);
    unsigned address = 0;
    ASSERT_TRUE(mappings.addressOf(2, address));
    EXPECT_EQ(address, 0x1004U);
    EXPECT_FALSE(mappings.addressOf(3, address));
}

} // namespace
