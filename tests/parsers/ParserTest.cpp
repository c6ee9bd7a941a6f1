#include "base/TargetConstants.h"
#include "editor/parsers/CodeEditDocGenParser.h"
#include "editor/parsers/CodeEditParser.h"
#include "editor/parsers/CodeSyntaxChecker.h"
#include "editor/parsers/DisassemblyCodeEditParser.h"
#include "editor/parsers/LanguageRegistry.h"
#include "editor/parsers/SpellChecker.h"

#include <QStringList>

#include <gtest/gtest.h>

#include <vector>

using namespace Qt::Literals::StringLiterals;

inline void PrintTo(const QString& text, std::ostream* out)
{
    *out << '"' << text.toStdString() << '"';
}

namespace {

/// What a parser says of a line, with a letter for the style of each character: those of Letters;
/// "!" in front of a line with a band, and "~" for the characters of a misspelled word.
struct Styled {
    QString characters;
    QString styles;
    int state;
    int depth;
};

// Text, Literal, Comment, Keyword, Disassembly, XML, Preprocessor, Operator, Register, Function,
// Fixme, documentation: keyword, argument, verbatim.
constexpr QStringView Letters = u".LCKDXPORFMkav";

Styled parse(CodeEditParser& parser, const QString& text, int state = 0)
{
    std::vector<char16_t> out(static_cast<std::size_t>(CodeEditParser::outputSize(text.size()))
                              + 1);
    out.back() = 0xABCD;
    parser.setState(state, 0);
    const qsizetype size = parser.parse(text, out.data());
    EXPECT_LT(size, CodeEditParser::outputSize(text.size()));
    EXPECT_EQ(out.back(), 0xABCD);
    EXPECT_EQ(out[static_cast<std::size_t>(size)], 0);
    Styled result{{}, {}, parser.state(), parser.depth()};
    int style = 0;
    bool wrong = false;
    for (qsizetype i = 0; i < size; ++i) {
        const char16_t unit = out[static_cast<std::size_t>(i)];
        if (unit != CodeEditParser::Mark) {
            result.characters += QChar(unit);
            result.styles += wrong ? u'~' : Letters[style];
            continue;
        }
        const char16_t code = out[static_cast<std::size_t>(++i)];
        if (code < CodeEditParser::SyntaxElementCount)
            style = code;
        else if (code == CodeEditParser::Band)
            result.styles += u'!';
        else if (code == (CodeEditParser::SpellingError | CodeEditParser::SetAttributes))
            wrong = true;
        else if (code == (CodeEditParser::SpellingError | CodeEditParser::ClearAttributes))
            wrong = false;
    }
    return result;
}

struct Line {
    QString text;
    QString styles;
    int state = 0; ///< behind the line
};

/// Lines that follow each other.
void expectStyles(CodeEditParser& parser, const std::vector<Line>& lines)
{
    int state = 0;
    for (const Line& line : lines) {
        const Styled styled = parse(parser, line.text, state);
        EXPECT_EQ(styled.characters, line.text);
        EXPECT_EQ(styled.styles, line.styles) << line.text.toStdString();
        EXPECT_EQ(styled.state, line.state) << line.text.toStdString();
        state = styled.state;
    }
}

CodeEditParser& parserFor(const char* extension)
{
    return *languages().parserForExtension(QString::fromLatin1(extension));
}

TEST(CParser, StylesCode)
{
    expectStyles(parserFor("c"),
                 {
                     {u"int x = 10UL;"_s, u"KKK...O.LLLLO"_s},
                     {u"0x1F+1e-5"_s, u"LLLLOLLOL"_s},
                     {u"foo (x)"_s, u"FFFFO.O"_s},
                     {u"foo(x)"_s, u"FFFO.O"_s},
                     {u"if (x)"_s, u"KKFO.O"_s},
                     {u"if(x)"_s, u"KKO.O"_s},
                     {u"1 (x)"_s, u"LFO.O"_s},
                     {u"#include <a.h>"_s, u"PPPPPPPP.O.O.O"_s},
                     {u"  #if x"_s, u"..PPP.."_s},
                     {QString(60, u'#') + u" x"_s, QString(60, u'P') + u".."_s},
                     {u"a$b@c"_s, u"....."_s},
                     {u"_Bool Int"_s, u"KKKKK...."_s},
                     {u"x // int"_s, u"..CCCCCC"_s},
                     {u""_s, u""_s},
                 });
    EXPECT_EQ(parse(parserFor("c"), u"{ { } \"{\" /* { */ {"_s).depth, 2);
}

TEST(CParser, FollowsTextsAndCommentsOverLines)
{
    expectStyles(parserFor("c"),
                 {
                     {u"/*"_s, u"CC"_s, 1},
                     {u"int \"x"_s, u"CCCCCC"_s, 1},
                     {u""_s, u""_s, 1},
                     {u"a */ int"_s, u"CCCC.KKK"_s, 0},
                     {u"\"abc\\"_s, u"LLLLL"_s, 0x22},
                     {u"int\" int"_s, u"LLLL.KKK"_s, 0},
                     {u"\"abc"_s, u"LLLL"_s, 0},
                     {u"'\\'' x"_s, u"LLLL.."_s, 0},
                     {u"'a\\"_s, u"LLL"_s, 0x27},
                     {u""_s, u""_s, 0},
                     {u"\"a\\\\\" x"_s, u"LLLLL.."_s, 0},
                     {u"\"a\\\\"_s, u"LLLL"_s, 0x22},
                     {u"b\" x"_s, u"LL.."_s, 0},
                     {u"\"/*\" /* \" */ x"_s, u"LLLL.CCCCCCC.."_s, 0},
                 });
}

TEST(CParser, KnowsDocumentation)
{
    expectStyles(parserFor("c"),
                 {
                     {u"/*! \\brief x */ int"_s, u"CCCCkkkkkkCCCCC.KKK"_s, 0},
                     {u"/*! \\param n the"_s, u"CCCCkkkkkkCaCCCC"_s, 3},
                     {u"&lt; <b> \\b{x y} z"_s, u"XXXXCXXXCkkkaaakCC"_s, 3},
                     {u"\\code"_s, u"kkkkk"_s, 4},
                     {u"int x;"_s, u"vvvvvv"_s, 4},
                     {u"\\endcode a"_s, u"kkkkkkkkCC"_s, 3},
                     {u"\\*/ int"_s, u"kCC.KKK"_s, 0},
                     {u"/*! \\code"_s, u"CCCCkkkkk"_s, 4},
                     {u"*/ int"_s, u"kk.KKK"_s, 0},
                 });
}

TEST(DocGenParser, StylesCommandsAndArguments)
{
    CodeEditDocGenParser parser;
    expectStyles(parser,
                 {
                     {u"\\title A b"_s, u"!kkkkkkaaaa"_s},
                     {u"\\split x y"_s, u"!kkkkkkCa.."_s},
                     {u"\\section A \\b c"_s, u"kkkkkkkkaaakkCa"_s},
                     {u"\\tt +x y"_s, u"kkkCaa.."_s},
                     {u"a \\code"_s, u"..kkkkk"_s, 4},
                     {u"x \\endcode y"_s, u"vvkkkkkkkk.."_s, 0},
                     {u"&amp; <p x"_s, u"XXXXX.XXXX"_s},
                 });
}

TEST(AssemblyParser, TakesTheWordBehindTheFirstSpaceForTheMnemonic)
{
    expectStyles(parserFor("s43"),
                 {
                     {u"main mov.w #10, r5 ; x"_s, u".....KKKKK.OLLO.RR.CCC"_s},
                     {u"  r5 R6"_s, u"..KK.RR"_s},
                     {u"loop: jmp $0f"_s, u"....O.KKK.LLL"_s},
                     {u"#define r5"_s, u"PPPPPPPPPP"_s},
                     {u" #x"_s, u".OK"_s},
                     {u" .byte 'a', \"b\""_s, u".KKKKK.LLLO.LLL"_s},
                     {u"/* a"_s, u"CCCC"_s, 1},
                     {u"#b */ x"_s, u"CCCCC.K"_s, 0},
                 });
}

TEST(OtherParsers, StyleTheirLanguages)
{
    expectStyles(parserFor("svf"),
                 {
                     {u"SDR 8 TDI (0F); ! x"_s, u"KKK.L.KKK.OLLOO.CCC"_s},
                     {u"state idle // y"_s, u"KKKKK.PPPP.CCCC"_s},
                 });
    expectStyles(parserFor("stapl"),
                 {
                     {u"procedure run;"_s, u"KKKKKKKKK....O"_s},
                     {u"x (1) $0F"_s, u"FFOLO.LLL"_s},
                     {u"$0F AB; AB"_s, u"LLL.LLO..."_s},
                     {u"wait 100 cycles"_s, u"KKKK.LLL.KKKKKK"_s},
                     {u"print \"a' b\" ' c"_s, u"KKKKK.LLLLLL.CCC"_s},
                 });
    expectStyles(parserFor("vhd"),
                 {
                     {u"x'length = '1' -- c"_s, u".O.......O.LLL.CCCC"_s},
                     {u"BEGIN begin"_s, u"......KKKKK"_s},
                 });
    expectStyles(parserFor("fs"),
                 {
                     {u": ( ;"_s, u"..K.."_s},
                     {u": SQUARE ( n -- n ) DUP * ;"_s, u"..KKKKKK.CCCCCCCCCC........"_s},
                     {u"IF .\" a b\" THEN \\ x"_s, u"PP...LLLLL.PPPP.CCC"_s},
                     {u"if [CHAR] ( x"_s, u"............."_s},
                     {u"{ a"_s, u"CCC"_s, 1},
                     {u"b } IF"_s, u"CCC.PP"_s, 0},
                 });
    expectStyles(parserFor("kvp"),
                 {
                     {u"a &lt; <b c=\"d"_s, u"..XXXX.KXXXXLL"_s, 4},
                     {u"e\"/> f"_s, u"LLKK.."_s, 0},
                     {u"<!-- x"_s, u"KKKKCC"_s, 1},
                     {u"y --></z>"_s, u"CCKKKKKXK"_s, 0},
                     {u"<?xml a?>"_s, u"KKKKKKKKK"_s, 0},
                     {u"&lt"_s, u"XXX"_s, 0},
                 });
}

TEST(DisassemblyParser, ReadsTheLayoutOfItsLines)
{
    DisassemblyCodeEditParser parser;
    expectStyles(parser,
                 {
                     {u"    C000    MOV <main+2>, R5"_s, u"DDDDDDDD.........KKKKLL....."_s},
                     {u"<main>"_s, u"KKKKKK"_s},
                     {u"    12: int x;"_s, u"CCCCCCCCCCCCCC"_s},
                     {u"int x;"_s, u"CCCCCC"_s},
                 });
    const Styled rule = parse(parser, u"--- a-b ---"_s);
    EXPECT_EQ(rule.characters, u"\u2014\u2014\u2014 a\u2014b \u2014\u2014\u2014"_s);
    EXPECT_EQ(rule.styles, QString(11, u'X'));
}

TEST(Parsers, NeverMistakeTextForMarks)
{
    for (const QString& description : languages().registeredParserDescriptions()) {
        CodeEditParser* parser = languages().parserForDescription(description);
        EXPECT_EQ(parse(*parser, u"a\uFDD0\u0001b"_s).characters, u"a\uFFFD\u0001b"_s);
    }
}

/// Knows the words "right" and "it's" only.
class TwoWords : public SpellChecker {
public:
    bool spell(QStringView word) override { return word == u"right" || word == u"it's"; }
};

TEST(Spelling, FramesWordsOfComments)
{
    TwoWords words;
    SpellChecker::setCurrent(&words);
    expectStyles(parserFor("c"),
                 {
                     {u"wrong // right wrnog"_s, u"......CCCCCCCCC~~~~~"_s},
                     {u"/* it's NASA 'right' x1 */"_s, u"CCCCCCCCCCCCCCCCCCCCC~CCCC"_s},
                     {u"\"wrnog\""_s, u"LLLLLLL"_s},
                     {u"/*! \\ignore zork"_s, u"CCCCkkkkkkkCaaaa"_s, 3},
                     {u"zork bork */"_s, u"CCCCC~~~~CCC"_s, 0},
                 });
    {
        const SpellChecker::Pause pause;
        EXPECT_EQ(parse(parserFor("c"), u"// wrnog"_s).styles, u"CCCCCCCC"_s);
    }
    EXPECT_EQ(parse(parserFor("c"), u"// wrnog"_s).styles, u"CCC~~~~~"_s);
    SpellChecker::setCurrent(nullptr);
}

TEST(Spelling, AsksADictionary)
{
    const auto checker = HunspellSpellChecker::loadDefault();
    ASSERT_TRUE(checker);
    EXPECT_TRUE(checker->spell(u"interrupt"));
    EXPECT_FALSE(checker->spell(u"interupt"));
    EXPECT_TRUE(checker->suggestions(u"interupt").contains(u"interrupt"_s));
    EXPECT_FALSE(HunspellSpellChecker::load(u"/no/such.aff"_s, u"/no/such.dic"_s));
}

TEST(Languages, AreFoundByExtensionAndDescription)
{
    const LanguageRegistry& registry = languages();
    EXPECT_EQ(registry.registeredParserDescriptions(),
              (QStringList{u"&Java"_s, u"JavaScri&pt"_s, u"&XML and HTML"_s, u"&VHDL"_s,
                           u"&C/C++"_s, u"&Forth"_s, u"&Assembly Language"_s, u"&Batch File"_s,
                           u"&DocGen File"_s, u"&SVF"_s, u"STAP&L"_s}));
    EXPECT_EQ(registry.parserForExtension(u"HPP"_s), registry.parserForDescription(u"&C/C++"_s));
    EXPECT_EQ(registry.parserForExtension(Get_ASM_FILE_EXTENSION()),
              registry.parserForExtension(u"inc"_s));
    EXPECT_EQ(registry.parserForExtension(u"txt"_s), nullptr);
    EXPECT_EQ(registry.parserDescription(registry.parserForExtension(u"jam"_s)), u"STAP&L"_s);
    EXPECT_EQ(registry.syntaxCheckerForExtension(u"c"_s), nullptr);
    EXPECT_NE(registry.syntaxCheckerForExtension(u"XML"_s), nullptr);
    EXPECT_EQ(registry.parserForExtension(u"c"_s)->delimiters(), u"\\{\\}\\[\\]\\(\\)"_s);
    EXPECT_EQ(registry.parserForExtension(u"fs"_s)->delimiters(), u"\\:\\;"_s);
    EXPECT_EQ(registry.parserForExtension(u"xml"_s)->delimiters(), u"\\<\\>"_s);
}

TEST(Languages, TakeUserKeywords)
{
    CodeEditParser& parser = parserFor("c");
    parser.setUserKeywords({u"uint8_t"_s});
    EXPECT_EQ(parse(parser, u"uint8_t x"_s).styles, u"KKKKKKK.."_s);
    parser.setUserKeywords({});
    EXPECT_EQ(parse(parser, u"uint8_t x"_s).styles, u"........."_s);
}

TEST(XMLChecker, LocatesErrors)
{
    CodeSyntaxXMLChecker checker;
    QString message;
    int line = -1;
    int column = -1;
    EXPECT_TRUE(checker.check(u"<a>\n</a>"_s, &message, &line, &column, 0));
    EXPECT_EQ(message, u"Valid Syntax"_s);
    EXPECT_EQ(line, -1);
    EXPECT_FALSE(checker.check(u"<a>\n<b></a>"_s, &message, &line, &column, 0));
    EXPECT_EQ(line, 2);
    EXPECT_FALSE(message.isEmpty());
    EXPECT_FALSE(checker.check(u"<a"_s, nullptr, nullptr, nullptr, 0));
    EXPECT_TRUE(checker.check(u"<x:a/>"_s, nullptr, nullptr, nullptr, 0));
    EXPECT_FALSE(checker.check(u"<x:a/>"_s, nullptr, nullptr, nullptr, 1));
}

} // namespace
