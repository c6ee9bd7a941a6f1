#include "build/log/FileLineTracker.h"

#include <gtest/gtest.h>

#include <vector>

using namespace Qt::Literals::StringLiterals;

TEST(LineTracker, trackedLinesFollowEdits)
{
    const struct {
        const char* edit;
        std::vector<LineTrackerDelta> changes;
        int line;
        int expected;
    } cases[] = {
        {"none", {}, 10, 10},
        {"insertion above", {{3, 2}}, 10, 12},
        {"insertion at the line", {{10, 1}}, 10, 11},
        {"insertion below", {{11, 5}}, 10, 10},
        {"removal above", {{3, -2}}, 10, 8},
        {"removal that ends at the line", {{8, -2}}, 10, 8},
        {"removal of the line alone", {{10, -1}}, 10, -1},
        {"removal around", {{5, -10}}, 10, -1},
        {"removal of the line last", {{8, -3}}, 10, -1},
        {"removal below", {{11, -4}}, 10, 10},
        {"gone for good", {{10, -1}, {1, 5}}, 10, -1},
        {"to and fro", {{1, 5}, {12, 1}, {1, -5}}, 10, 11},
    };
    for (const auto& it : cases) {
        LineTracker following(Path(u"a.c"_s));
        LineTracker recording(Path(u"a.c"_s), true);
        following.track(it.line);
        for (const LineTrackerDelta& change : it.changes) {
            following.changed(change.line, change.count);
            recording.changed(change.line, change.count);
        }
        EXPECT_EQ(following.getLineNumber(it.line), it.expected) << it.edit;
        EXPECT_EQ(recording.getLineNumber(it.line), it.expected) << it.edit << ", from history";
        EXPECT_EQ(following.getLineNumber(it.line + 1), -1) << it.edit << ", never tracked";
    }
}

TEST(LineTracker, trackedLateStartsWhereItStands)
{
    LineTracker tracker(Path(u"a.c"_s), true);
    tracker.changed(1, 10);
    tracker.track(5);
    tracker.changed(1, 1);
    EXPECT_EQ(tracker.getLineNumber(5), 6);
    EXPECT_EQ(tracker.getLineNumber(6), 17);
}

TEST(FileLineTracker, filesAreApart)
{
    FileLineTracker tracker(u"tracker"_s);
    const Path a(u"/p/a.c"_s);
    const Path b(u"/p/b.c"_s);
    tracker.track(b, 3);
    tracker.track(a, 3);
    tracker.changed(a, 1, 4);
    tracker.changed(Path(u"/p/c.c"_s), 1, 4);
    EXPECT_EQ(tracker.getLineNumber(a, 3), 7);
    EXPECT_EQ(tracker.getLineNumber(b, 3), 3);
    EXPECT_EQ(tracker.getLineNumber(Path(u"/p/c.c"_s), 3), -1);
    tracker.clear();
    EXPECT_EQ(tracker.getLineNumber(a, 3), -1);
}
