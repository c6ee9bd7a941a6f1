#include "objfile/listing/DumpSections.h"

#include "objfile/TestProgram.h"
#include "objfile/listing/SourceLine.h"

#include "TestFolder.h"

#include <gtest/gtest.h>

namespace {

class Lines final : public DumpSections {
public:
    /// The lines that aren't empty.
    std::vector<std::string> of(TOBFModule* module, SourceLine* source, bool withLabels)
    {
        doit(module, source, source != nullptr, withLabels);
        return std::move(m_lines);
    }

protected:
    void outputLine(const std::string& line, TOBFInsn*) override
    {
        if (!line.empty())
            m_lines.push_back(line);
    }

private:
    std::vector<std::string> m_lines;
};

using Expected = std::vector<std::string>;

TEST(DumpSections, HeadingsTellKindAndLoading)
{
    TestProgram program;
    const struct {
        const char* name;
        SectionKind kind;
    } sections[] = {{"A", SectionKind::Code},   {"B", SectionKind::Data},
                    {"C", SectionKind::Zeroed}, {"D", SectionKind::Const},
                    {"E", SectionKind::Eeprom}, {"F", SectionKind::Unspecified}};
    for (const auto& it : sections)
        program.section(it.name, it.kind, 0x1000);
    program.module()->findSection(TestProgram::name("C"))->setFlags(3);
    EXPECT_EQ(Lines().of(program.module(), nullptr, false),
              (Expected{"SECTION CODE A [LOAD=YES]", "SECTION DATA B [LOAD=YES]",
                        "SECTION BSS C [LOAD=NO]", "SECTION CONST D [LOAD=YES]",
                        "SECTION EEPROM E [LOAD=YES]", "SECTION F [LOAD=YES]"}));
}

TEST(DumpSections, ItemsHaveAddressBytesAndText)
{
    TestProgram program;
    program.section("CODE", SectionKind::Code, 0x1000);
    program.word(0xBEEF);
    program.section("CODE", SectionKind::Code, 0x12344);
    program.word(0x4303);
    program.section("CODE", SectionKind::Code, -1);
    program.module()->findSection(TestProgram::name("CODE"))->addInsn(new TOBFFillInsn(12, 0x5A));
    EXPECT_EQ(
        Lines().of(program.module(), nullptr, false),
        (Expected{"SECTION CODE CODE [LOAD=YES]", "1000  efbe              \tDW\t48879\t// 48879",
                  "12344  0343              \tDW\t17155\t// 17155",
                  "      5a5a5a5a5a5a5a5a  \t.FILL\t12, 90"}));
}

TEST(DumpSections, SourceLinesStandAheadOfTheirFirstItem)
{
    const TestFolder folder;
    const std::string path = folder.write("a.c", "int x;\nx = 1;\r\nx = 2;\n");
    TestProgram program;
    program.section("CODE", SectionKind::Code, 0x1000);
    program.line(path.c_str(), 2);
    program.bytes({1, 1});
    program.line(path.c_str(), 9);
    program.bytes({1});
    program.line("/no/such/file.c", 1);
    program.bytes({1});
    const OwnedModule module = program.finish();
    SourceLine source;
    EXPECT_EQ(
        Lines().of(module.get(), &source, false),
        (Expected{"SECTION CODE CODE [LOAD=YES]", "   2: x = 1;",
                  "1000  00                \tDB\t0\t// 0", "1001  00                \tDB\t0\t// 0",
                  "   9: File " + path + " line 9***out of range***",
                  "1002  00                \tDB\t0\t// 0",
                  "   1: File /no/such/file.c line 1***out of range***",
                  "1003  00                \tDB\t0\t// 0"}));
}

} // namespace
