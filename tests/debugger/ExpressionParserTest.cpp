// The language itself, over constants: tokens, operators, grammar and messages.

#include "debugger/FakeDebugger.h"
#include "debugger/expressions/CStyleLexer.h"

#include "build/memorymap/SimpleExpressionParser.h"

#include <gtest/gtest.h>

namespace {

struct Case {
    const char* text;
    const char* result;
};

class ExpressionTest : public testing::Test {
protected:
    void check(std::initializer_list<Case> cases)
    {
        for (const Case& it : cases)
            EXPECT_EQ(evaluated(m_parser, it.text), it.result) << it.text;
    }

    ExpressionParser m_parser{new CStyleLexer};
};

using Constants = ExpressionTest;
using Operators = ExpressionTest;
using Grammar = ExpressionTest;
using BadText = ExpressionTest;

TEST_F(Constants, HaveTheirTypes)
{
    check({{"0", "0 s8"},
           {"007", "7 s8"}, // no octal
           {"9223372036854775807", "9223372036854775807 s8"},
           {"18446744073709551615", "-1 s8"},
           {"0x", "0 s8"},
           {"0x1F", "31 s8"},
           {"0xfFfF", "65535 s8"},
           {"1.5", "1.5 f8"},
           {"10.25", "10.25 f8"},
           {"\"text\"", "\"text\""},
           {"\"\"", "\"\""},
           {" \t\n 5 ", "5 s8"},
           {"", "(undefined)"}});
    EXPECT_EQ(m_parser.parse(nullptr), nullptr);
    EXPECT_EQ(m_parser.parse(""), nullptr);
}

TEST_F(Constants, EndWhereTheirPatternDoes)
{
    // What stands behind a complete expression is left alone.
    check({{"0X10", "0 s8"},
           {"10u", "10 s8"},
           {"1.5e3", "1.5 f8"},
           {"1.", "identifier expected"},
           {".5", "expression expected"},
           {"0x1.5", "identifier expected"},
           {"1..5", "identifier expected"}});
}

TEST_F(Operators, BindAsInC)
{
    check({{"1 + 2 * 3", "7 s8"},
           {"(1 + 2) * 3", "9 s8"},
           {"1 - 2 - 3", "-4 s8"},
           {"100 / 10 / 5", "2 s8"},
           {"2 * 3 % 4", "2 s8"},
           {"1 << 2 + 1", "8 s8"},
           {"16 >> 2 << 1", "8 s8"},
           {"1 | 6 & 4 ^ 2", "7 s8"},
           {"6 & 3 == 3", "0 s8"},
           {"1 < 2 == 1", "true"},
           {"3 > 2 && 2 > 1", "true"},
           {"0 || 1 && 0", "false"},
           {"-2 + 3", "1 s8"},
           {"- 2 * 3", "-6 s8"},
           {"~0 & 0xFF", "255 s8"},
           {"!0 == 1", "true"},
           {"+5", "5 s8"},
           {"- - 5", "5 s8"},
           {"!!5", "true"}});
}

TEST_F(Operators, ComputeInTheTypeOfTheLeft)
{
    check({{"7 / 2", "3 s8"},
           {"-7 / 2", "-3 s8"},
           {"-7 % 3", "-1 s8"},
           {"7.0 / 2", "3.5 f8"},
           {"7 / 2.5", "3 s8"},
           {"1.5 + 1", "2.5 f8"},
           {"1 + 1.9", "2 s8"},
           {"7.5 % 2", "1.5 f8"},
           {"-1.5", "-1.5 f8"},
           {"1.5 < 2", "true"},
           {"1 < 1.5", "false"}, // the right one is read as an integer
           {"2.0 == 2", "true"},
           {"\"a\" == \"a\"", "true"},
           {"\"a\" != \"b\"", "true"},
           {"(1 == 1) != (1 == 2)", "true"},
           {"(1 == 1) + 0", "true"},
           {"(1 == 2) + (1 == 2)", "false"},
           {"1.5 && 0.5", "true"}});
}

TEST_F(Operators, HaveNoUndefinedResults)
{
    check({{"0x8000000000000000 / -1", "-9223372036854775808 s8"},
           {"0x8000000000000000 % -1", "0 s8"},
           {"0x7FFFFFFFFFFFFFFF + 1", "-9223372036854775808 s8"},
           {"0x8000000000000000 - 1", "9223372036854775807 s8"},
           {"-0x8000000000000000", "-9223372036854775808 s8"},
           {"0x7FFFFFFFFFFFFFFF * 3", "9223372036854775805 s8"},
           {"1 << 63", "-9223372036854775808 s8"},
           {"1 << 64", "0 s8"},
           {"1 << -1", "0 s8"},
           {"-1 >> 1", "-1 s8"},
           {"-1 >> 100", "-1 s8"},
           {"1 >> 64", "0 s8"},
           {"0 + 99999999999999999999.5", "9223372036854775807 s8"}});
}

TEST_F(Operators, RefuseOtherTypes)
{
    check({{"5 / 0", "divide by zero"},
           {"5 % 0", "divide by zero"},
           {"5.0 / 0", "divide by zero"},
           {"5 / 0.5", "divide by zero"}, // 0 as an integer
           {"\"a\" + 1", "unsupported binary numeric operation"},
           {"1 + \"a\"", "unsupported binary numeric operation"},
           {"(1 == 1) - 1", "unsupported binary numeric operation"},
           {"1.5 & 1", "unsupported binary numeric operation"},
           {"1.5 ^ 1", "unsupported binary numeric operation"},
           {"\"a\" && 1", "unsupported binary numeric operation"},
           {"1.5 << 1", "can only shift numeric values"},
           {"\"a\" >> 1", "can only shift numeric values"},
           {"1 << 1.5", "integer shift value expected"},
           {"-\"a\"", "unsupported unary num operation"},
           {"~1.5", "unsupported unary num operation"},
           {"-(1 == 1)", "unsupported unary num operation"},
           {"!\"a\"", "unsupported unary num operation"},
           {"\"a\" < \"b\"", "unsupported comparison operation"},
           {"\"a\" == 1", "unsupported comparison operation"},
           {"1 == \"a\"", "unsupported comparison operation"},
           {"(1 == 1) < 1", "unsupported comparison operation"}});
}

TEST_F(Grammar, RefusesWhatHasNoMeaning)
{
    check({{"1 ? 2 : 3", "operator not supported"},
           {"1, 2", "operator not supported"},
           {"1 >>> 2", "operator not supported"},
           {"1 >>>= 2", "operator not supported"},
           {"1 +", "expression expected"},
           {"1 ,", "expression expected"},
           {"*", "expression expected"},
           {"()", "expression expected"},
           {")", "expression expected"},
           {";", "expression expected"},
           {"   ", "expression expected"},
           {"(1", "')' expected"},
           {"(1 2)", "')' expected"},
           {"sizeof 1", "'(' expected"},
           {"sizeof(1", "')' expected"},
           {"1[2", "expected ']'"},
           {"1[2}", "expected ']'"},
           {"x.", "identifier expected"},
           {"x.5", "identifier expected"},
           {"x->", "identifier expected"},
           {"::", "identifier expected"},
           {"::5", "identifier expected"},
           {"a::", "identifier expected after '::'"},
           {"a::b::1", "identifier expected after '::'"},
           {"#1", "unrecognised token: #1"},
           {"1 + 'a' ", "unrecognised token: 'a' "},
           {"\"open", "unrecognised token: \"open"},
           {"1 \\", "unrecognised token: \\"},
           {"\xC3\xA4", "unrecognised token: \xC3\xA4"}});
}

TEST_F(Grammar, OfCastsIsChecked)
{
    check({{"(char 5", "')' expected"},
           {"(int x)5", "')' expected"},
           {"(int[5)1", "']' expected"},
           {"(int[])1", "expression expected"},
           {"(struct nothing)1", "struct type not found"},
           {"(struct 5)1", "'{' expected"},
           {"(struct { 5; })1", "struct parse error"},
           {"(struct { int a : b; })1", "integer must follow ':'"},
           {"(struct { int a })1", "';' expected"},
           {"(struct { int *a; })1", "';' expected"},
           {"(register a)1", "size expected"},
           {"(register 2 5)1", "fieldname expected"},
           {"(register 2 C)1", "bitoffset expected"},
           {"(register 2 C 0)1", "bitsize expected"},
           {"(register 2 C 0 1", "fieldname expected"},
           {"(int)1", "cannot cast"}});
}

TEST_F(Grammar, NeedsABackEndForMoreThanConstants)
{
    check({{"name", "name symbol not found"},
           {"a::b", "a::b symbol not found"},
           {"::a", "a symbol not found"},
           {"@PC", "unknown register"},
           {"1 = 2", "bad expression type"},
           {"1++", "bad expression type"},
           {"--1", "bad expression type"},
           {"1 += 2", "bad expression type"},
           {"1[0]", "bad expression type"},
           {"*1", "bad expression type"},
           {"1.a", "bad expression type"},
           {"&1", "cannot take address of a constant"},
           {"sizeof(1)", "cannot determine sizeof of a constant"},
           {"1(2)", "bad expression type"}});
}

TEST_F(Grammar, EvaluatesTheRightOperandFirst)
{
    check({{"left + right", "right symbol not found"},
           {"left[right]", "right symbol not found"},
           {"left = right", "right symbol not found"},
           {"left == (a / b)", "b symbol not found"}});
}

TEST_F(Grammar, TellsHowFarItRead)
{
    const struct {
        const char* text;
        int end;
    } cases[] = {{"1", 1}, {"1 2", 3}, {"1  ", 3}, {"1;2", 2}, {"(1)) x", 4}, {"1 : 22", 3}};
    for (const auto& it : cases) {
        int end = -1;
        EXPECT_EQ(describe(m_parser.parseAndEvaluate(it.text, &end)), "1 s8") << it.text;
        EXPECT_EQ(end, it.end) << it.text;
    }
}

TEST_F(Grammar, IsToldAgainByDump)
{
    const Case cases[] = {
        {"1+2*3", "(1 + (2 * 3))"},
        {"a = b = c", "((a = b) = c)"},
        {"a += 2", "(a = (a + 2))"},
        {"x++", "(x = (x + 1))"},
        {"--x", "(x = (x - 1))"},
        {"a <<= 1", "(a = (a << 1))"},
        {"a >>= 1", "(a = (a >> 1))"},
        {"a->b.c[3]", "a.b.c[3]"},
        {"*p", "p[0]"},
        {"-~!x", "(-(~(!x)))"},
        {"&a[1]", "(&a[1])"},
        {"sizeof(a)", "sizeof(a)"},
        {"f(1 2, x)", "f(1, 2, x)"},
        {"f(1+2)", "f(1, 2)"}, // an argument is an operand
        {"::a::b", "::a::b"},
        {"@R5 + 1.5", "(@R5 + 1.5)"},
        {"\"s\" == 2.0", "(\"s\" == 2.0)"},
        {"(char)a + b", "((char)(a + b))"},
        {"(unsigned long int *)x", "((unsigned long*)x)"},
        {"(long long[4])x", "((long long[4])x)"},
        {"(struct { char a; int b : 3; int; })x", "((struct { char a; int b : 3; int; })x)"},
        {"((register 2 C 0 1 \"Z\" 1 1;)@SR).Z", "((register 2 C 0 1 Z 1 1;)@SR).Z"},
        {"(int unsigned)x", "((unsigned int)x)"},
        {"(const double)x", "((double)x)"},
        {"(volatile)x", "((int)x)"},
        {"(short int)x", "((short)x)"},
        {"(intx)", "intx"},
    };
    for (const Case& it : cases) {
        const ExpressionPtr expression = m_parser.parse(it.text);
        const QString text = expression->dump();
        EXPECT_EQ(text.toStdString(), it.result) << it.text;
        EXPECT_EQ(m_parser.parse(text.toUtf8().constData())->dump(), text) << it.text;
    }
}

TEST_F(BadText, OfAnyDepthEndsInAMessage)
{
    constexpr int Many = 100'000;
    const auto repeated = [](const char* text, const char* behind = "") {
        std::string all;
        for (int i = 0; i < Many; ++i)
            all += text;
        return all + behind;
    };
    const std::string texts[] = {
        repeated("("),        repeated("*", "x"),           repeated("-", "1"),
        repeated("!", "1"),   repeated("a[", "1"),          repeated("f(", "1"),
        repeated("1+", "1"),  repeated("a.", "b"),          repeated("a=", "1"),
        repeated("(int)"),    "(int" + repeated("*", ")1"), "(int" + repeated("[1]", ")1"),
        "x" + repeated("++"), "x" + repeated("[1]"),        "x" + repeated("()"),
        repeated("sizeof("),  repeated("x+=", "1"),         "f(" + repeated("1 ", ")"),
    };
    for (const std::string& text : texts)
        EXPECT_EQ(evaluated(m_parser, text), "expression is too complex") << text.substr(0, 20);
    // The parser is as before.
    EXPECT_EQ(evaluated(m_parser, "((((1))))"), "1 s8");
    // Each of these doubles what an evaluation would visit.
    EXPECT_EQ(evaluated(m_parser, "x++++++++++++++++++++++++++++++++"),
              "expression is too complex");
}

TEST_F(BadText, OfReasonableDepthIsRead)
{
    std::string text = "1";
    for (int i = 0; i < 100; ++i)
        text = "(" + text + ")";
    EXPECT_EQ(evaluated(m_parser, text), "1 s8");
    text = "0";
    for (int i = 0; i < 500; ++i)
        text += "+1";
    EXPECT_EQ(evaluated(m_parser, text), "500 s8");
}

TEST_F(ExpressionTest, AgreesWithTheParserOfMemoryMaps)
{
    for (const char* const text :
         {"1 + 2 * 3", "0x10 | 3", "~0", "!1", "5 / 0", "1 << 70", "(1", "x", "1 2", "1 == 1",
          "-5 % 3", "1 ? 2 : 3", "0x", "7 & 3 ^ 1", "1 < 2", "1.5", "\"a\"", "1 && 0 || 1"}) {
        bool ok = false;
        const quint64 expected = SimpleExpressionParser::instance().getUInteger(text, ok);
        try {
            const ExpressionType value = m_parser.parseAndEvaluate(text);
            if (value.isIntegerType() || value.getType() == ExpressionType::Boolean) {
                EXPECT_TRUE(ok) << text;
                EXPECT_EQ(value.getUInteger(), expected) << text;
            }
        } catch (const ParserException&) {
            EXPECT_FALSE(ok) << text;
        }
    }
}

} // namespace
