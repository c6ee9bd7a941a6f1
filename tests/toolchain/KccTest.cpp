#include "toolchain/kcc/Kcc.h"

#include "objfile/model/TOBFExpr.h"
#include "objfile/model/TOBFInsn.h"
#include "objfile/model/TOBFMarker.h"
#include "objfile/model/TOBFType.h"
#include "toolchain/ToolTestSupport.h"
#include "toolchain/common/Dependencies.h"
#include "toolchain/common/ObjectOutput.h"
#include "toolchain/kcc/VectorPragma.h"

#include <gmock/gmock.h>

#include <cstdlib>
#include <map>
#include <set>

using testing::HasSubstr;

namespace {

TEST(Dependencies, AreReadFromARuleOfMake)
{
    EXPECT_EQ(parseDependencies("x.o: a.c b.h \\\n  c\\ d.h $$e.h \\\n f\\#g.h\n"),
              "a.c;b.h;c d.h;$e.h;f#g.h");
    EXPECT_EQ(parseDependencies("x.o:"), "");
    EXPECT_EQ(parseDependencies(""), "");
}

TEST(VectorPragma, BecomesAnAttributeOnItsLine)
{
    const struct {
        const char *text, *result;
    } cases[] = {
        {"#pragma vector=TIMERA0_VECTOR\nx\n", "__gantry_vector(TIMERA0_VECTOR)\nx\n"},
        {"  #  pragma  vector = 0x0C // timer\r\n", "__gantry_vector(0x0C)\n"},
        {"#pragma once\n", "#pragma once\n"},
        {"int vector=1;", "int vector=1;"},
    };
    for (const auto& it : cases)
        EXPECT_EQ(VectorPragma::rewrite(it.text), it.result);
}

class Kcc : public testing::Test {
protected:
    void SetUp() override
    {
        if (std::system("clang --version > /dev/null 2>&1") != 0)
            GTEST_SKIP() << "clang is not installed";
    }

    std::string compile(const std::string& text, std::vector<std::string> words = {})
    {
        words.insert(words.end(),
                     {"-J/none", m_folder.write("x.c", text), "-o", m_folder / "x.kvo"});
        const std::string said = runTool(kcc, "kcc", words);
        if (m_folder.has("x.kvo"))
            m_module = readModule(m_folder / "x.kvo");
        return said;
    }

    std::string listing(const char* section) const
    {
        std::string result;
        TOBFSection* it = m_module->findSection(HString::intern(section));
        if (it == nullptr)
            return "none";
        for (TOBFFragment* fragment : it->fragments())
            for (TOBFInsn* insn : fragment->insns())
                result += insn->printString() + "\n";
        return result;
    }

    static std::string location(const TOBFScope* scope, const char* name)
    {
        const auto it = scope->symbols().find(HString::intern(name));
        if (it == scope->symbols().end())
            return "none";
        return it->second->definition() != nullptr ? it->second->definition()->printString()
                                                   : "nowhere";
    }

    TOBFScope* functionScope(const char* name) const
    {
        for (TOBFScope* scope : m_module->children())
            if (scope->functionSymbol() != nullptr
                && scope->functionSymbol()->name()->view() == name)
                return scope;
        return nullptr;
    }

    TestFolder m_folder;
    std::unique_ptr<TOBFModule, ReleaseReadModule> m_module;
};

TEST_F(Kcc, CodeKeepsItsSymbolsAndLabels)
{
    EXPECT_EQ(compile("int g; extern int e; int f(int n) { while (n--) g += e; return g; }"), "");
    const std::string code = listing("CODE");
    EXPECT_THAT(code, HasSubstr("&e"));
    EXPECT_THAT(code, HasSubstr("&g"));
    EXPECT_THAT(code, testing::ContainsRegex("\tJ[A-Z]+\t@[0-9]+\n"));
}

TEST_F(Kcc, SectionsHaveTheNamesOfTheOptions)
{
    const char* const text =
        "int d = 1; int z; const int k[2] = {1, 2}; int f(void) { return d + z + k[d]; }"
        "__attribute__((interrupt(5))) void i(void) {}"
        "__attribute__((section(\"MINE\"))) int m = 3;";
    const auto names = [&] {
        std::set<std::string> result;
        for (TOBFSection* section : m_module->sections())
            result.insert(section->name()->str() + "/"
                          + std::to_string(static_cast<int>(section->sectionKind()))
                          + (section->isLoaded() ? "L" : ""));
        return result;
    };
    EXPECT_EQ(compile(text), "");
    EXPECT_EQ(names(),
              (std::set<std::string>{"CODE/1L", "IDATA0/2", "UDATA0/3", "CONST/4L", "INTVEC/4L",
                                     "MINE/2"}));
    EXPECT_THAT(listing("INTVEC"), HasSubstr("\tORG\t10\n\tDA\ti\n"));
    EXPECT_EQ(compile(text, {"-Rc,C", "-Rd,D", "-Rz,Z", "-Rk,K", "-Rv,V"}), "");
    EXPECT_EQ(names(), (std::set<std::string>{"C/1L", "D/2", "Z/3", "K/4L", "V/4L", "MINE/2"}));
}

TEST_F(Kcc, TablesOfAddressesLeadIntoCode)
{
    EXPECT_EQ(
        compile("int f(int n) { switch (n) { case 0: return 7; case 1: return 3; case 2: return 99;"
                " case 3: return 4; case 4: return 1; case 5: return 55; } return 0; }",
                {"-Or-"}),
        "");
    EXPECT_THAT(listing("CONST"), testing::ContainsRegex("\tDA\t@[0-9]+\n\tDA\t@[0-9]+\n"));
}

TEST_F(Kcc, LocalsCountFromTheReturnAddress)
{
    EXPECT_EQ(compile("int f(int a, int b) { int c[3] = {a, b, a}; for (int i = 0; i < 3; i++) { "
                      "int k = c[i]; b += k; }"
                      " return b; }",
                      {"-g", "-Or-"}),
              "");
    const TOBFScope* scope = functionScope("f");
    ASSERT_NE(scope, nullptr);
    // Every local has a slot of its own below the return address.
    std::set<std::string> places = {location(scope, "a"), location(scope, "b"),
                                    location(scope, "c")};
    const TOBFScope* loop = scope->children().front();
    places.insert(location(loop, "i"));
    places.insert(location(loop->children().front(), "k"));
    EXPECT_EQ(places.size(), 5u);
    for (const std::string& place : places)
        EXPECT_THAT(place, testing::MatchesRegex("-[0-9]+\\[SP\\]"));
    // The depth is 0 at the first instruction, and that of the frame in the body.
    std::vector<int> depths;
    for (TOBFInsn* insn :
         m_module->findSection(HString::intern("CODE"))->fragments().front()->insns())
        if (insn->kind() == TOBFKind::ProcessorInsn)
            depths.push_back(insn->stackAdjustment());
    EXPECT_EQ(depths.front(), 0);
    EXPECT_LE(depths[depths.size() / 2], -12);
    EXPECT_EQ(depths.back(), 0);
}

TEST_F(Kcc, SavedRegistersAreTold)
{
    EXPECT_EQ(compile("int g(int); int f(int a, int b, int c) { int x = g(a); int y = g(b); return "
                      "g(c) + x + y; }",
                      {"-g", "-O-9"}),
              "");
    TOBFSymbol* symbol = m_module->publicSymbols().at(HString::intern("f"));
    const auto* type = static_cast<TOBFFunctionType*>(symbol->type());
    int pushes = 0;
    for (TOBFInsn* insn :
         m_module->findSection(HString::intern("CODE"))->fragments().front()->insns())
        if (insn->kind() == TOBFKind::ProcessorInsn && insn->printString().starts_with("\tPUSH"))
            ++pushes;
    ASSERT_GT(pushes, 0);
    EXPECT_EQ(__builtin_popcount(static_cast<unsigned>(type->savedMask())), pushes);
    EXPECT_EQ(type->savedOffset(), -2 * pushes);
    EXPECT_NE(type->savedMask() & 1 << 10, 0);
}

TEST_F(Kcc, VariablesOfOptimisedCodeHaveBlocks)
{
    EXPECT_EQ(
        compile("int g(int); int f(int a) { int b = g(a) + 1; g(b); return b; }", {"-g", "-O-9"}),
        "");
    const TOBFScope* scope = functionScope("f");
    ASSERT_NE(scope, nullptr);
    std::set<std::string> places;
    for (const TOBFScope* block : scope->children())
        places.insert(location(block, "b"));
    EXPECT_THAT(places, testing::Contains(testing::MatchesRegex("R[0-9]+")));
}

TEST_F(Kcc, TypesAreThoseOfTheSource)
{
    EXPECT_EQ(compile("struct list { struct list *next; unsigned bits : 3; unsigned more : 5; char "
                      "name[4]; } l;"
                      "typedef unsigned short word; word w; enum colour { red = 2, green } c; "
                      "double d; int (*p)(char, long);",
                      {"-g"}),
              "");
    const auto typeOf = [&](const char* name) {
        return m_module->publicSymbols().at(HString::intern(name))->type();
    };
    EXPECT_EQ(typeOf("w")->getName()->view(), "word");
    EXPECT_EQ(typeOf("c")->getName()->view(), "enum colour");
    EXPECT_EQ(typeOf("d")->size(), 8);
    EXPECT_EQ(typeOf("p")->getName()->view(), "(char, long)->(int)*");
    EXPECT_EQ(location(m_module.get(), "green"), "3");
    std::string fields;
    for (TOBFField* field : static_cast<TOBFStrucType*>(typeOf("l"))->fields()) {
        const auto* member = static_cast<TOBFDynamicField*>(field);
        fields += field->name()->str() + " " + std::to_string(member->bitOffset()) + " "
            + std::to_string(member->bitSize()) + ";";
    }
    EXPECT_EQ(fields, "next 0 16;bits 16 3;more 19 5;name 24 32;");
}

TEST_F(Kcc, LinesLeadToTheSource)
{
    EXPECT_EQ(
        compile("int g;\nint f(void)\n{\n  g = 1;\n  g = 2;\n  return g;\n}\n", {"-g", "-Or-"}),
        "");
    std::set<int> lines;
    for (TOBFInsn* insn :
         m_module->findSection(HString::intern("CODE"))->fragments().front()->insns())
        if (insn->kind() == TOBFKind::Locus) {
            EXPECT_EQ(static_cast<TOBFLocus*>(insn)->filename()->file()->str(), m_folder / "x.c");
            lines.insert(static_cast<TOBFLocus*>(insn)->line());
        }
    EXPECT_THAT(lines, testing::IsSupersetOf({4, 5, 6}));
}

TEST_F(Kcc, DependenciesAreTold)
{
    m_folder.write("x.h", "#define N 3\n");
    EXPECT_EQ(compile("#include \"x.h\"\nint n = N;\n"), "");
    EXPECT_EQ(m_module->attribute(HString::intern("dependencies"))->str(),
              (m_folder / "x.c") + ";" + (m_folder / "x.h"));
}

TEST_F(Kcc, ObjectsAreTheSameBytesWhenWrittenAgain)
{
    for (const char* const level : {"-Or-", "-O-9"}) {
        EXPECT_EQ(compile("struct s { struct s *next; int bits : 3; } list; static const char "
                          "text[] = \"abc\";"
                          "int f(int n) { switch (n) { case 1: return text[n]; case 2: return 7; "
                          "case 3: return 1;"
                          " case 4: return 9; case 5: return 3; } for (int i = 0; i < n; i++) "
                          "list.bits += i; return 0; }"
                          "__attribute__((interrupt(5))) void isr(void) { list.bits++; }",
                          {"-g", level}),
                  "");
        const std::string again = m_folder / "again.kvo";
        writeObjectFile(m_module.get(), again);
        EXPECT_EQ(m_folder.read("again.kvo"), m_folder.read("x.kvo")) << level;
    }
}

TEST_F(Kcc, VectorsComeFromThePragma)
{
    EXPECT_EQ(
        compile(
            "#define __gantry_vector(V) __attribute__((interrupt((V) / 2)))\n#define __interrupt\n"
            "#pragma vector=0x7E\n__interrupt void last(void) {}\n"),
        "");
    EXPECT_THAT(listing("INTVEC"), HasSubstr("\tORG\t126\n\tDA\tlast\n"));
}

TEST_F(Kcc, PreprocessesOnly)
{
    const std::string source = m_folder.write("p.c", "#ifdef A\nint a = A;\n#endif\n");
    EXPECT_EQ(runTool(kcc, "kcc", {"-E", "-DA=5", source, "-o", m_folder / "p.i"}), "");
    EXPECT_THAT(m_folder.read("p.i"), HasSubstr("int a = 5;"));
}

TEST_F(Kcc, FailuresLeaveNoObject)
{
    testing::internal::CaptureStderr();
    compile("int f(void) { return x; }\n");
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              (m_folder / "x.c") + "(1): error: use of undeclared identifier 'x'\n");
    EXPECT_FALSE(m_folder.has("x.kvo"));
    testing::internal::CaptureStderr();
    compile("#include \"none.h\"\n");
    EXPECT_THAT(testing::internal::GetCapturedStderr(),
                HasSubstr("x.c(1): fatal error: 'none.h' file not found"));
    EXPECT_EQ(runTool(kcc, "kcc", {m_folder / "none.c", "-o", m_folder / "n.kvo"}),
              "kcc: error: cannot open " + (m_folder / "none.c") + "\n");
    EXPECT_EQ(runTool(kcc, "kcc",
                      {m_folder.write("bad.o",
                                      "\x7F"
                                      "ELF"),
                       "-o", m_folder / "n.kvo"}),
              "kcc: error: the compiler's output cannot be read (it is cut off)\n");
}

TEST(KccWithoutClang, SaysWhatToInstall)
{
    const TestFolder folder;
    const std::string path = std::getenv("PATH");
    setenv("PATH", "/none", 1);
    EXPECT_EQ(runTool(kcc, "kcc", {folder.write("x.c", "int x;"), "-o", folder / "x.kvo"}),
              "kcc: fatal: the compiler clang is not installed; install the package clang\n");
    setenv("PATH", path.c_str(), 1);
}

} // namespace
