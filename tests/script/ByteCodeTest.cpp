// The code of each kind of statement and expression.

#include "script/es/ESCompiler.h"
#include "script/es/ESContext.h"
#include "script/es/ESVmOpcode.h"

#include <gtest/gtest.h>

using namespace Qt::Literals::StringLiterals;

namespace {

/// The code of a program, one instruction a line without its offset; jumps name the offset.
QStringList linesOf(const ESObject* global, const ESCode& code)
{
    QStringList lines;
    for (int offset = 0; offset < code.size();)
        lines << ESCompiler::printInsn(global, code, offset, offset).mid(6);
    return lines;
}

std::string codeOf(const char* source)
{
    ESContext context;
    ESCompiler compiler(&context);
    compiler.setSource(QString::fromUtf8(source));
    const auto code = compiler.parse();
    return linesOf(context.global(), *code).join(u"; "_s).toStdString();
}

/// The last of the functions that a code makes, those within them included.
const ESCode* lastFunctionOf(const ESCode& code)
{
    const ESCode* last = nullptr;
    for (int offset = 0; offset < code.size();) {
        const auto at = static_cast<std::size_t>(offset);
        const auto opcode = static_cast<ESVmOpcode>(code.bytes[at]);
        if (opcode == ESVmOpcode::CLOSURE)
            last = ESContext::functionCode(code.bytes[at + 1] << 8 | code.bytes[at + 2]);
        ESCompiler::printInsn(nullptr, code, offset, offset);
    }
    const ESCode* inner = last ? lastFunctionOf(*last) : nullptr;
    return inner ? inner : last;
}

std::string functionOf(const char* source)
{
    ESContext context;
    ESCompiler compiler(&context);
    compiler.setSource(QString::fromUtf8(source));
    const auto code = compiler.parse();
    return linesOf(context.global(), *lastFunctionOf(*code)).join(u"; "_s).toStdString();
}

std::string errorOf(const QString& source)
{
    ESContext context;
    ESCompiler compiler(&context);
    compiler.setSource(source);
    try {
        compiler.parse();
    } catch (const ESSyntaxError& error) {
        return std::to_string(error.line) + ": " + error.message.toStdString();
    } catch (const ESFatalError& error) {
        return "fatal: " + error.text().toStdString();
    }
    return "compiled";
}

struct Case {
    const char* source;
    const char* code;
};

TEST(ByteCode, OfExpressions)
{
    const Case cases[] = {
        {"", "UNDEFINED; RET"},
        {"0; 1", "NUM_1; RET"},
        {"[0, 1, 2, 3, 4, -1, 5]",
         "NUM_0; NUM_1; NUM_2; NUM_3; NUM_4; NUM_M1; NUM 5; MKARRAY 7; RET"},
        {"[null, true, false, this, 's']", "NULL; TRUE; FALSE; THIS; STR \"s\"; MKARRAY 5; RET"},
        {"[1,,2]", "NUM_1; UNDEFINED; NUM_2; MKARRAY 3; RET"},
        {"a + b * c", "GETG a; GETG b; GETG c; MUL; ADD; RET"},
        {"a - b - c", "GETG a; GETG b; SUB; GETG c; SUB; RET"},
        {"a > b", "GETG b; GETG a; LT; RET"},
        {"a >= b", "GETG b; GETG a; LE; RET"},
        {"a | b ^ c & d == e < f << g",
         "GETG a; GETG b; GETG c; GETG d; GETG e; GETG f; GETG g; SHL; LT; EQ; BITAND; BITXOR; "
         "BITOR; RET"},
        {"a && b", "GETG a; LOGAND 0009; GETG b; RET"},
        {"a || b", "GETG a; LOGOR 0009; GETG b; RET"},
        {"a ? b : c", "GETG a; JF 000c; GETG b; J 000f; GETG c; RET"},
        {"a = 1", "NUM_1; DUP; PUTG a; RET"},
        {"a = 1; 0", "NUM_1; PUTG a; NUM_0; RET"},
        {"a += 1; 0", "GETG a; NUM_1; ADD; PUTG a; NUM_0; RET"},
        {"o.f = 1; 0", "NUM_1; GETG o; PUTF \"f\"; NUM_0; RET"},
        {"o.f = 1", "NUM_1; DUP; GETG o; PUTF \"f\"; RET"},
        {"o[k] = 1; 0", "NUM_1; GETG o; GETG k; PUTX; NUM_0; RET"},
        {"o.f -= 1; 0", "NUM_1; GETG o; STR \"f\"; SUBX; DROP; NUM_0; RET"},
        {"o[k] >>>= 1", "NUM_1; GETG o; GETG k; USHRX; RET"},
        {"++a", "INCG a; GETG a; RET"},
        {"a--", "GETG a; DECG a; RET"},
        {"a++; 0", "INCG a; NUM_0; RET"},
        {"o.f; !o; 0", "NUM_0; RET"},
        {"!f()", "CALLG f 0; LOGNOT; RET"},
        {"!f(); 0", "CALLG f 0; LOGNOT; DROP; NUM_0; RET"},
        {"f(1, 2)", "NUM_1; NUM_2; CALLG f 2; RET"},
        {"o.m(1)", "NUM_1; GETG o; CALLF \"m\" 1; RET"},
        {"o[k](1)", "NUM_1; GETG o; GETG k; CALLX 1; RET"},
        {"f(1)(2)", "NUM_2; NUM_1; CALLG f 1; CALLV 1; RET"},
        {"o.break", "GETG o; GETF \"break\"; RET"},
        {"new T", "GETG T; NEW; RET"},
        {"new o.T(1)", "NUM_1; GETG o; GETF \"T\"; NEWA 1; RET"},
        {"({a: 1, 'b': 2, 3: 4})",
         "NEWOBJ; NUM_1; INITF \"a\"; NUM_2; INITF \"b\"; NUM_4; INITF \"3\"; RET"},
        {"delete a", "FALSE; RET"},
        {"delete o.f", "GETG o; STR \"f\"; DELETEX; RET"},
        {"typeof a + -b", "GETG a; TYPEOF; GETG b; NEG; ADD; RET"},
        {"void 0, ~a", "GETG a; BITNOT; RET"},
    };
    for (const Case& one : cases)
        EXPECT_EQ(codeOf(one.source), one.code) << one.source;
}

TEST(ByteCode, OfStatements)
{
    const Case cases[] = {
        {"if (a) b = 1;", "GETG a; JF 000a; NUM_1; PUTG b; UNDEFINED; RET"},
        {"while (a) f();", "GETG a; JF 000f; CALLG f 0; DROP; J 0000; UNDEFINED; RET"},
        {"do { f() } while (a)", "CALLG f 0; DROP; GETG a; JT 0000; UNDEFINED; RET"},
        {"for (i = 0; i < n; i++) f();",
         "NUM_0; PUTG i; J 0010; CALLG f 0; DROP; INCG i; GETG i; GETG n; JLT 0007; UNDEFINED; "
         "RET"},
        {"for (;;) break;", "J 0006; J 0009; J 0003; UNDEFINED; RET"},
        {"switch (a) { case 1: b = 1; default: b = 2 }",
         "GETG a; DUP; NUM_1; IDENTITY; JT_DROP 000d; DROP; J 0011; NUM_1; PUTG b; NUM_2; PUTG b; "
         "UNDEFINED; RET"},
        {"with (o) x = y;", "GETG o; WITH; GETW \"y\"; PUTW \"x\"; ENDWITH; UNDEFINED; RET"},
        {"x: for (;;) { continue x; }", "J 0006; J 0006; J 0003; UNDEFINED; RET"},
        // Declarations of functions come first.
        {"f(); function f() { }", "CLOSURE"},
    };
    for (const Case& one : cases)
        EXPECT_EQ(codeOf(one.source).substr(0, strlen(one.code)), one.code) << one.source;
}

TEST(ByteCode, OfVariablesOnTheStackAndInFrames)
{
    const Case cases[] = {
        {"function f(a, b) { var c = a; return c + b; }",
         "GETA 0; PUTL 0; GETL 0; GETA 1; ADD; RET; RETU"},
        {"function f(a) { a++; g(a); }", "INCA 0; GETA 0; CALLG g 1; DROP; RETU"},
        {"function f(a, a) { return a; }", "GETA 1; RET; RETU"},
        {"function f(a) { var b; with (a) b = 1; --b }",
         "GETAM 0; WITH; NUM_1; PUTW \"b\"; ENDWITH; DECLM 0; RETU"},
        {"function f() { var n; function g() { return n++; } }", "STR \"n\"; POSTINCX; RET; RETU"},
        {"function f() { return arguments; }", "ARGUMENTS; PUTLM 0; GETLM 0; RET; RETU"},
    };
    for (const Case& one : cases)
        EXPECT_EQ(functionOf(one.source), one.code) << one.source;
}

TEST(ByteCode, ErrorsNameTheirLine)
{
    const std::pair<const char*, const char*> cases[] = {
        {"a === b", "1: expected ';' found '==='"},
        {"\n\nx = ;", "3: expected an expression, found ';'"},
        {"1 = 2", "1: only left-hand-side expressions allowed"},
        {"return 1", "1: 'return' not in a function"},
        {"break", "1: 'break' not in a 'for' or 'while' loop"},
        {"for (;;) { break x; }", "1: can't find label x"},
        {"x: { for (;;) continue x; }", "1: labeled 'continue' doesn't mark a loop"},
        {"switch (a) { default: default: }", "1: default case already defined"},
        {"switch (a) { b }", "1: expected 'case' or 'default' but found 'identifier'"},
        {"for (var a, b in c);", "1: too many variables in for-in expression"},
        {"try { }", "1: 'catch' or 'finally' clause expected after 'try'"},
        {"'abc", "1: end of file in string constant"},
        {"'a\nb'", "1: newline in string constant"},
        {"'\\xg0'", "1: malformed hex escape sequence"},
        {"09", "1: digit '9' is not radix 8"},
        {"a # b", "1: unknown character '#'"},
        {"({[]:1})", "1: number, string, or identifier expected in object initialiser"},
        {"class A { }", "1: expected an expression, found 'class'"},
    };
    for (const auto& [source, error] : cases)
        EXPECT_EQ(errorOf(QString::fromUtf8(source)), error) << source;
}

TEST(ByteCode, DeepAndLongTextsAreRefused)
{
    for (const char* piece :
         {"(", "[", "{", "-", "!", "new ", "function(){", "if(1)", "a=", "a?", "x["})
        EXPECT_NE(errorOf(QString::fromUtf8(piece).repeated(100'000)), "compiled");
    EXPECT_NE(errorOf(u"a"_s + u"+a"_s.repeated(100'000)), "compiled");
    EXPECT_NE(errorOf(u"a=1;"_s.repeated(20'000)), "compiled");
    // Each level of finally doubles what is left.
    QString nested = u"x=1;"_s;
    for (int depth = 0; depth < 40; ++depth)
        nested = u"try{"_s + nested + u"}finally{"_s + nested.left(50) + u"x=1;}"_s;
    EXPECT_NE(errorOf(nested), "");
}

TEST(ByteCode, NumbersAreReadAsTold)
{
    const std::pair<const char*, double> cases[] = {{"010", 8},  {"0x1F", 31}, {"1.5e3", 1500},
                                                    {".5", 0.5}, {"1e", 1},    {"5.", 5},
                                                    {"0", 0},    {"1e+2", 100}};
    for (const auto& [text, value] : cases) {
        const auto parsed = ESLexer::parsenum(QString::fromUtf8(text), 0, 7);
        EXPECT_EQ(parsed.value, value) << text;
        EXPECT_TRUE(parsed.problem.isEmpty());
    }
    EXPECT_TRUE(std::isnan(ESLexer::parsenum(u"0x"_s, 0, 7).value));
    EXPECT_TRUE(std::isnan(ESLexer::parsenum(u"."_s, 0, 7).value));
    EXPECT_EQ(ESLexer::parsenum(u"  "_s, 0, 0x18).value, 0);
    EXPECT_EQ(ESContext::numberText(0.1 + 0.2, 10), u"0.3"_s);
    EXPECT_EQ(ESContext::numberText(1.23456789, 10), u"1.23457"_s);
    EXPECT_EQ(ESContext::numberText(255, 16), u"ff"_s);
}

TEST(ByteCode, OpcodesHaveTheirValues)
{
    const std::pair<ESVmOpcode, int> cases[] = {
        {ESVmOpcode::NUM, 0x00},   {ESVmOpcode::STR, 0x0c},  {ESVmOpcode::CALLW, 0x1b},
        {ESVmOpcode::GETX, 0x2a},  {ESVmOpcode::PUTX, 0x32}, {ESVmOpcode::USHRX, 0x48},
        {ESVmOpcode::DECLM, 0x54}, {ESVmOpcode::LT, 0x5b},   {ESVmOpcode::NEG, 0x64},
        {ESVmOpcode::JLT, 0x6b},   {ESVmOpcode::RETU, 0x6d}};
    for (const auto& [opcode, value] : cases)
        EXPECT_EQ(int(opcode), value);
    for (int value = 0; value <= 0x6d; ++value)
        EXPECT_NE(esOpcodeInfo(std::uint8_t(value)), nullptr) << value;
}

} // namespace
