// The console: what it shows, what survives a line, and how the program's commands come in.

#include "forth/ForthTestSupport.h"

#include <gmock/gmock.h>

namespace {

/// A console that shows everything.
class ShowingConsole : public FSConsole {
public:
    void output(const QString& text) override { shown += text; }
    bool carryOnExecuting() override
    {
        if (whileRunning)
            whileRunning();
        return true;
    }

    QString shown;
    std::function<void()> whileRunning;

protected:
    void startPrompt() override { shown += u"> "_s; }
    void startContinuationPrompt() override { shown += u"... "_s; }
};

TEST(Console, ShowsInputResultAndPrompt)
{
    ShowingConsole console;
    EXPECT_TRUE(console.process(u"1 2 + ."_s));
    EXPECT_FALSE(console.process(u"nowhere"_s));
    EXPECT_EQ(console.shown, u"1 2 + .\n3 OK\n> nowhere\nundefined word: nowhere\n> "_s);
}

TEST(Console, ContinuesADefinitionOverLines)
{
    ShowingConsole console;
    console.process(u": sum"_s);
    console.process(u"  1 2 +"_s);
    console.process(u"; sum ."_s);
    EXPECT_EQ(console.shown, u": sum\n...   1 2 +\n... ; sum .\n3 OK\n> "_s);
}

TEST(Console, AnErrorKeepsTheDataStackAndDropsTheRest)
{
    check({{"1 2 nowhere\n.s", "undefined word: nowhere\n<2> 1 2 OK\n"},
           {": a 1 >r 2 >r 0 0 / ; a\nr>", "divide by zero: a\nreturn stack underflow: r>\n"},
           {"7 >r\n: a 1 >r 0 0 / ; a\nr> .", "OK\ndivide by zero: a\n7 OK\n"},
           {": a if nowhere\nthen\nstate @ .",
            "undefined word: nowhere\ninterpreting a compile-only word: then\n0 OK\n"},
           {": a 3 0 do i throw loop ; a\n: b i ; b", "1 THROW undefined: a\nno DO loop: b\n"}});
}

TEST(Console, InterruptsWhatWouldNotEnd)
{
    for (const char* line :
         {": a begin again ; a", ": a begin 1 while repeat ; a", ": a 1 0 do 0 +loop ; a",
          ": a begin ['] dup catch drop again ; a", ": b begin again ; : a ['] b catch drop ; a",
          "9223372036854775807 spaces", "1 9223372036854775807 .r",
          ": a begin 30000 spaces again ; a", ": a begin wordlist drop depth drop again ; a",
          "create x 500000 allot : a begin x x 400000 move again ; a",
          ": a begin save-input restore-input drop again ; a"}) {
        TestConsole console;
        console.polls = 4;
        const std::string text = console(line);
        EXPECT_THAT(text,
                    testing::AnyOf(testing::HasSubstr("user interrupt: "),
                                   testing::HasSubstr("invalid wordlist: ")))
            << line;
        console.polls = 1000;
        EXPECT_EQ(console("1 ."), "1 OK\n");
    }
}

TEST(Console, TakesNoLineWhileOneRuns)
{
    ShowingConsole console;
    int refused = 0;
    console.whileRunning = [&] {
        EXPECT_TRUE(console.isRunning());
        refused += console.process(u"1"_s) ? 0 : 1;
        refused += console.load(u"file"_s) ? 0 : 1;
    };
    console.process(u": a 200000 0 do loop ; a depth ."_s);
    EXPECT_GE(refused, 2);
    EXPECT_FALSE(console.isRunning());
    EXPECT_TRUE(console.shown.endsWith(u"0 OK\n> "_s)) << console.shown.toStdString();
}

TEST(Console, LoadsFiles)
{
    TestConsole console;
    console.files().put(u"good.fs"_s, "\\ a comment\r\n: nine 9 ;\r\n.\" loaded\"");
    console.files().put(u"bad.fs"_s, "1\n: a 2\nnowhere ;\n");
    EXPECT_TRUE(console.load(u"good.fs"_s));
    EXPECT_EQ(console.takeText(), "loaded");
    EXPECT_FALSE(console.load(u"bad.fs"_s));
    EXPECT_EQ(console.takeText(), "bad.fs:3: undefined word: nowhere\n");
    EXPECT_FALSE(console.load(u"missing.fs"_s));
    EXPECT_EQ(console.takeText(), "i/o error: 2: missing.fs\n");
    EXPECT_EQ(console("nine . ."), "9 1 OK\n");
}

TEST(Console, LinesThatAreTooLongAreRefused)
{
    TestConsole console;
    console.files().put(u"long.fs"_s, QByteArray(MemoryFiles::Limit, ' '));
    EXPECT_FALSE(console.load(u"long.fs"_s));
    EXPECT_EQ(console.takeText(), "long.fs:1: string buffer overflow\n");
}

/// ( str n -- n str ), with a line of its own.
class Exchange : public MethodWrapper {
public:
    void execute(ScriptEngine* engine) override
    {
        const qint64 number = engine->fetchIntegerArgument();
        const QString text = engine->fetchStringArgument();
        engine->scriptOutput(u"exchanged"_s);
        engine->returnValue(static_cast<int>(number));
        engine->returnValue(text);
    }
};

TEST(Console, OffersTheProgramsCommands)
{
    TestConsole console;
    console.provideMethod(u"EXCHANGE"_s, std::make_unique<Exchange>());
    EXPECT_EQ(console("s\" a\" 5 exchange . .\n: x exchange ; s\" b\" 6 x . ."),
              "exchanged\na 5 OK\nexchanged\nb 6 OK\n");
    EXPECT_EQ(console("s\" abc\" 2 5 exchange . ."), "exchanged\nab 5 OK\n");
    EXPECT_EQ(console("exchange\n1 s\" a\" exchange\n1 ' exchange catch ."),
              "stack underflow: exchange\nunrelocated literal required: exchange\n-3 OK\n");
}

/// What words of the host may do besides.
class Failing : public MethodWrapper {
public:
    void execute(ScriptEngine*) override { throw 5; }
};

TEST(Console, SurvivesAnotherExceptionOfTheHost)
{
    TestConsole console;
    console.provideMethod(u"FAILING"_s, std::make_unique<Failing>());
    EXPECT_THROW(console.process(u": a 1 >r ['] failing catch ; a"_s), int);
    EXPECT_EQ(console("1 ."), "1 OK\n");
}

TEST(Context, NotesTheDigitsBehindThePoint)
{
    TestConsole console;
    for (const auto& [text, count] : {std::pair("3.14", 2), {"5.", 0}, {".125", 3}, {"7", 0}}) {
        console(text);
        EXPECT_EQ(console.context().digitsBehindPoint(), count) << text;
    }
}

} // namespace
