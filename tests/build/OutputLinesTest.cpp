#include "build/process/OutputLines.h"

#include <gtest/gtest.h>

#include <QStringList>

#include <vector>

namespace {

/// The lines, those of next() ended by "\n", the rest by "$".
std::string linesOf(const std::vector<QByteArray>& pieces)
{
    OutputLines lines;
    QString text;
    for (const QByteArray& piece : pieces) {
        lines.append(piece);
        while (const auto line = lines.next())
            text += *line + u'\n';
    }
    if (const auto line = lines.rest())
        text += *line + u'$';
    return text.toStdString();
}

} // namespace

TEST(OutputLines, cutAndDecoded)
{
    const struct {
        std::vector<QByteArray> pieces;
        std::string expected;
    } cases[] = {
        {{}, ""},
        {{"a\nb\n"}, "a\nb\n"},
        {{"a\n\n\nb"}, "a\n\n\nb$"},
        {{"a\r\nb\r\n\r\nc\r"}, "a\nb\n\nc$"},
        {{"a\r", "\nb"}, "a\nb$"},
        {{"a\rb\n"}, "a\rb\n"},
        {{"ab", "c\nd", "e", "\n"}, "abc\nde\n"},
        {{"\xE2\x82", "\xAC\n"}, "\xE2\x82\xAC\n"},
        {{"x\xFFy\n"}, "x\xEF\xBF\xBDy\n"},
        {{QByteArray("a\0b\n", 4)}, std::string("a\0b\n", 4)},
    };
    for (const auto& it : cases)
        EXPECT_EQ(linesOf(it.pieces), it.expected);
}

TEST(OutputLines, endlessLinesAreCutBetweenCharacters)
{
    // Each character has three bytes, so that one stands across the limit.
    const QByteArray character = "\xE2\x82\xAC";
    const qsizetype count = OutputLines::MaximumLine;
    OutputLines lines;
    QStringList taken;
    for (int i = 0; i < 3; ++i) {
        lines.append(character.repeated(count / 3));
        while (const auto line = lines.next())
            taken << *line;
    }
    lines.append("\nx\n");
    while (const auto line = lines.next())
        taken << *line;
    EXPECT_EQ(taken.last(), QChar(u'x'));
    taken.removeLast();
    EXPECT_GE(taken.size(), 2);
    const QString whole = taken.join(QString());
    EXPECT_EQ(whole, QString(count / 3 * 3, QChar(0x20AC)));
    for (const QString& line : taken)
        EXPECT_LE(line.size() * 3, OutputLines::MaximumLine);
}
