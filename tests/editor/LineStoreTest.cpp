#include "EditorTest.h"

#include <QRandomGenerator>

#include <vector>

// The chunked store against a plain list, through random changes of all sizes.
TEST(LineStore, BehavesAsAPlainList)
{
    QRandomGenerator random(7);
    LineStore store;
    std::vector<unsigned> plain;
    unsigned next = 0;
    const auto lines = [&](int count) {
        std::vector<QCodeLine> result(static_cast<std::size_t>(count));
        for (QCodeLine& line : result)
            line.flags = ++next;
        return result;
    };
    for (int round = 0; round < 600; ++round) {
        const auto size = static_cast<int>(plain.size());
        const int at = random.bounded(size + 1);
        const int sizes[] = {1, 2, 100, 700, 3000};
        const int count = random.bounded(1, sizes[random.bounded(5)] + 1);
        if (random.bounded(2) == 0) {
            const unsigned first = next + 1;
            store.insert(at, lines(count));
            std::vector<unsigned> added;
            for (int i = 0; i < count; ++i)
                added.push_back(first + static_cast<unsigned>(i));
            plain.insert(plain.begin() + at, added.begin(), added.end());
        } else {
            const int erased = std::min(count, size - at);
            store.erase(at, count);
            plain.erase(plain.begin() + at, plain.begin() + at + erased);
        }
        ASSERT_EQ(store.count(), static_cast<int>(plain.size())) << round;
        for (int i = 0; i < store.count(); i += 1 + random.bounded(20))
            ASSERT_EQ(store[i].flags, plain[static_cast<std::size_t>(i)]) << round << ' ' << i;
    }
}

TEST(LineStore, FindsTheUnknownLinesOnly)
{
    QRandomGenerator random(8);
    LineStore store;
    store.insert(0, std::vector<QCodeLine>(5000));
    for (int i = 0; i < store.count(); ++i)
        store[i].state = 0;
    EXPECT_EQ(store.nextUnknown(0), 5000);
    std::vector<int> unknown;
    for (int line = 3; line < 5000; line += 1 + random.bounded(900)) {
        store.invalidate(line);
        unknown.push_back(line);
    }
    int from = 0;
    for (const int line : unknown) {
        EXPECT_EQ(store.nextUnknown(from), line);
        from = line + 1;
    }
    EXPECT_EQ(store.nextUnknown(from), 5000);
    EXPECT_EQ(store.nextUnknown(0), unknown.front());
}

TEST(LineText, KeepsWhatIsNotReplaced)
{
    struct Case {
        QStringView text;
        int position;
        int length;
        QStringView replacement;
        QStringView result;
    };
    const Case cases[] = {
        {u"hello", 0, 0, u"", u"hello"},     {u"hello", 5, 0, u"!", u"hello!"},
        {u"hello", 1, 3, u"ipp", u"hippo"},  {u"hello", 0, 5, u"", u""},
        {u"hello", 2, 99, u"avy", u"heavy"}, {u"hello", 99, 1, u"!", u"hello!"},
        {u"hello", -3, 1, u"j", u"jello"},   {u"", 0, 0, u"a long new text", u"a long new text"},
    };
    for (const Case& c : cases) {
        // Both kinds of lines: those that refer to a loaded text, and those with their own.
        LineText own(c.text);
        own.replace(c.position, c.length, c.replacement);
        EXPECT_EQ(own.view(), c.result);
        LineText referring = LineText::referringTo(c.text);
        referring.replace(c.position, c.length, c.replacement);
        EXPECT_EQ(referring.view(), c.result);
    }
    LineText doubled(u"abc");
    doubled.replace(1, 0, doubled.view());
    EXPECT_EQ(doubled.view(), u"aabcbc");
}
