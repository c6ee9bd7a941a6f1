// Names, memory, registers and types of a program on a target.

#include "debugger/FakeDebugger.h"
#include "debugger/core/VariableFormatter.h"
#include "objfile/TestProgram.h"

#include <gtest/gtest.h>

#include <optional>

namespace {

struct Case {
    const char* text;
    const char* result;
};

class Evaluator : public testing::Test {
protected:
    Evaluator()
    {
        TestProgram program;
        code(program);
        program.section("DATA", SectionKind::Zeroed, 0x200);
        scalars(program);
        aggregates(program);
        spaces(program);
        m_module = program.finish();
        m_debug.emplace(m_module.get(), Path());
        m_target.emplace(*m_debug);
        m_target->registers[0] = 0x1002;
        m_target->registers[1] = 0x400;
    }

    static void code(TestProgram& program)
    {
        program.section("CODE", SectionKind::Code, 0x1000);
        program.beginFunction("main");
        program.bytes({2});
        TOBFType* integer = TestProgram::integer(2, "int");
        program.symbol("local", TestProgram::atRegister(1, -4), integer);
        program.symbol("far", TestProgram::atRegister(4, 6), integer);
        program.symbol("fast", new TOBFRegisterExpr(5), integer);
        program.symbol("narrow", new TOBFRegisterExpr(6), TestProgram::integer(1, "char"));
        program.symbol("wide", new TOBFRegisterExpr(8), TestProgram::integer(4, "long"));
        program.symbol("last", new TOBFRegisterExpr(15), TestProgram::integer(4, "long"));
        program.symbol("optimised", nullptr, integer);
        program.symbol("lost",
                       TOBFBinaryExpr::make(TAG_BASE_OFFSET, new TOBFConstExpr(1),
                                            new TOBFSymbolExpr(program.symbol("no", nullptr))),
                       integer);
        program.bytes({2});
        program.endScope();
    }

    static void scalars(TestProgram& program)
    {
        program.variable("i", TestProgram::integer(2, "int"));                          // 0x200
        program.variable("u", TestProgram::unsignedInteger(2));                         // 0x202
        program.variable("c", TestProgram::integer(1, "signed char"));                  // 0x204
        program.variable("b", new TOBFSimpleType(TAG_CHAR, 1));                         // 0x205
        program.variable("l", TestProgram::integer(4, "long"));                         // 0x206
        program.variable("q", TestProgram::unsignedInteger(8));                         // 0x20A
        program.variable("f", new TOBFFloatType(4));                                    // 0x212
        program.variable("d", new TOBFFloatType(8));                                    // 0x216
        program.variable("untyped", TestProgram::unsignedInteger(2))->setType(nullptr); // 0x21E
        program.absolute("limit", 1000, TestProgram::integer(2, "int"));
        program.absolute("minus", -5, TestProgram::integer(2, "int"));
        program.symbol("loop", nullptr, TestProgram::integer(2));
    }

    static void aggregates(TestProgram& program)
    {
        TOBFType* integer = TestProgram::integer(2, "int");
        TOBFStrucType* node = TestProgram::structure("node", 8);
        TestProgram::field(node, "value", integer, 0);
        TestProgram::field(node, "next", TestProgram::pointer(node), 16);
        TestProgram::field(node, "low", TestProgram::unsignedInteger(2), 32, 3);
        TestProgram::field(node, "mid", TestProgram::unsignedInteger(2), 35, 7);
        TestProgram::field(node, "whole", TestProgram::unsignedInteger(2), 42, 16); // straddles
        TestProgram::field(node, "tail", TestProgram::unsignedInteger(1), 58, 6);
        program.variable("array", new TOBFArrayType(integer, 4));                        // 0x220
        program.variable("p", TestProgram::pointer(integer));                            // 0x228
        program.variable("head", node);                                                  // 0x22A
        program.variable("np", TestProgram::pointer(node));                              // 0x232
        program.variable("nodes", new TOBFArrayType(node, 2));                           // 0x234
        program.variable("matrix", new TOBFArrayType(new TOBFArrayType(integer, 3), 2)); // 0x244
        program.variable("pp", TestProgram::pointer(TestProgram::pointer(integer)));     // 0x250
        program.variable("big",
                         new TOBFArrayType(TestProgram::structure(nullptr, 600), 4)); // 0x252
    }

    static void spaces(TestProgram& program)
    {
        TOBFType* integer = TestProgram::integer(2, "int");
        const auto in = [&](int space) {
            return new TOBFQualifiedType(integer, static_cast<TOBFTag>(space));
        };
        program.section("SPACES", SectionKind::Data, 0x3000);
        program.variable("in_data", in(0x6A));                       // 0x3000
        program.variable("in_code", in(0x6B));                       // 0x3002
        program.variable("in_eeprom", in(0x6C));                     // 0x3004
        program.variable("in_peripheral", in(0x6D));                 // 0x3006
        program.variable("to_code", TestProgram::pointer(in(0x6B))); // 0x3008
        auto* words = static_cast<TOBFPtrType*>(TestProgram::pointer(integer));
        words->setRepresentation(TAG_PTR_REP_ALTERNATIVE);
        program.variable("words", words);                               // 0x300A
        program.variable("code_array", new TOBFArrayType(in(0x6B), 2)); // 0x300C
    }

    std::string value(const std::string& text) { return evaluated(*m_target, text); }
    void check(std::initializer_list<Case> cases)
    {
        for (const Case& it : cases)
            EXPECT_EQ(value(it.text), it.result) << it.text;
    }

    OwnedModule m_module;
    std::optional<SymbolicDebug> m_debug;
    std::optional<FakeDebugger> m_target;
};

/// Wants everything open, and notes the rows.
class OpenBuilder : public VariableListBuilder {
public:
    std::string rows;

    pointerEvalMode getPointerEvalMode(const QString&, const QString&, unsigned, unsigned&) override
    {
        return Value;
    }
    void addPrimitive(const QString& name, const QString&, const ExpressionType& value,
                      const QString&, MarkerType*) override
    {
        rows += name.toStdString() + "=" + value.resolved().toStr(10).toStdString() + " ";
    }
    void* beginObject(const QString& name, const QString&, const ExpressionType&, const QString&,
                      MarkerType*, unsigned) override
    {
        rows += name.toStdString() + "{ ";
        return nullptr;
    }
    void endObject(void*) override { rows += "} "; }
    void* beginArray(const QString& name, const QString& expression, const ExpressionType& value,
                     const QString& type, MarkerType* marker, unsigned size) override
    {
        return beginObject(name, expression, value, type, marker, size);
    }
    void endArray(void* handle) override { endObject(handle); }
};

TEST_F(Evaluator, AStructureIsReadInOneBlock)
{
    const auto walk = [&](const char* name) {
        m_target->reads.clear();
        OpenBuilder builder;
        VariableFormatter(*m_target, builder)
            .formatVariable(QString::fromLatin1(name), QString::fromLatin1(name),
                            m_target->parseAndEvaluate(name));
        return builder.rows;
    };
    using Reads = std::vector<FakeDebugger::Access>;
    m_target->setWord(0x22A, 7);
    m_target->setWord(0x22C, 0x234);
    m_target->setWord(0x22E, 0x0015); // low 5, mid 2
    EXPECT_EQ(walk("head"), "head{ value=7 next=564 low=5 mid=2 whole=0 tail=0 } ");
    EXPECT_EQ(m_target->reads, (Reads{{0x22A, 8}}));
    walk("nodes");
    EXPECT_EQ(m_target->reads, (Reads{{0x234, 16}}));
    walk("matrix");
    EXPECT_EQ(m_target->reads, (Reads{{0x244, 12}}));
}

TEST_F(Evaluator, ReadsScalarsByTheirType)
{
    m_target->setWord(0x200, 0xFFFE);
    m_target->setWord(0x202, 0xFFFE);
    m_target->setWord(0x204, 0x80FF); // c and b
    m_target->setWord(0x206, 0xFFFF);
    m_target->setWord(0x208, 0xFFFF);
    m_target->setWord(0x210, 0x8000);
    m_target->setWord(0x214, 0x3F80);
    m_target->setWord(0x21C, 0xC000);
    m_target->setWord(0x21E, 0x1234);
    check({{"i", "-2 s2"},
           {"u", "65534 u2"},
           {"c", "-1 s1"},
           {"b", "128 u1"},
           {"l", "-1 s4"},
           {"q", "9223372036854775808 u8"},
           {"f", "1 f4"},
           {"d", "-2 f8"},
           {"untyped", "4660 u2"},
           {"limit", "1000 s2"},
           {"minus", "-5 s2"},
           {"main", "4096 u3"}});
}

TEST_F(Evaluator, ReadsLocalsThroughTheFrame)
{
    m_target->setWord(0x3FC, 11);
    m_target->registers[4] = 0x500;
    m_target->setWord(0x506, 12);
    m_target->registers[5] = 0xFFFF;
    m_target->registers[6] = 0x1280;
    m_target->registers[8] = 0x0001;
    m_target->registers[9] = 0x0002;
    check({{"local", "11 s2"},
           {"far", "12 s2"},
           {"fast", "-1 s2"},
           {"narrow", "-128 s1"},
           {"wide", "131073 s4"},
           {"last", "no such register"}, // its second half would be behind the last one
           {"optimised", "optimised symbol not found"},
           {"lost", "invalid address"},
           {"loop", "loop symbol not found"},
           {"nowhere", "nowhere symbol not found"}});
    // Four bytes pushed since the entry; the other register doesn't move.
    m_target->registers[1] = 0x3FC;
    m_target->stackAdjustment = -4;
    check({{"local", "11 s2"}, {"far", "12 s2"}});
    m_target->registers[0] = 0x5000;
    check({{"local", "local symbol not found"}});
}

TEST_F(Evaluator, RegistersHaveTheirNames)
{
    m_target->registers[0] = 0x1234;
    m_target->registers[12] = 0xFFFF;
    check({{"@PC", "4660 u2"},
           {"@R12", "65535 u2"},
           {"@R12 + 1", "0 u2"}, // of the left operand's size
           {"@NOSUCH", "no such register"},
           {"@", "no such register"},
           {"@r12", "no such register"},
           {"@R12 = 5", "5 u2"},
           {"@R12", "5 u2"},
           {"&@PC", "can't take address of register/constant"},
           {"sizeof(@PC)", "2 u4"}});
    m_target->registerLength = 3;
    m_target->registers[12] = 0x12345;
    check({{"@R12", "74565 u3"}, {"sizeof(@R12)", "3 u4"}, {"@R12 = 0xABCDE", "703710 u3"}});
    EXPECT_EQ(m_target->registers[12], 0xABCDEU);
    const struct {
        unsigned length;
        const char* size;
    } lengths[] = {{1, "1 u4"}, {2, "2 u4"}, {4, "4 u4"}, {8, "8 u4"}, {5, "2 u4"}};
    for (const auto& it : lengths) {
        m_target->registerLength = it.length;
        EXPECT_EQ(value("sizeof(@R5)"), it.size) << it.length;
    }
}

TEST_F(Evaluator, ValuesOverRegistersOfAddressWidthHaveAWordInEach)
{
    m_target->registerLength = 3;
    m_target->registers[8] = 0x0001;
    m_target->registers[9] = 0x0002;
    check({{"wide", "131073 s4"}, {"fast = -1", "-1 s2"}, {"wide = 0x12345678", "305419896 s4"}});
    EXPECT_EQ(m_target->registers[8], 0x5678U);
    EXPECT_EQ(m_target->registers[9], 0x1234U);
}

TEST_F(Evaluator, FlagsOfTheStatusRegister)
{
    const std::string flags = "((register 2 C 0 1 Z 1 1 N 2 1 GIE 3 1 CPUoff 4 1 OSCoff 5 1 SCG0 6 "
                              "1 SCG1 7 1 V 8 1;)@SR)";
    m_target->registers[2] = 0x10A;
    EXPECT_EQ(value(flags + ".C"), "0 u2");
    EXPECT_EQ(value(flags + ".Z"), "1 u2");
    EXPECT_EQ(value(flags + ".N"), "0 u2");
    EXPECT_EQ(value(flags + ".GIE"), "1 u2");
    EXPECT_EQ(value(flags + ".V"), "1 u2");
    EXPECT_EQ(value(flags + ".X"), "unknown field");
    EXPECT_EQ(value(flags), "can't decode non simple type");
    EXPECT_EQ(value(flags + ".C = 1"), "1 u2");
    EXPECT_EQ(value(flags + ".Z = 0"), "0 u2");
    EXPECT_EQ(value(flags + ".V = 2"), "0 u2"); // one bit of it
    EXPECT_EQ(m_target->registers[2], 0x9U);
    EXPECT_EQ(value("((register 2 C 0 1 Z 1 1;)@SR).Z"), "0 u2");
    m_target->registerLength = 3;
    m_target->registers[2] = 0x80001;
    EXPECT_EQ(value("((register 3 C 0 1 Top 19 1;)@SR).Top"), "1 u3");
}

TEST_F(Evaluator, ArraysAndPointers)
{
    for (unsigned i = 0; i < 4; ++i)
        m_target->setWord(0x220 + 2 * i, 10 + i);
    m_target->setWord(0x228, 0x222); // p = array + 1
    m_target->setWord(0x250, 0x228); // pp = &p
    m_target->setWord(0x200, 2);
    for (unsigned i = 0; i < 6; ++i)
        m_target->setWord(0x244 + 2 * i, 100 + i);
    check({{"array[0]", "10 s2"},
           {"array[3]", "13 s2"},
           {"array[i]", "12 s2"},
           {"array[1.9]", "11 s2"},
           {"*array", "10 s2"},
           {"*p", "11 s2"},
           {"p[0]", "11 s2"},
           {"p[-1]", "10 s2"},
           {"p[1] + p[2]", "25 s2"},
           {"**pp", "11 s2"},
           {"pp[0][1]", "12 s2"},
           {"matrix[1][2]", "105 s2"},
           {"*matrix[1]", "103 s2"},
           {"p", "546 u2"},
           {"p + 1", "547 u2"}, // a pointer's value is a number
           {"&array[2]", "548 u2"},
           {"*&i", "2 s2"},
           {"&*p", "546 u2"},
           {"(&array[1])[1]", "12 s2"},
           {"sizeof(array)", "8 u4"},
           {"sizeof(matrix[0])", "6 u4"},
           {"sizeof(*p)", "2 u4"},
           {"sizeof(p)", "2 u4"},
           {"array", "can't decode non simple type"},
           {"array + 1", "can't decode non simple type"},
           {"i[0]", "not an array type"},
           {"*i", "not an array type"},
           {"array[\"a\"]", "bad index type"},
           {"array[1 == 1]", "bad index type"},
           {"&limit", "can't take address of register/constant"},
           {"&main", "can't take address of register/constant"},
           {"&5", "cannot take address of a constant"}});
}

TEST_F(Evaluator, HugeIndicesWrapRound)
{
    m_target->setWord(0x220, 77);
    check({{"array[0x80000000]", "77 s2"},
           {"array[0xFFFFFFFFFFFFFFFF]", "0 s2"},
           {"matrix[0x7FFFFFFF][0x7FFFFFFF]", "0 s2"},
           {"nodes[0x10000000].value", "0 s2"}});
}

TEST_F(Evaluator, StructuresAndTheirFields)
{
    m_target->setWord(0x22A, 5);
    m_target->setWord(0x22C, 0x234); // head.next = nodes
    m_target->setWord(0x232, 0x22A); // np = &head
    m_target->setWord(0x234, 6);
    m_target->setWord(0x236, 0x23C);
    m_target->setWord(0x23C, 7);
    check({{"head.value", "5 s2"},
           {"head->value", "5 s2"},
           {"np->value", "5 s2"},
           {"np.value", "5 s2"},
           {"(*np).value", "5 s2"},
           {"np->next->value", "6 s2"},
           {"np->next->next->value", "7 s2"},
           {"nodes[1].value", "7 s2"},
           {"np[0].value", "5 s2"},
           {"&np->next", "556 u2"},
           {"&nodes[1]", "572 u2"},
           {"sizeof(head)", "8 u4"},
           {"sizeof(*np->next)", "8 u4"},
           {"head", "can't decode non simple type"},
           {"head.none", "unknown field"},
           {"i.value", "not a struct type"},
           {"p->value", "not a struct type"},
           {"array.value", "not a struct type"},
           {"head.a::b", ":: not supported"},
           {"::head", ":: not supported"},
           {"head::value", ":: not supported"}});
}

TEST_F(Evaluator, BitFieldsAreBitsOfTheirUnit)
{
    // low 3 bits of the word at 0x22E, mid the next 7, whole 16 bits from bit 10 on, tail 6.
    m_target->setWord(0x22E, 5 | 0x55 << 3 | (0xBEEF & 0x3F) << 10);
    m_target->setWord(0x230, 0xBEEF >> 6 | 0x2A << 10);
    check({{"head.low", "5 u2"},
           {"head.mid", "85 u2"},
           {"head.whole", "48879 u3"}, // the three bytes that it lies in
           {"head.tail", "42 u1"},
           {"head.low = 2", "2 u2"},
           {"head.mid++", "86 u2"},
           {"head.whole = 0x1234", "4660 u3"},
           {"head.tail = 0xFF", "63 u1"},
           {"head.low = 1.9", "1 u2"},
           {"head.low = \"a\"", "can't encode non simple type"}});
    EXPECT_EQ(m_target->word(0x22E), 1U | 0x56U << 3 | (0x1234U & 0x3F) << 10);
    EXPECT_EQ(m_target->word(0x230), 0x1234U >> 6 | 0x3FU << 10);
    const ExpressionType field = m_target->parseAndEvaluate("head.mid").resolved();
    EXPECT_EQ(field.getSizeInBits(), 7U);
}

TEST_F(Evaluator, MemorySpacesHaveTheirOwnReads)
{
    m_target->setWord(0x3000, 1, DebugMarkerType::Data);
    m_target->setWord(0x3002, 2, DebugMarkerType::Code);
    m_target->setWord(0x3004, 3, DebugMarkerType::Eeprom);
    m_target->setWord(0x3006, 4, DebugMarkerType::Peripheral);
    m_target->setWord(0x3008, 0x5000, DebugMarkerType::Data);
    m_target->setWord(0x5002, 5, DebugMarkerType::Code);
    m_target->setWord(0x300A, 0x1800, DebugMarkerType::Data);
    m_target->setWord(0x300E, 6, DebugMarkerType::Code);
    check({{"in_data", "1 s2"},
           {"in_code", "2 s2"},
           {"in_eeprom", "3 s2"},
           {"in_peripheral", "4 s2"},
           {"to_code[1]", "5 s2"},
           {"*words", "1 s2"}, // counts words: 0x1800 is 0x3000
           {"words[2]", "0 s2"},
           {"code_array[1]", "6 s2"},
           {"in_code = 20", "20 s2"},
           {"in_eeprom = 30", "30 s2"},
           {"in_peripheral = 40", "40 s2"}});
    EXPECT_EQ(m_target->word(0x3002, DebugMarkerType::Code), 20U);
    EXPECT_EQ(m_target->word(0x3004, DebugMarkerType::Eeprom), 30U);
    EXPECT_EQ(m_target->word(0x3006, DebugMarkerType::Peripheral), 40U);
}

TEST_F(Evaluator, AssignmentsConvertToTheTypeOfTheLeft)
{
    check({{"i = 5", "5 s2"},
           {"i", "5 s2"},
           {"i = -1", "-1 s2"},
           {"i = 70000", "4464 s2"},
           {"c = 300", "44 s1"},
           {"b = 300", "44 u1"},
           {"u = -1", "65535 u2"},
           {"l = c - 45", "-1 s4"},
           {"l = 1.9", "1 s4"},
           {"f = 1.5", "1.5 f4"},
           {"f = 3", "3 f4"},
           {"d = f", "3 f8"},
           {"i = 1 == 1", "1 s2"},
           {"q = 0xFFFFFFFFFFFFFFFF", "18446744073709551615 u8"},
           {"p = &array[1]", "546 u2"},
           {"p = 0x12345", "9029 u2"},
           {"untyped = 3", "3 u2"},
           {"i = \"a\"", "can't encode non simple type"},
           {"array = 1", "can't encode non simple type"},
           {"head = 1", "can't encode non simple type"},
           {"limit = 1", "can't update a constant"},
           {"5 = 1", "bad expression type"},
           {"array[0] = array[1] = 9", "9 s2"}});
    // Grouped from the left: the first got what the second held.
    EXPECT_EQ(m_target->word(0x220), 9U);
    EXPECT_EQ(m_target->word(0x222), 0U);
}

TEST_F(Evaluator, ChangesInPlace)
{
    check({{"i = 5", "5 s2"},
           {"i++", "6 s2"},
           {"++i", "7 s2"},
           {"i--", "6 s2"},
           {"--i", "5 s2"},
           {"i += 10", "15 s2"},
           {"i -= 1", "14 s2"},
           {"i *= 3", "42 s2"},
           {"i /= 4", "10 s2"},
           {"i %= 7", "3 s2"},
           {"i <<= 4", "48 s2"},
           {"i >>= 1", "24 s2"},
           {"i |= 7", "31 s2"},
           {"i &= 0x1C", "28 s2"},
           {"i ^= 4", "24 s2"},
           {"i /= 0", "divide by zero"},
           {"i", "24 s2"}});
    m_target->setWord(0x228, 0x220);
    m_target->setWord(0x222, 99);
    check({{"p++", "545 u2"}, {"*p++", "99 s2"}}); // by one, as the number that it is
}

TEST_F(Evaluator, CastsApplyToTheRestOfTheExpression)
{
    m_target->setWord(0x200, 0x1234);
    m_target->setWord(0x202, 0xFFFF);
    check({{"(char)300 + 1", "45 s1"}, // of 301
           {"((char)300) + 1", "45 s1"},
           {"(unsigned char)-1", "255 u1"},
           {"(char)255", "-1 s1"},
           {"(long)-1", "-1 s4"},
           {"(unsigned long long)-1", "18446744073709551615 u8"},
           {"(long long)0x123456789A", "78187493530 s8"},
           {"(int)1.9", "1 s2"},
           {"(float)1.5", "1.5 f4"},
           {"(double)3", "3 f8"},
           {"(int)(1 == 1)", "1 s2"},
           {"(int)\"a\"", "cannot cast"},
           // Of a location: the same place, read as another type.
           {"(char)i", "52 s1"},
           {"(unsigned char)i", "52 u1"},
           {"(unsigned long)i", "4294906420 u4"},
           {"&(char)i", "512 u2"},
           {"(int *)0x200", "512 u2"},
           {"*(int *)0x200", "4660 s2"},
           {"((int *)0x200)[1]", "-1 s2"},
           {"((int[4])0x200)[1]", "-1 s2"},
           {"sizeof((int[i - 0x1230])0x200)", "8 u4"},
           {"(int[-1])0", "bad index type"},
           {"(int[\"a\"])0", "bad index type"},
           {"((struct node *)0x200)->value", "4660 s2"},
           {"((node *)0x200)->value", "4660 s2"},
           {"((struct none *)0x200)", "struct type not found"},
           {"((struct { char a; int b; } *)0x1FF)->b", "-238 s2"},
           {"sizeof((struct { char a; int b; char c; })0)", "6 u4"},
           {"sizeof((struct { char a; char b; char c; })0)", "3 u4"},
           {"((struct { int a : 4; int b : 4; int c : 8; } *)0x200)->b", "3 u2"},
           {"((struct { int a : 4; int b : 4; int c : 8; } *)0x200)->c", "18 u2"},
           {"(float)(int)1", "1.4013e-45 f4"}});
    // Pointers to what lies beyond 64 KB are wide enough for it.
    check({{"(int *)0xFFFF", "65535 u2"},
           {"(int *)0x12345", "74565 u4"},
           {"&*(int *)0x12345", "74565 u4"},
           {"(int *)-2", "65534 u2"}});
}

TEST_F(Evaluator, FunctionsAreNeverCalled)
{
    check({{"main()", "function calling not implemented"},
           {"main(1 2)", "function calling not implemented"},
           {"main(1, i)", "function calling not implemented"},
           {"none()", "none symbol not found"},
           {"5()", "bad expression type"}});
}

TEST_F(Evaluator, NothingIsReadBeforeItIsNeeded)
{
    m_target->parseAndEvaluate("array[3]");
    m_target->parseAndEvaluate("&head.next");
    m_target->parseAndEvaluate("sizeof(array)");
    m_target->parseAndEvaluate("big[3]");
    EXPECT_TRUE(m_target->reads.empty());
    EXPECT_EQ(value("i + i"), "0 s2");
    EXPECT_EQ(m_target->reads, (std::vector<FakeDebugger::Access>{{0x200, 2}, {0x200, 2}}));
    m_target->reads.clear();
    // The pointer, then the field that it leads to.
    EXPECT_EQ(value("np->value"), "0 s2");
    EXPECT_EQ(m_target->reads, (std::vector<FakeDebugger::Access>{{0x232, 2}, {0, 2}}));
    m_target->reads.clear();
    EXPECT_EQ(value("big"), "can't decode non simple type"); // too large to be read for that
    EXPECT_TRUE(m_target->reads.empty());
}

TEST_F(Evaluator, BuffersOfLargeValuesReadWhatIsTouched)
{
    const ExpressionType big = m_target->parseAndEvaluate("big");
    const auto* marker = static_cast<MyMarker*>(big.getMarker());
    m_target->setWord(0x252 + 1000, 0xABCD);
    m_target->fillMemoryBuffer(marker, false);
    EXPECT_TRUE(m_target->reads.empty());
    EXPECT_EQ(describe(m_target->decodeType(nullptr, 1000)), "43981 u2");
    EXPECT_EQ(m_target->reads, (std::vector<FakeDebugger::Access>{{0x252 + 1000, 2}}));
    m_target->encodeType(nullptr, ExpressionType(0x5678LL, 8, 0), 1000);
    EXPECT_EQ(describe(m_target->decodeType(nullptr, 1000)), "22136 u2");
    m_target->writeMemoryBuffer(marker);
    EXPECT_EQ(m_target->writes, (std::vector<FakeDebugger::Access>{{0x252 + 1000, 2}}));
    EXPECT_EQ(m_target->word(0x252 + 1000), 0x5678U);
    m_target->discardMemoryBuffer();
}

TEST_F(Evaluator, MarkersAreLocations)
{
    const auto marker = [&](const char* text) { return m_target->parseAndEvaluate(text); };
    EXPECT_TRUE(marker("i").getMarker()->equiv(marker("*&i").getMarker()));
    EXPECT_FALSE(marker("i").getMarker()->equiv(marker("u").getMarker()));
    EXPECT_FALSE(marker("i").getMarker()->equiv(marker("(char)i").getMarker()));
    EXPECT_TRUE(marker("i").getMarker()->lt(marker("u").getMarker()));
    EXPECT_FALSE(marker("u").getMarker()->lt(marker("i").getMarker()));
    EXPECT_TRUE(marker("i").getMarker()->lt(marker("@R5").getMarker()));
    EXPECT_TRUE(marker("@R5").getMarker()->lt(marker("@R6").getMarker()));
    EXPECT_TRUE(marker("in_code").getMarker()->lt(marker("i").getMarker()));
    EXPECT_EQ(marker("i").getMarker()->getValueAsString(), u"0x0200");
    EXPECT_EQ(marker("array[2]").getMarker()->getValueAsString(), u"0x0224");
    EXPECT_EQ(marker("@R5").getMarker()->getValueAsString(), u"@R5");
    EXPECT_EQ(marker("limit").getMarker()->getValueAsString(), u"0x03e8");
    const ExpressionType i = marker("i");
    i.getMarker()->setValue(QStringLiteral("limit + 1"));
    EXPECT_EQ(describe(i), "1001 s2");
    EXPECT_EQ(describe(i.getMarker()->getValue()), "1001 s2");
}

TEST_F(Evaluator, RemembersTheLastSymbol)
{
    EXPECT_EQ(m_target->lastSymbol(), nullptr);
    value("i + none");
    EXPECT_EQ(m_target->lastSymbol(), nullptr);
    value("array[i]");
    EXPECT_EQ(m_target->lastSymbol(), m_debug->findGlobalSymbol(QStringLiteral("array")));
    m_target->clearLastSymbol();
    EXPECT_EQ(m_target->lastSymbol(), nullptr);
}

TEST_F(Evaluator, PlacesOfSymbols)
{
    ExpressionType result;
    const auto place = [&](const char* name, bool forLocation) {
        const TOBFSymbol* symbol = m_target->getSymbol(name);
        return m_target->getExpressionType(symbol->type(), symbol->definition(), result,
                                           forLocation);
    };
    EXPECT_TRUE(place("i", true));
    EXPECT_TRUE(place("local", true));
    EXPECT_TRUE(place("fast", true));
    EXPECT_FALSE(place("limit", true)); // a number lives nowhere
    EXPECT_TRUE(place("limit", false));
    EXPECT_FALSE(place("main", true));
    EXPECT_TRUE(place("main", false));
}

TEST_F(Evaluator, TypesThatDontEndAreFollowedAsFarAsAsked)
{
    TestProgram program;
    program.section("DATA", SectionKind::Data, 0x200);
    auto* self = static_cast<TOBFPtrType*>(TestProgram::pointer(nullptr));
    program.variable("nothing", TestProgram::pointer(nullptr));
    program.variable("self", self);
    self->setTarget(self);
    program.variable("odd", TestProgram::integer(5));
    program.variable("wide", TestProgram::integer(100));
    program.variable("none", TestProgram::integer(0));
    program.variable("real", new TOBFFloatType(10));
    program.variable("endless", new TOBFArrayType(TestProgram::integer(0x10000000), 0x10000000));
    TOBFStrucType* damaged = TestProgram::structure("damaged", -4);
    TestProgram::field(damaged, "before", TestProgram::integer(2), -16);
    TestProgram::field(damaged, "ahead", TestProgram::integer(2), -13, 3);
    TestProgram::field(damaged, "beyond", TestProgram::integer(2), 0x7FFFFFF0, 5);
    TestProgram::field(damaged, "empty", TestProgram::integer(2), 3, -1);
    TestProgram::field(damaged, "huge", TestProgram::integer(2), 1, 0x7FFFFFFF);
    program.variable("damaged", damaged);
    SymbolicDebug debug(program.module(), Path());
    FakeDebugger target(debug);
    const auto value = [&](const char* text) { return evaluated(target, text); };
    EXPECT_EQ(value("*nothing"), "0 u2");
    EXPECT_EQ(value("****self"), "0 u2");
    EXPECT_EQ(value("odd = -1"), "-1 s5");
    EXPECT_EQ(value("wide"), "can't decode non simple type");
    EXPECT_EQ(value("wide = 1"), "can't encode non simple type");
    EXPECT_EQ(value("none"), "can't decode non simple type");
    EXPECT_EQ(value("real"), "can't decode non simple type");
    EXPECT_EQ(value("real = 1"), "can't encode non simple type");
    EXPECT_EQ(value("endless[5][5]"), "not an array type");
    EXPECT_EQ(value("endless[5]"), "can't decode non simple type");
    EXPECT_EQ(value("sizeof(endless)"), "2147483647 u4");
    EXPECT_EQ(value("sizeof(damaged)"), "0 u4");
    for (const char* const field : {"damaged.ahead", "damaged.empty", "damaged.huge"})
        EXPECT_EQ(value(field), "invalid address") << field;
    EXPECT_EQ(value("damaged.before"), "0 s2");
    EXPECT_EQ(value("damaged.beyond"), "0 u1");
    EXPECT_EQ(value("((register 2147483647 a 2147483647 2147483647;)@SR).a"), "invalid address");
    EXPECT_EQ(value("((register 2147483647 a 2147483640 1;)@SR).a"), "no such register");
    EXPECT_EQ(value("((int[1000000])@R5)[999999]"), "no such register");
    EXPECT_EQ(value("((int[1000000])@R5)"), "can't decode non simple type");
    EXPECT_EQ(value("((int[4])5)[1]"), "0 s2");
    EXPECT_EQ(value("((damaged)5).beyond"), "0 u1");
    EXPECT_EQ(value("sizeof((struct { damaged a; damaged b : 3; })0)"), "0 u4");
}

} // namespace
