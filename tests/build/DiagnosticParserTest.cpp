#include "build/log/MessageToken.h"
#include "build/log/RegexpDiagnosticParser.h"
#include "build/log/STAPLDiagnosticParser.h"
#include "build/log/TOBFDiagnosticParser.h"

#include <gtest/gtest.h>

#include <chrono>

using namespace Qt::Literals::StringLiterals;

namespace {

/// "LEVEL|PATH|LINE|MESSAGE", or "-" for a line that isn't a diagnostic.
std::string parsed(DiagnosticParser& parser, const QString& line)
{
    DiagnosticData data;
    if (!parser.parse(Path(u"/project"_s), line, data))
        return "-";
    return u"%1|%2|%3|%4"_s.arg(data.level)
        .arg(data.path.osPath())
        .arg(data.line)
        .arg(data.message)
        .toStdString();
}

struct LineCase {
    const char* line;
    const char* expected;
};

void expectLines(DiagnosticParser& parser, std::initializer_list<LineCase> cases)
{
    for (const LineCase& it : cases)
        EXPECT_EQ(parsed(parser, QString::fromUtf8(it.line)), it.expected) << it.line;
}

} // namespace

TEST(TOBFDiagnosticParser, messagesWithAFile)
{
    TOBFDiagnosticParser parser;
    expectLines(
        parser,
        {
            {"/p/main.c(12): error 42: undeclared 'x'", "4|/p/main.c|12|undeclared 'x'"},
            {"main.c(12): warning: unused", "3|main.c|12|unused"},
            {"main.c(1): note: see here", "2|main.c|1|see here"},
            {"main.c(1): fatal error: cannot open", "5|main.c|1|cannot open"},
            {"src\\sub\\main.c(7): error: bad", "4|src/sub/main.c|7|bad"},
            // The last colon with white space and a text behind it ends what isn't the message.
            {"a.c(1): error 3: in f: missing ;", "4|a.c|1|missing ;"},
            {"a.c(1): error: x::y", "4|a.c|1|x::y"},
            {"a.c(1): error: two:\tthree", "4|a.c|1|three"},
            {"a.c(1): error: ends: ", "4|a.c|1|ends: "},
            // The last line number that a severity follows is the place.
            {"dir(2)/a.c(10): error: x", "4|dir(2)/a.c|10|x"},
            {"a.c(1): error: b.c(2): error: x", "4|a.c(1): error: b.c|2|x"},
            {"(5): error: x", "4||5|x"},
            {"a.c(99999999999): error: x", "4|a.c|0|x"},
            {"\xC3\xA4 \xE2\x82\xAC.c(3): error: \xC3\xB6", "4|\xC3\xA4 \xE2\x82\xAC.c|3|\xC3\xB6"},
            // The order of the search decides, not the order in the line.
            {"a.c(1): error: mind this: note well", "-"},
            {"a.c(1): note: was: error: x", "2|a.c|1|x"},
            {"a.c(1): warning: was: fatal thing", "3|a.c|1|fatal thing"},
        });
}

TEST(TOBFDiagnosticParser, messagesWithoutAFile)
{
    TOBFDiagnosticParser parser;
    expectLines(parser,
                {
                    {"kld: error: undefined symbol: main", "4||-1|undefined symbol: main"},
                    {"kcc: fatal: no memory", "5||-1|no memory"},
                    {"kld: error 5: x", "-"},
                    {"kld: errors: error: x", "4||-1|x"},
                    {"a.c(): error: x", "4||-1|x"},
                    {": error: at the start", "-"},
                    {": error: at the start: error: again", "-"},
                    {"kld: error:", "-"},
                    {"kld: error: ", "-"},
                    {"kld: Error: x", "-"},
                    {"error: x", "-"},
                    {"Compiling a.c", "-"},
                    {"", "-"},
                });
}

TEST(STAPLDiagnosticParser, lines)
{
    STAPLDiagnosticParser parser;
    expectLines(parser,
                {
                    {"a.stapl(12): error: bad statement", "4|a.stapl|12|bad statement"},
                    {"a.stapl(): error: x", "4|a.stapl|0|x"},
                    {"a.stapl(1): error: ", "4|a.stapl|1|"},
                    {"a(1): error: b(2): error: c", "4|a(1): error: b|2|c"},
                    {"a.stapl(1): warning: x", "-"},
                    {"a.stapl(1): error:x", "-"},
                    {"a.stapl(x): error: x", "-"},
                });
}

TEST(RegexpDiagnosticParser, lowestLevelWins)
{
    RegexpDiagnosticParser parser;
    EXPECT_EQ(parser.setRegexp(DiagnosticData::Error, u"^(.*):(\\d+): (.*)$"_s), QString());
    EXPECT_EQ(parser.setRegexp(DiagnosticData::Warning, u"(\\S+):(\\d+): warning (.*)"_s),
              QString());
    expectLines(parser,
                {
                    {"a.c:3: wrong", "4|a.c|3|wrong"},
                    {"in a.c:3: warning odd", "3|a.c|3|odd"},
                    {"a.c:3: WARNING odd", "4|a.c|3|WARNING odd"},
                    {"hello", "-"},
                });
    EXPECT_NE(parser.setRegexp(DiagnosticData::Error, u"(unclosed"_s), QString());
    EXPECT_EQ(parsed(parser, u"(unclosed"_s), "-");
    EXPECT_EQ(parsed(parser, u"a:1: warning b"_s), "3|a|1|b");
    parser.setRegexp(DiagnosticData::Warning, QString());
    EXPECT_EQ(parsed(parser, u"a:1: warning b"_s), "-");
}

TEST(DiagnosticParsers, hugeLinesTakeLittleTime)
{
    TOBFDiagnosticParser tobf;
    STAPLDiagnosticParser stapl;
    RegexpDiagnosticParser regexp;
    regexp.setRegexp(DiagnosticData::Error, u"(.*)\\((\\d+)\\): .*error.*: (.*)$"_s);
    const qsizetype size = 1'000'000;
    QStringList lines;
    for (const QString& piece :
         {u"x"_s, u"("_s, u"(1"_s, u"(1)"_s, u"): error"_s, u"(1): error"_s, u": error:"_s,
          u"(1): error "_s, u"(): error: "_s, u"1"_s, u": "_s, u": note: fatal"_s})
        lines << piece.repeated(size / piece.size());
    const auto begin = std::chrono::steady_clock::now();
    for (const QString& line : lines) {
        for (DiagnosticParser* parser :
             std::initializer_list<DiagnosticParser*>{&tobf, &stapl, &regexp})
            parsed(*parser, line);
    }
    const auto taken = std::chrono::steady_clock::now() - begin;
    EXPECT_LT(taken, std::chrono::seconds(20));

    EXPECT_EQ(parsed(tobf, u"a.c(1): error: "_s + u'y'), "4|a.c|1|y");
    DiagnosticData data;
    EXPECT_TRUE(tobf.parse(Path(), u"a.c(1): error: "_s + lines.first(), data));
    EXPECT_EQ(data.message.size(), size);
}

TEST(MessageToken, wordInQuotes)
{
    const struct {
        const char* message;
        const char* token;
    } cases[] = {
        {"syntax error before 'foo'", "foo"},
        {"'a' is wrong before 'b' and 'c'", "b"},
        {"undeclared identifier 'bar' in 'baz'", "bar"},
        {"missing 'x before 'y", "x before "},
        {"unexpected before 'y", ""},
        {"unexpected 'y", ""},
        {"empty ''", ""},
        {"none", ""},
    };
    for (const auto& it : cases)
        EXPECT_EQ(quotedToken(QString::fromUtf8(it.message)).toStdString(), it.token) << it.message;
}
