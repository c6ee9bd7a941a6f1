#include "objfile/query/TOBFObjectFileInterface.h"

#include "objfile/TestProgram.h"
#include "objfile/query/ObjectDisassembler.h"

#include "TestFolder.h"

#include <gtest/gtest.h>

#include <optional>

namespace {

/// Notes what it is given and answers with it.
class NotedBytes : public ObjectDisassembler {
public:
    NotedBytes() { active = this; }
    ~NotedBytes() override { active = nullptr; }

    void setDisassembleRange(unsigned, unsigned size, const unsigned char*) override
    {
        m_size = size;
    }
    QString disassembleInstructionWithoutMemoryAccess(unsigned address) override
    {
        return QStringLiteral("%1: %2 bytes").arg(address, 0, 16).arg(m_size);
    }

private:
    unsigned m_size = 0;
};

class ObjectFileTest : public testing::Test {
protected:
    TOBFObjectFileInterface& write()
    {
        const Bytes bytes = m_program.written();
        m_file.emplace(Path(m_folder.write("a.kvx", {bytes.begin(), bytes.end()})));
        return *m_file;
    }

    /// The symbols in the order of their names.
    std::map<QString, SymbolInformation> symbols(TOBFObjectFileInterface& file)
    {
        std::map<QString, SymbolInformation> result;
        file.iterateSymbols();
        while (const SymbolInformation* it = file.nextSymbol())
            EXPECT_TRUE(result.emplace(it->symbolName(), *it).second) << "twice";
        return result;
    }

    TestFolder m_folder;
    TestProgram m_program;
    std::optional<TOBFObjectFileInterface> m_file;
};

TEST_F(ObjectFileTest, SymbolsAreOfTheirKind)
{
    m_program.section("CODE", SectionKind::Code, 0x1000);
    m_program.beginFunction("main");
    m_program.bytes({2, 4});
    m_program.symbol("local", TestProgram::atRegister(1, -2), TestProgram::integer(2));
    m_program.symbol("fast", new TOBFRegisterExpr(5), TestProgram::integer(2));
    m_program.endScope();
    m_program.global("label");
    m_program.global("hidden$1");
    m_program.section("DATA", SectionKind::Data, 0x200);
    m_program.declared(m_program.variable("counter", TestProgram::integer(4, "long")), "/src/a.c",
                       7);
    m_program.absolute("limit", 99, TestProgram::integer(2));
    m_program.symbol("nowhere", nullptr);

    const auto found = symbols(write());
    ASSERT_EQ(found.size(), 4U);
    const SymbolInformation& main = found.at(QStringLiteral("main"));
    EXPECT_EQ(main.itemType(), SymbolInformation::Function);
    EXPECT_EQ(main.rangeString(), u"00001000-00001005");
    EXPECT_TRUE(main.access());
    const SymbolInformation& label = found.at(QStringLiteral("label"));
    EXPECT_EQ(label.itemType(), SymbolInformation::Label);
    EXPECT_EQ(label.rangeString(), u"00001006");
    const SymbolInformation& counter = found.at(QStringLiteral("counter"));
    EXPECT_EQ(counter.itemType(), SymbolInformation::Object);
    EXPECT_EQ(counter.size(), 4U);
    EXPECT_EQ(counter.end(), 0x203U);
    EXPECT_EQ(counter.line(), 7);
    EXPECT_EQ(counter.fileNameString(), u"/src/a.c");
    EXPECT_EQ(counter.dataTypeString(), u"long");
    EXPECT_EQ(counter.sectionString(), u"DATA");
    EXPECT_EQ(counter.valueString(), u"00000200");
    EXPECT_EQ(counter.sizeString(), u"4");
    const SymbolInformation& limit = found.at(QStringLiteral("limit"));
    EXPECT_EQ(limit.itemType(), SymbolInformation::Absolute);
    EXPECT_FALSE(limit.access());
}

TEST_F(ObjectFileTest, SizesCountByKind)
{
    const struct {
        const char* name;
        SectionKind kind;
        int size;
    } sections[] = {{"A", SectionKind::Code, 4},   {"B", SectionKind::Data, 2},
                    {"C", SectionKind::Zeroed, 1}, {"D", SectionKind::Const, 3},
                    {"E", SectionKind::Eeprom, 4}, {"F", SectionKind::Code, 1}};
    long pc = 0x1000;
    for (const auto& it : sections) {
        m_program.section(it.name, it.kind, pc += 0x100);
        m_program.bytes({it.size});
    }
    TOBFObjectFileInterface& file = write();
    EXPECT_EQ(file.codeSize(), 5U);
    EXPECT_EQ(file.dataSize(), 3U);
    EXPECT_EQ(file.constSize(), 3U);
}

TEST_F(ObjectFileTest, SegmentsNeedBothOfTheirSymbols)
{
    m_program.section("CODE", SectionKind::Code, 0x1100);
    m_program.bytes({4, 2});
    m_program.absolute("___FLASH_Address", 0x1100);
    m_program.absolute("___FLASH_Size", 0x100);
    m_program.absolute("___RAM_Address", 0x200);
    m_program.absolute("___INFO_Size", 0x80);
    m_program.absolute("__FLASH_Address", 1);
    std::vector<SegmentInformation> segments;
    write().getSegments(segments);
    ASSERT_EQ(segments.size(), 1U);
    EXPECT_EQ(segments[0].name, u"FLASH");
    EXPECT_EQ(segments[0].start, 0x1100U);
    EXPECT_EQ(segments[0].size, 0x100U);
    EXPECT_EQ(segments[0].used, 6U);
}

TEST_F(ObjectFileTest, UndefinedSegmentSymbolsAreNamed)
{
    m_program.absolute("___FLASH_Address", 0x1100);
    m_program.absolute("___FLASH_Size", 0x100);
    m_program.symbol("___RAM_Address", nullptr);
    std::vector<SegmentInformation> segments;
    try {
        write().getSegments(segments);
        ADD_FAILURE();
    } catch (const HException& error) {
        EXPECT_EQ(error.message(), "undefined symbol ___RAM_Address");
    }
    EXPECT_EQ(segments.size(), 1U);
}

TEST_F(ObjectFileTest, SectionsAreRunsWithoutAGap)
{
    m_program.section("CODE", SectionKind::Code, 0x1100);
    m_program.bytes({4, 2});
    m_program.section("CODE", SectionKind::Code, 0x1106);
    m_program.bytes({2});
    m_program.section("CODE", SectionKind::Code, 0x1200);
    m_program.here();
    m_program.bytes({1});
    m_program.absolute("___FLASH_Address", 0x1100);
    m_program.absolute("___FLASH_Size", 0x100);
    std::vector<SectionInformation> sections;
    write().getSections(sections);
    ASSERT_EQ(sections.size(), 2U);
    EXPECT_EQ(sections[0].start, 0x1100U);
    EXPECT_EQ(sections[0].size, 8U);
    EXPECT_EQ(sections[0].segment, u"FLASH");
    EXPECT_EQ(sections[0].kind, u"code");
    EXPECT_EQ(sections[1].start, 0x1200U);
    EXPECT_EQ(sections[1].size, 1U);
    EXPECT_EQ(sections[1].segment, u"");
}

TEST_F(ObjectFileTest, LinesAreDisassembledRunByRun)
{
    m_program.section("CODE", SectionKind::Code, 0x1100);
    m_program.line("/src/a.c", 5);
    m_program.bytes({2, 4});
    m_program.line("/src/a.c", 6);
    m_program.bytes({2});
    m_program.line("/src/a.c", 5);
    m_program.bytes({2});
    TOBFObjectFileInterface& file = write();
    FileMappings mappings;
    const Path source(QStringLiteral("/src/a.c"));
    EXPECT_FALSE(file.disassemble(source, 5, &mappings)); // nothing there to do it
    const NotedBytes disassembler;
    EXPECT_TRUE(file.disassemble(source, 5, &mappings));
    EXPECT_EQ(file.disassemblyLines(),
              (QStringList{QStringLiteral("1100: 2 bytes"), QStringLiteral("1102: 4 bytes"),
                           QStringLiteral("1108: 2 bytes")}));
    EXPECT_EQ(mappings.lineOf(0x1104), 2);
    EXPECT_EQ(mappings.lineOf(0x1106), FileMappings::None);
    EXPECT_FALSE(file.disassemble(source, 7, &mappings));
    EXPECT_FALSE(file.disassemble(Path(QStringLiteral("/src/b.c")), 5, &mappings));
}

TEST_F(ObjectFileTest, HiddenItemsAreLeftOut)
{
    m_program.section("CODE", SectionKind::Code, 0x1100);
    m_program.line("/src/a.c", 5);
    m_program.instruction(0x4303);
    const Bytes bytes = writeModule(m_program.module(), true);
    TOBFObjectFileInterface file(Path(m_folder.write("h.kvx", {bytes.begin(), bytes.end()})));
    const NotedBytes disassembler;
    FileMappings mappings;
    EXPECT_FALSE(file.disassemble(Path(QStringLiteral("/src/a.c")), 5, &mappings));
}

TEST(ObjectFile, ThatCantBeReadIsEmpty)
{
    TOBFObjectFileInterface file(Path(QStringLiteral("/no/such/file.kvx")));
    EXPECT_EQ(file.codeSize(), 0U);
    file.iterateSymbols();
    EXPECT_EQ(file.nextSymbol(), nullptr);
    std::vector<SegmentInformation> segments;
    file.getSegments(segments);
    EXPECT_TRUE(segments.empty());
    std::vector<SectionInformation> sections;
    file.getSections(sections);
    EXPECT_TRUE(sections.empty());
}

} // namespace
