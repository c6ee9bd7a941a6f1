#include "KasTestSupport.h"

#include <gtest/gtest.h>

namespace {

struct ErrorCase {
    const char* source;
    const char* message; ///< behind "a.s(LINE): error: "
    int line = 1;
};

const ErrorCase Errors[] = {
    {"foo r5", "unknown instruction 'foo'"},
    {"\n\n foo: bar", "unknown instruction 'bar'", 3},
    {".foo", "unknown directive '.foo'"},
    {"movx r5, r6", "'movx' needs the option -mcpux"},
    {"mova r5, r6", "'mova' needs the option -mcpux"},
    {"jmpx 1", "unknown instruction 'jmpx'"},
    {"mov.a r5, r6", "'mov.a' has to be written with an x, as 'movx.a'"},
    {"mov.q r5, r6", "'mov.q' has a size that the instruction doesn't have"},
    {"swpb.b r5", "'swpb.b' has a size that the instruction doesn't have"},
    {"call.w r5", "'call.w' has a size that the instruction doesn't have"},
    {"mov", "missing operand"},
    {"mov r5", "missing ',' at the end"},
    {"mov r5 r6", "missing ',' before 'r6'"},
    {"mov r5,", "missing operand"},
    {"mov r5, r6, r7", "unexpected ','"},
    {"mov r5, #1", "operand can't be a destination"},
    {"mov r5, @r6+", "operand can't be a destination"},
    {"rra #1", "operand can't be a destination"},
    {"mov @foo, r5", "'foo' isn't a register"},
    {"mov @", "missing register"},
    {"mov @r2, r5", "register 'R2' can't hold an address"},
    {"mov 2(r3), r5", "register 'R3' can't hold an address"},
    {"mov @pc+, r5", "'@PC+' has to be written as '#' and the value"},
    {"mov #r5, r6", "register 'r5' in an expression"},
    {"mov #0x10000, r5", "value 65536 is out of range"},
    {"mov #-32769, r5", "value -32769 is out of range"},
    {"mov.b #256, r5", "value 256 is out of range"},
    {"mov 70000(r5), r6", "offset 70000 is out of range"},
    {"mov &70000, r6", "address 70000 is out of range"},
    {".byte 1\nnop", "instruction at an odd address", 2},
    {"jmp", "missing expression"},
    {"jmp #foo", "missing expression before '#'"},

    {".word", "missing expression"},
    {".word 1,", "missing expression"},
    {".word 65536", "value 65536 doesn't fit 2 bytes"},
    {".byte -129", "value -129 doesn't fit 1 byte"},
    {".long 0x100000000", "value 4294967296 doesn't fit 4 bytes"},
    {".quad foo", "value has to be known while assembling"},
    {".word 1 +", "missing expression"},
    {".word (1", "missing ')' at the end"},
    {".word 1)", "unexpected ')'"},
    {".word 0x", "malformed number '0x'"},
    {".word 12ab", "malformed number '12ab'"},
    {".word 09", "malformed number '09'"},
    {".word 0x12345678123456789", "number '0x12345678123456789' has more than 64 bits"},
    {".word 'a", "malformed character constant"},
    {".ascii \"abc", "string without its closing quote"},
    {".ascii 5", "missing string"},
    {".word `", "unexpected character '`'"},
    {".align 3", "alignment 3 isn't a power of two"},
    {".align 0", "alignment 0 isn't from 1 to 32768"},
    {".align foo", "alignment has to be known while assembling"},
    {".space -1", "size -1 is out of range"},
    {".space foo, 1", "size has to be known while assembling"},
    {".fill -1", "count -1 isn't from 0 to 2147483647"},
    {".fill 1, 8", "size 8 isn't from 1 to 4"},
    {".fill 70000, 2, 1", "count 70000 is too high for values of more than a byte"},
    {".org -2", "origin -2 isn't from 0 to 1048575"},
    {".section FOO", "section 'FOO' needs a kind"},
    {".section FOO, fast", "unknown section kind 'fast'"},
    {".section F, code\n.section F, data", "section 'F' is of another kind", 2},

    {".bss\n.word 1", "section 'UDATA0' has no room for contents", 2},
    {".bss\n.word foo", "section 'UDATA0' has no room for contents", 2},
    {".bss\nnop", "section 'UDATA0' has no room for contents", 2},

    {"a: nop\na: nop", "'a' is already defined in line 1", 2},
    {"a: nop\na = 1", "'a' is already a label", 2},
    {"a = 1\na: nop", "'a' is already defined in line 1", 2},
    {"r5: nop", "'r5' can't be a label"},
    {"r5 = 1", "'r5' can't be given a value"},
    {"nop\njmp 1b", "there is no label '1' in front", 2},
    {"nop\njmp 1f", "there is no label '1' behind", 2},
    {"jmp .Lx", "label '.Lx' is used but not defined"},
    {".global", "missing symbol"},
    {"= 1", "missing instruction before '='"},

    {".if\n.endif", "missing expression"},
    {".if foo\n.endif", "condition has to be known while assembling"},
    {"nop\n.if 1", "'.if' without '.endif'", 2},
    {".endif", "'.endif' without '.if'"},
    {".else", "'.else' without '.if'"},
    {".if 1\n.else\n.else\n.endif", "'.else' behind '.else'", 3},
    {".if 1\n.else\n.elseif 1\n.endif", "'.elseif' behind '.else'", 3},
    {".macro\n.endm", "missing macro name"},
    {".macro m a-b\n.endm", "malformed parameter 'a-b'"},
    {".macro m\nnop", "missing '.endm'"},
    {".endm", "'.endm' without '.macro'"},
    {".exitm", "'.exitm' outside of a macro"},
    {".macro m a\n.endm\nm 1, 2", "too many arguments for macro 'm'", 3},
    {".macro m a:req\n.endm\nm", "macro 'm' needs the argument 'a'", 3},
    {".rept 2\nnop", "missing '.endr'"},
    {".rept -1\n.endr", "count -1 isn't from 0 to 1000000"},
    {".endr", "'.endr' without '.rept'"},
    {".irp\n.endr", "missing parameter"},
    {".include \"no such file\"", "can't find the file 'no such file'"},
    {".linkif 1\nnop", "'.linkif' without '.endlinkif'"},
    {".endlinkif", "'.endlinkif' without '.linkif' in this section"},
    {".linkif 1\n.org 2\n.endlinkif", "'.org' inside of '.linkif'", 2},
    {".error \"not this way\"", "not this way"},
};

const ErrorCase ExtendedErrors[] = {
    {"mov.a r5, r6", "'mov.a' has to be written with an x, as 'movx.a'"},
    {"swpbx.b r5", "'swpbx.b' has a size that the instruction doesn't have"},
    {"rrux @r5", "'rrux' takes a register"},
    {"rpt #2\nmov r5, r6", "'mov' can't be repeated", 2},
    {"rpt #2\nmovx @r5, r6", "only an instruction between registers can be repeated", 2},
    {"rpt #2\n.word 1", "'rpt' has to stand in front of an instruction", 2},
    {"rpt #17", "count 17 isn't from 1 to 16"},
    {"rpt #foo", "count has to be known while assembling"},
    {"rrcm #5, r4", "count 5 isn't from 1 to 4"},
    {"pushm #3, r1", "there are not that many registers from 'R1' down"},
    {"mova @r5, @r6", "'mova' takes a register on one side"},
    {"mova r5, #1", "operand can't be a destination"},
    {"adda @r5, r6", "'adda' takes a register or a value, and a register"},
    {"mova #0x100000, r5", "value 1048576 is out of range"},
    {"mova 0x20000(r5), r6", "offset 131072 is out of range"},
};

void check(const ErrorCase& c, const AssemblerOptions& options)
{
    const Assembled result(c.source, options);
    ASSERT_EQ(result.messages.size(), 1u) << c.source;
    EXPECT_EQ(result.messages[0], "a.s(" + std::to_string(c.line) + "): error: " + c.message)
        << c.source;
}

TEST(KasErrors, EachAtItsLine)
{
    for (const ErrorCase& c : Errors)
        check(c, {});
    for (const ErrorCase& c : ExtendedErrors)
        check(c, msp430xOptions());
}

TEST(KasErrors, AllAreReported)
{
    EXPECT_EQ(Assembled("foo\nnop\nbar\n# 7 \"b.inc\"\nbaz").messages,
              (std::vector<std::string>{"a.s(1): error: unknown instruction 'foo'",
                                        "a.s(3): error: unknown instruction 'bar'",
                                        "b.inc(7): error: unknown instruction 'baz'"}));
}

TEST(KasErrors, InMacrosTheCallIsNamedToo)
{
    EXPECT_EQ(Assembled(".macro in\nfoo\n.endm\n.macro out\nin\n.endm\nout").messages,
              (std::vector<std::string>{"a.s(2): error: unknown instruction 'foo'",
                                        "a.s(5): note: called from here",
                                        "a.s(7): note: called from here"}));
}

TEST(KasErrors, WarningDirective)
{
    EXPECT_EQ(Assembled("nop\n.warning \"old\"").messages,
              std::vector<std::string>{"a.s(2): warning: old"});
}

std::string repeated(const std::string& text, int count)
{
    std::string all;
    for (int i = 0; i < count; ++i)
        all += text;
    return all;
}

TEST(KasErrors, HostileSourcesEndInAMessage)
{
    const std::pair<std::string, const char*> cases[] = {
        {".macro m\nm\n.endm\nm", "macros are nested too deeply"},
        {".macro m\nm\nm\n.endm\nm", "macros are nested too deeply"},
        {".macro m x\nm \\x\\x\n.endm\nm aaaaaaaaaaaaaaaa",
         "line becomes too long in the expansion of a macro"},
        {".rept 1000000\n.rept 1000000\nnop\n.endr\n.endr", "macros expand to too many lines"},
        {".word " + repeated("(", 100000), "expression is nested too deeply"},
        {".word " + repeated("-", 100000) + "1", "expression is nested too deeply"},
        {".word " + repeated("a+", 100000) + "a", "expression has too many operations"},
        {repeated(".if 1\n", 2000), "'.if' is nested too deeply"},
    };
    for (const auto& [source, message] : cases) {
        const Assembled result(source);
        ASSERT_FALSE(result.messages.empty()) << message;
        EXPECT_NE(result.messages[0].find(message), std::string::npos) << result.messages[0];
    }
    // What doubles with each use stays within the limits too.
    std::string doubling = ".equ e0, a+a\n";
    for (int i = 1; i < 200; ++i)
        doubling += ".equ e" + std::to_string(i) + ", e" + std::to_string(i - 1) + "+e"
            + std::to_string(i - 1) + "\n";
    EXPECT_FALSE(Assembled(doubling).messages.empty());
    // Equates that need each other have no value.
    EXPECT_FALSE(Assembled(".equ a, b\n.equ b, a\n.if a\n.endif").messages.empty());
}

} // namespace
