#include "KasTestSupport.h"

#include "objfile/model/TOBFDirectives.h"
#include "objfile/model/TOBFExpr.h"
#include "objfile/model/TOBFMarker.h"

#include <gtest/gtest.h>

namespace {

using Messages = std::vector<std::string>;

struct DataCase {
    const char* what;
    const char* source;
    const char* bytes;
};

TEST(KasSource, DataAndLayout)
{
    const DataCase cases[] = {
        {"sizes, low byte first", ".byte 1, -1\n.word 0x1234\n.long 0x12345678\n.quad -2",
         "01ff341278563412feffffffffffffff"},
        {"aliases", ".short 1\n.hword 2\n.int 3\n.2byte 4\n.4byte 5\n.8byte 6",
         "0100020003000400050000000600000000000000"},
        {"strings", ".ascii \"a\\n\", \"b\"\n.asciz \"c\\x41\\101\\\"\"\n.byte \"d\", 0",
         "610a6263414122006400"},
        {"space and fill", ".space 2\n.skip 1, 0xEE\n.fill 2\n.fill 2, 1, 7\n.fill 2, 2, 0x1234",
         "0000ee0000070734123412"},
        {"uniform fill is one item", ".fill 3, 2, 0xABAB", "abababababab"},
        {"alignment",
         ".byte 1\n.align 4\n.byte 2\n.p2align 1\n.byte 3\n.even\n.balign 8, 0\n.byte 4",
         "010000000200030004"},
        {"characters", ".byte 'a', '\\n', '\\'', ';'", "610a273b"},
        {"numbers", ".word 0x10, 0b101, 017, 10", "100005000f000a00"},
        {"ranks of operators", ".word 2+3*4, (2+3)*4, 1<<4|1, 7&3^1, -2+5, ~0&0xF, !3, !0",
         "0e001400110002000300"
         "0f0000000100"},
        {"comparisons", ".word 1<2, 2<=1, 1==1 && 2!=2, 0||5, 7%4, 7/2",
         "010000000000010003000300"},
        {"left to right", ".word 10-3-2, 100/10/2, 1-1+1", "050005000100"},
        {"halves", ".word lo(0x12345678), hi(0x12345678)", "78563412"},
        {"equates",
         "two = 2\n.equ three, 3\n.set four, two*2\nfive .equ four+1\n.word two, three, four, five",
         "0200030004000500"},
        {"an equate may change", ".set n, 1\n.byte n\n.set n, n+1\n.byte n", "0102"},
        {"addresses", "a: .word a, b-a, .-a\nb:", "001006000400"},
        {"statements on a line", "a: b: nop { nop", "03430343"},
        {"comments",
         "nop ; one // two\n# a line\nnop // x\n/* nop\nnop */ nop\n.byte ';' ; x\n.ascii \"//;\"",
         "0343034303433b2f2f3b"},
        {"a mark of the byte order", "\xEF\xBB\xBFnop", "0343"},
        {"numbered labels", "1: .word 1b, 1f\n1: .word 1b, 1f\n1:", "0010041004100810"},
        {"labels of the file", ".La: .word .Lb\n.Lb: .word .La", "02100010"},
    };
    for (const DataCase& c : cases) {
        const Assembled result(c.source);
        EXPECT_EQ(result.messages, Messages{}) << c.what;
        EXPECT_EQ(result.bytes(), c.bytes) << c.what;
    }
}

TEST(KasSource, ConditionsMacrosAndRepetitions)
{
    const DataCase cases[] = {
        {"if", ".if 1\n.byte 1\n.else\n.byte 2\n.endif", "01"},
        {"else", ".if 0\n.byte 1\n.elseif 0\n.byte 2\n.else\n.byte 3\n.endif", "03"},
        {"elseif", ".if 0\n.elseif 5\n.byte 2\n.elseif 1\n.byte 3\n.else\n.byte 4\n.endif", "02"},
        {"nested in what is left out",
         ".if 0\n.if 1\n.byte 1\n.else\n.byte 2\n.endif\nrubbish '\n.endif\n.byte 3", "03"},
        {"ifdef",
         "a = 1\n.ifdef a\n.byte 1\n.endif\n.ifndef a\n.byte 2\n.endif\n.ifdef b\n.byte 3\n.endif",
         "01"},
        {"macro", ".macro pair a, b=9\n.byte \\a, \\b\n.endm\npair 1, 2\nPAIR 3\npair b=4, a=5",
         "010203090504"},
        {"counter and separator",
         ".macro l x\n\\x\\()\\@: .byte \\@\n.endm\nl a\nl a\n.word a0, a1", "000100100110"},
        {"rest of the arguments",
         ".macro all first, rest:vararg\n.byte \\first\n.byte \\rest\n.endm\nall 1, 2, 3",
         "010203"},
        {"recursion ends", ".macro down n\n.byte \\n\n.if \\n\ndown \\n-1\n.endif\n.endm\ndown 3",
         "03020100"},
        {"exitm", ".macro m n\n.if \\n\n.byte 1\n.exitm\n.endif\n.byte 2\n.endm\nm 1\nm 0\n.byte 3",
         "010203"},
        {"macro in macro", ".macro outer\n.macro inner\n.byte 1\n.endm\n.endm\nouter\ninner", "01"},
        {"rept", ".rept 3\n.byte 7\n.endr\n.rept 0\n.byte 8\n.endr", "070707"},
        {"rept in rept", ".rept 2\n.rept 2\n.byte 1\n.endr\n.byte 2\n.endr", "010102010102"},
        {"irp", ".irp r, 4, 5\n.byte \\r\n.endr", "0405"},
        {"end", ".byte 1\n.end\n.byte 2\nrubbish", "01"},
    };
    for (const DataCase& c : cases) {
        const Assembled result(c.source);
        EXPECT_EQ(result.messages, Messages{}) << c.what;
        EXPECT_EQ(result.bytes(), c.bytes) << c.what;
    }
}

TEST(KasSource, SectionsAndTheirKinds)
{
    const Assembled result(
        ".text\nnop\n.data\n.word 1\n.bss\n.space 2\n.rodata\n.word 2\n"
        ".section .text.more,\"ax\",@progbits\nnop\n.section INTVEC\n.word 3\n"
        ".section RESET\n.word 4\n.section EXTRA, eeprom\n.byte 5\n.section FAST, code\nnop\n"
        ".section \"MINE\", \"aw\", @nobits\n.space 1\n.section IDATA0\n.word 6\n.vectors\n.word "
        "7\n");
    EXPECT_EQ(result.messages, Messages{});
    const std::pair<const char*, unsigned> flags[] = {
        {"CODE", 0x80001},  {"IDATA0", 2},       {"UDATA0", 3},
        {"CONST", 0x80004}, {"INTVEC", 0x80004}, {"RESET", 0x80004},
        {"EXTRA", 0x80006}, {"FAST", 0x80001},   {"MINE", 3},
    };
    for (const auto& [name, value] : flags) {
        ASSERT_NE(result.section(name), nullptr) << name;
        EXPECT_EQ(result.section(name)->flags(), value) << name;
    }
    EXPECT_EQ(result.module->sections().size(), std::size(flags));
    EXPECT_EQ(result.bytes("CODE"), "03430343");

    AssemblerOptions options;
    options.sections = {"C1", "D1", "Z1", "K1", "V1"};
    const Assembled renamed(
        "nop\n.data\n.byte 1\n.bss\n.space 1\n.rodata\n.byte 2\n.vectors\n.word 3", options);
    std::string names;
    for (TOBFSection* section : renamed.module->sections())
        names += section->getName()->str() + " ";
    EXPECT_EQ(names, "C1 D1 Z1 K1 V1 ");
}

/// A fragment is what the linker may drop or move: "|" in front of each.
TEST(KasSource, FragmentsBeginWhereNothingRunsInto)
{
    EXPECT_EQ(
        Assembled(".global a,b,c,d,e\na: jmp a\nb: ret\nc: reti\nd: br #a\ne: mov r5, pc").items(),
        "| .ALIGN BYTE[2];a; JMP a;| .ALIGN BYTE[2];b; MOV.W @SP+, PC;| .ALIGN BYTE[2];c; RETI;"
        "| .ALIGN BYTE[2];d; MOV.W #a, PC;| .ALIGN BYTE[2];e; MOV.W R5, PC;");
    const struct {
        const char* what;
        const char* source;
        const char* section;
        std::size_t fragments;
    } counts[] = {
        {"code that runs on", ".global a,b,c,d\na: nop\nb: jeq a\nc: call #a\nd: ret", "CODE", 1},
        {"labels that aren't global", "a: ret\nb: ret\n.Lc: ret\n1: ret", "CODE", 1},
        {"another section in between, running on", "nop\n.data\n.text\nnop", "CODE", 1},
        {"another section in between", "ret\n.data\n.byte 1\n.text\nret", "CODE", 2},
        {"data", ".data\n.global x,y\nx: .word 1\ny: .word 2", "IDATA0", 2},
        {"two names of one place", ".data\n.global x,y\nx: y: .word 1", "IDATA0", 1},
        {"data in code that runs on", ".global b\nnop\n.word 0x4303\nb: ret", "CODE", 1},
        {"data behind a transfer", ".global b\nret\n.word 1\nb: ret", "CODE", 2},
        {"link-time conditions stay whole", ".global b\n.linkif 1\nret\nb: ret\n.endlinkif", "CODE",
         1},
        {"each origin has its own", ".vectors\n.org 2\n.word 1\n.org 8\n.word 2", "INTVEC", 2},
        {"what follows an origin stays with it", ".global b\n.vectors\n.org 2\n.word 1\nb: .word 2",
         "INTVEC", 1},
    };
    for (const auto& c : counts) {
        const Assembled result(c.source);
        EXPECT_EQ(result.messages, Messages{}) << c.what;
        EXPECT_EQ(result.section(c.section)->fragments().size(), c.fragments) << c.what;
    }
}

TEST(KasSource, FragmentsKeepTheAlignmentOfTheirPlace)
{
    EXPECT_EQ(Assembled(".data\n.global a,b,c\na: .byte 1\nb: .byte 2\nc: .word 3").items("IDATA0"),
              "| .ALIGN BYTE[2];a; DB 1 // 1;|b; DB 2 // 2;| .ALIGN BYTE[2];c; DW 3 // 3;");
    EXPECT_EQ(Assembled(".data\n.global b\n.byte 1\n.align 8\nb: .byte 2").items("IDATA0"),
              "| .ALIGN BYTE[2]; DB 1 // 1; .ALIGN BYTE[8];| .ALIGN BYTE[8];b; DB 2 // 2;");
}

TEST(KasSource, SymbolsOfTheModule)
{
    const Assembled result(
        ".global main, value, nowhere\n.weak hook\n.extern other\n.type main, @function\n"
        "main: call #outside\nlocal: ret\nhook: ret\n.equ value, 42\n.equ place, local+2\n.Lx: "
        "nop\n");
    EXPECT_EQ(result.messages, Messages{});
    const auto& all = result.module->publicSymbols();
    std::string names;
    for (const auto& [name, symbol] : all)
        names += name->str() + " ";
    EXPECT_EQ(all.size(), 3u) << names;
    EXPECT_TRUE(all.contains(HString::intern("main")));
    EXPECT_TRUE(all.contains(HString::intern("hook")));
    EXPECT_EQ(result.symbol("value")->definition()->evaluate().value, 42);
    EXPECT_EQ(result.symbol("main")->definition()->kind(), TOBFKind::MarkerExpr);
    EXPECT_NE(result.symbol("main")->type(), nullptr);
    EXPECT_NE(result.symbol("local"), nullptr);
    EXPECT_EQ(result.symbol("outside"), nullptr) << "external ones are not of this scope";
    EXPECT_EQ(result.symbol(".Lx"), nullptr);
    EXPECT_EQ(result.module->attribute(HString::intern("weak"))->str(), "hook");
}

TEST(KasSource, SpecialItems)
{
    EXPECT_EQ(Assembled(".rodata\n.init \"IDATA0\"\n.linkif __have && 2\n.byte 1\n.endlinkif\n.org "
                        "6\n.space size")
                  .items("CONST"),
              "| .ALIGN BYTE[2]; .INIT \"IDATA0\"; LINKIF __have && 2; DB 1 // 1; ENDLINKIF;| ORG "
              "6; .SPACE size;");
    EXPECT_EQ(Assembled(".bss\n.byte 0\n.fill 3, 1, 0\n.align 2").bytes("UDATA0"), "00000000");
    const Assembled huge(".fill 0x7fffffff\n.bss\n.space 0x7fffffff");
    EXPECT_EQ(huge.messages, Messages{});
}

TEST(KasSource, LineRecordsForTheDebugger)
{
    const Assembled result(
        ".macro two\nnop\nnop\n.endm\nstart: nop\nnop { nop\ntwo\n.data\n.byte 1\n"
        "# 40 \"other.inc\"\n.text\nret\n.global f\nf: ret\n",
        debugOptions());
    std::string lines;
    for (TOBFFragment* fragment : result.section("CODE")->fragments())
        for (TOBFInsn* insn : fragment->insns())
            if (insn->kind() == TOBFKind::Locus) {
                const auto* locus = static_cast<TOBFLocus*>(insn);
                const std::string file = locus->filename()->file()->str();
                lines +=
                    file.substr(file.rfind('/') + 1) + ":" + std::to_string(locus->line()) + " ";
                EXPECT_EQ(file[0], '/');
            } else if (insn->kind() == TOBFKind::ProcessorInsn) {
                lines += "i ";
            }
    EXPECT_EQ(lines, "a.s:5 i a.s:6 i i a.s:7 i i other.inc:41 i other.inc:43 i ");
    EXPECT_EQ(result.symbol("start")->locus()->line(), 5);
}

} // namespace
