// Texts that try to exhaust something: each ends with a message or a result.

#include "forth/ForthTestSupport.h"

#include <gmock/gmock.h>

namespace {

std::string repeated(const std::string& text, int count)
{
    std::string result;
    for (int i = 0; i < count; ++i)
        result += text;
    return result;
}

std::string nested(const std::string& open, const std::string& close, const std::string& rest = "")
{
    constexpr int Depth = 100000;
    return ": deep " + repeated(open, Depth) + repeated(close, Depth) + " ; " + rest;
}

TEST(HostileText, DeepNesting)
{
    const std::pair<std::string, const char*> texts[] = {
        {nested("1 if ", "then ", "deep .\" through\""), "throughOK\n"},
        {nested("begin ", "0 until "), "OK\n"},
        {nested("1 case 1 of ", "endof endcase ", "deep depth ."), "0 OK\n"},
        {nested("1 0 do ", "loop ", "deep"), "loop stack overflow: deep\n"},
        {": leaves 1 0 do " + repeated("0 if leave then ", 100000) + "loop ; leaves", "OK\n"},
        {repeated("0 [if] ", 100000) + repeated("[then] ", 100000) + "1 .", "1 OK\n"},
    };
    for (const auto& [text, result] : texts)
        check({{text.c_str(), result}});
}

TEST(HostileText, LeaveUnderManyBranches)
{
    TestConsole console;
    console.polls = 2;
    const std::string text = ": deep 1 0 do " + repeated("if ", 50000) + repeated("leave ", 50000);
    EXPECT_EQ(console(text.c_str()), "user interrupt: leave\n");
}

TEST(HostileText, Recursion)
{
    check({{": a recurse ; a", "return stack overflow: a\n"},
           {"variable self : a self @ catch throw ; ' a self ! a", "exception stack overflow: a\n"},
           {"variable self : a self @ execute ; ' a self ! a", "return stack overflow: a\n"},
           {": fill 400 0 do ['] execute loop ; fill ' execute execute",
            "stack underflow: execute\n"},
           {": fill 400 0 do ['] catch loop ; fill catch depth .", "400 OK\n"},
           {": a 1 locals| x | recurse ; a", "return stack overflow: a\n"},
           {": a 1 0 do recurse loop ; a", "return stack overflow: a\n"},
           {"create b ' b 1 : a create does> execute ; a c", "OK\n"}});
}

TEST(HostileText, IncludingWithoutEnd)
{
    TestConsole console;
    console.files().put(u"twice.fs"_s,
                        "' included s\" twice.fs\" rot catch "
                        "' included s\" twice.fs\" rot catch\n");
    console.polls = 5;
    EXPECT_THAT(console("include twice.fs"), testing::HasSubstr("twice.fs:1: "));
    EXPECT_EQ(console.context().savedPositions(), 0U);
    console.polls = 5;
    EXPECT_EQ(console("1 ."), "1 OK\n");
}

TEST(HostileText, FilesOfBytes)
{
    TestConsole console;
    console.files().put(u"bytes"_s, QByteArray("\x80\xff\xc3 \xed\xa0\x80 \0 1", 11));
    EXPECT_FALSE(console.load(u"bytes"_s));
    EXPECT_THAT(console.takeText(), testing::StartsWith("bytes:1: undefined word: "));
    check({{"\x01 1 . \x7f", "1 undefined word: \x7f\n"},
           {"1\xc2\xa0"
            "2 . .",
            "2 1 OK\n"},
           {"char \xf0\x9f\x98\x80 dup . emit", "128512 \xf0\x9f\x98\x80OK\n"}});
}

TEST(HostileText, StateAndDefinitionsOutOfOrder)
{
    check({{"1 state ! 2", "no current definition: 2\n"},
           {"s\" x\" state ! dup", "no current definition: dup\n"},
           {": a [ : b 1 ; b .\na", "1 OK\nundefined word: a\n"},
           {": a [ ; ] 5 ; a .", "interpreting a compile-only word: ;\n"},
           {":noname [ dup >body ] ;", ">BODY error: >body\n"},
           {":noname drop nowhere\nexecute", "undefined word: nowhere\nout of context: execute\n"},
           {": a create does> [ : b ] 1 ; b .", "1 OK\n"},
           {": a 1 ; immediate : b a literal ; b .", "1 OK\n"},
           {": a ' execute ; 5 a dup . .", "5 5 OK\n"},
           {": a does> 1 ; a", ">BODY error: a\n"}});
}

TEST(HostileText, MemoryAndStringsThatAreTooLarge)
{
    TestConsole console;
    console.polls = 1000;
    EXPECT_EQ(console(": a begin 1 , again ; a"), "invalid argument: a\n");
    EXPECT_EQ(console(": a begin [ ' :noname compile, ] drop again ; a"), "dictionary full: a\n");
    EXPECT_EQ(console("1 ."), "1 OK\n");
}

} // namespace
