#include "EditorTest.h"

#include <QRandomGenerator>

using namespace Qt::Literals::StringLiterals;

namespace {

QString textOf(const QString& text, QCodeBufferPosition at, const QString& inserted,
               QCodeBufferPosition* end)
{
    QCodeBuffer buffer;
    if (!text.isNull())
        buffer.adopt(text);
    *end = buffer.insertText(at, inserted);
    return textOf(buffer);
}

TEST(QCodeBuffer, InsertsPiecesBetweenLineBreaks)
{
    struct Case {
        QString text;
        QCodeBufferPosition at;
        QString inserted;
        QString result;
        QCodeBufferPosition end;
    };
    const QString lines = u"ab\ncd"_s;
    const Case cases[] = {
        {lines, {0, 1}, u"X"_s, u"aXb\ncd"_s, {0, 2}},
        {lines, {0, 2}, u"x\n"_s, u"abx\n\ncd"_s, {1, 0}},
        {lines, {0, 1}, u"\n"_s, u"a\nb\ncd"_s, {1, 0}},
        {lines, {1, 1}, u"1\n22\n\n333"_s, u"ab\nc1\n22\n\n333d"_s, {4, 3}},
        {lines, {0, 0}, u"\n"_s, u"\nab\ncd"_s, {1, 0}},
        {lines, {2, 0}, u"x"_s, u"ab\ncd\nx"_s, {2, 1}},
        {lines, {2, 0}, u"x\ny"_s, u"ab\ncd\nx\ny"_s, {3, 1}},
        {lines, {1, 0}, u"a\r\nb"_s, u"ab\na\r\nbcd"_s, {2, 1}},
        {{}, {0, 0}, u"x"_s, u"x"_s, {0, 1}},
        {{}, {0, 0}, u"x\n"_s, u"x\n"_s, {1, 0}},
        {lines, {9, 0}, u"x"_s, lines, {9, 0}},
        {lines, {-1, 0}, u"x"_s, lines, {-1, 0}},
    };
    for (const Case& c : cases) {
        QCodeBufferPosition end;
        EXPECT_EQ(textOf(c.text, c.at, c.inserted, &end), c.result);
        EXPECT_EQ(end, c.end);
    }
}

TEST(QCodeBuffer, DeletesRangesAndKeepsTheFirstLinesFlags)
{
    struct Case {
        QCodeBufferPosition begin;
        QCodeBufferPosition end;
        QString result;
    };
    const Case cases[] = {
        {{0, 1}, {0, 2}, u"oe\ntwo\nthree"_s}, {{0, 1}, {1, 1}, u"owo\nthree"_s},
        {{0, 3}, {1, 0}, u"onetwo\nthree"_s},  {{0, 0}, {2, 5}, u""_s},
        {{1, 0}, {2, 0}, u"one\nthree"_s},     {{1, 1}, {1, 1}, u"one\ntwo\nthree"_s},
        {{1, 1}, {9, 4}, u"one\nt"_s},         {{0, 1}, {0, 99}, u"o\ntwo\nthree"_s},
    };
    for (const Case& c : cases) {
        QCodeBuffer buffer;
        buffer.adopt(u"one\ntwo\nthree"_s);
        for (int line = 0; line < 3; ++line)
            buffer.setData(line, QCodeLine::Bookmarked);
        buffer.deleteText(c.begin, c.end);
        EXPECT_EQ(textOf(buffer), c.result);
        EXPECT_EQ(buffer.data(c.begin.line), QCodeLine::Bookmarked);
    }
}

TEST(QCodeBuffer, ToleratesLinesOutOfRange)
{
    QCodeBuffer buffer;
    buffer.adopt(u"one\ntwo"_s);
    for (const int line : {-1, 2, 100}) {
        EXPECT_TRUE(buffer.text(line).isNull());
        EXPECT_EQ(buffer.line(line), nullptr);
        EXPECT_EQ(buffer.data(line), 0u);
        buffer.setData(line, 1);
        EXPECT_EQ(buffer.getLine(line), nullptr);
        EXPECT_TRUE(buffer.syntaxLine(line).isEmpty());
    }
    // After a miss the walk stands on the first line.
    EXPECT_EQ(buffer.getNextLine()->text.view(), u"two");
    EXPECT_EQ(buffer.getNextLine(), nullptr);
    EXPECT_EQ(buffer.getPrevLine()->text.view(), u"one");
    EXPECT_EQ(buffer.getPrevLine(), nullptr);
    buffer.setText(2, u"three");
    buffer.setText(9, u"nine");
    EXPECT_EQ(textOf(buffer), u"one\ntwo\nthree"_s);
    testing::internal::CaptureStderr();
    EXPECT_TRUE(buffer.text({1, 2}, {1, 1}).isEmpty());
    EXPECT_NE(testing::internal::GetCapturedStderr().find("ASSERT: \"begin <= end\" in "),
              std::string::npos);
}

TEST(QCodeBuffer, StepsByCharactersAcrossLines)
{
    QCodeBuffer buffer;
    buffer.adopt(u"ab\n\nc"_s);
    const QCodeBufferPosition walk[] = {{0, 0}, {0, 1}, {0, 2}, {1, 0}, {2, 0}, {2, 1}, {3, 0}};
    for (std::size_t i = 0; i + 1 < std::size(walk); ++i) {
        EXPECT_EQ(buffer.after(walk[i], true), walk[i + 1]);
        EXPECT_EQ(buffer.before(walk[i + 1], true), walk[i]);
    }
    EXPECT_EQ(buffer.before({0, 0}, true), (QCodeBufferPosition{0, 0}));
    EXPECT_EQ(buffer.before({1, 0}, false), (QCodeBufferPosition{1, -1}));
    EXPECT_EQ(buffer.after({0, 2}, false), (QCodeBufferPosition{0, 3}));
}

TEST(QCodeBuffer, SplitsALoadedTextAtEachKindOfLineEnd)
{
    QCodeBuffer buffer;
    buffer.adopt(u"a\r\nb\rc\n\r\n\n\r"_s);
    EXPECT_EQ(textOf(buffer), u"a\nb\nc\n\n\n\n"_s);
    buffer.adopt(u""_s);
    EXPECT_EQ(buffer.count(), 1);
}

TEST(Highlighting, StopsWhereTheStateIsAsBefore)
{
    CommentParser parser;
    QCodeBuffer buffer;
    buffer.setParser(&parser);
    buffer.adopt(QString(u"x\n"_s).repeated(9999) + u"*/"_s);
    buffer.syncHighlighting();
    const auto parsedBy = [&](auto&& change) {
        parser.parsed = 0;
        change();
        buffer.syncHighlighting();
        return parser.parsed;
    };
    // A word typed costs the line and the one above it.
    EXPECT_LE(parsedBy([&] { buffer.insertText({5000, 1}, u"y"); }), 2);
    EXPECT_EQ(buffer.line(9999)->state, 0);
    EXPECT_GE(parsedBy([&] { buffer.insertText({0, 0}, u"/*"); }), 9999);
    EXPECT_EQ(buffer.line(9999)->state, 1);
    // Closed in the middle: the lines down to the end change again.
    const int closed = parsedBy([&] { buffer.insertText({4999, 0}, u"*/"); });
    EXPECT_GE(closed, 5000);
    EXPECT_LE(closed, 5003);
    EXPECT_EQ(buffer.line(4999)->state, 1);
    EXPECT_EQ(buffer.line(5000)->state, 0);
    EXPECT_LE(parsedBy([&] { buffer.deleteText({0, 0}, {0, 2}); }), 5002);
    EXPECT_EQ(buffer.line(4999)->state, 0);
}

// What is drawn must not depend on how far the states were brought up to date before.
TEST(Highlighting, IsTheSameInPartsAsAtOnce)
{
    QRandomGenerator random(3);
    CommentParser parser;
    QCodeBuffer buffer;
    buffer.setParser(&parser);
    buffer.adopt(QString(u"/* a\nb\nc */\nd\n"_s).repeated(200));
    for (int round = 0; round < 300; ++round) {
        const int line = random.bounded(buffer.count());
        switch (random.bounded(4)) {
        case 0: buffer.insertText({line, 0}, u"/*"); break;
        case 1: buffer.insertText({line, 0}, u"*/\n"); break;
        case 2: buffer.deleteText({line, 0}, {line + 1, 0}); break;
        default: buffer.setText(line, u"plain"); break;
        }
        buffer.syncHighlighting(random.bounded(buffer.count()));
        if (round % 10 != 0)
            continue;
        QCodeBuffer fresh;
        fresh.setParser(&parser);
        fresh.adopt(textOf(buffer));
        fresh.syncHighlighting();
        buffer.syncHighlighting();
        for (int i = 0; i < buffer.count(); ++i)
            ASSERT_EQ(buffer.line(i)->state, fresh.line(i)->state) << round << ' ' << i;
    }
}

TEST(Highlighting, LeavesNothingThatLooksLikeAMark)
{
    CommentParser parser;
    QCodeBuffer buffer;
    buffer.append(u"a\uFDD0b"_s);
    EXPECT_EQ(buffer.syntaxLine(0), u"a\uFFFDb"_s);
    buffer.setText(0, QString(QCodeBuffer::LongestParsedLine + 1, u'x'));
    buffer.setParser(&parser);
    EXPECT_EQ(buffer.syntaxLine(0).size(), QCodeBuffer::LongestParsedLine + 1);
    EXPECT_EQ(parser.parsed, 0);
}

} // namespace
