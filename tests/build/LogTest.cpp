#include "build/log/BuildLogModel.h"
#include "build/log/RegexpDiagnosticParser.h"
#include "build/log/TOBFDiagnosticParser.h"

#include <gtest/gtest.h>

using namespace Qt::Literals::StringLiterals;
using std::chrono::milliseconds;
using std::chrono::seconds;

namespace {

using Icon = BuildLogItem::Icon;

/// The tree as lines of "TEXT [STATUS]", two blanks a level.
std::string tree(const BuildLogItem* item, int depth = 0)
{
    std::string text;
    for (int i = 0; i < item->childCount(); ++i) {
        const BuildLogItem* child = item->child(i);
        text += std::string(static_cast<std::size_t>(depth) * 2, ' ') + child->text().toStdString()
            + " [" + child->statusText().toStdString() + "]\n" + tree(child, depth + 1);
    }
    return text;
}

class Log : public testing::Test {
protected:
    explicit Log(BuildLogModel::Kind kind = BuildLogModel::Kind::Main) : log(kind)
    {
        log.setParser(std::make_unique<TOBFDiagnosticParser>());
        log.setClock([this] { return now; });
        QObject::connect(&log, &BuildLogModel::buildErrorCounts, &log,
                         [this](int errors, int warnings, int notes) {
                             counts = u"%1 %2 %3"_s.arg(errors).arg(warnings).arg(notes);
                         });
        QObject::connect(&log, &BuildLogModel::note, &log,
                         [this](const QString& text) { events << u"note "_s + text; });
        QObject::connect(&log, &BuildLogModel::clearDiagnostic, &log,
                         [this] { events << u"clear"_s; });
        QObject::connect(&log, qOverload<const DiagnosticData&>(&BuildLogModel::locateResult), &log,
                         [this](const DiagnosticData& data) {
                             events << u"%1|%2|%3|%4"_s.arg(data.level)
                                           .arg(data.path.osPath())
                                           .arg(data.line)
                                           .arg(data.message);
                         });
    }

    void process(std::initializer_list<const char*> lines)
    {
        for (const char* line : lines)
            log.processOutput(QString::fromUtf8(line));
    }
    /// What the signals told since the last call.
    std::string happened()
    {
        const QString text = events.join(u'\n');
        events.clear();
        return text.toStdString();
    }
    std::string next()
    {
        log.locateNext();
        return happened();
    }
    std::string previous()
    {
        log.locatePrevious();
        return happened();
    }

    BuildLogModel log;
    milliseconds now{0};
    QString counts;
    QStringList events;
};

class OtherLog : public Log {
protected:
    OtherLog() : Log(BuildLogModel::Kind::Other) { }
};

} // namespace

TEST_F(Log, countersClimbTheTree)
{
    log.beginGroup(u"Build"_s);
    log.beginGroup(u"main"_s);
    log.addMessage(u"Compiling a.c"_s);
    process({"/p/a.c(1): error 7: one", "/p/a.c(2): fatal: two", "/p/a.c(3): warning: three",
             "  plain \t text  "});
    EXPECT_EQ(counts, u"2 1 0"_s);
    log.endGroup();
    log.beginGroup(u"lib"_s);
    process({"/p/b.c(1): warning: four", "/p/b.c(1): note: five", "/p/b.c(1): note: six"});
    log.endGroup(u"lib is done"_s);
    log.beginGroup(u"docs"_s);
    log.endGroup();
    log.endGroup();
    log.addError(u"Build failed"_s, BuildLogFlags::NotCounted);

    EXPECT_EQ(tree(log.root()),
              "Build [Completed (with errors), 2 errors, 2 warnings, 2 notes]\n"
              "  main [Completed (with errors), 2 errors, 1 warning]\n"
              "    Compiling a.c [Completed]\n"
              "    one [Completed (with errors), 1 error]\n"
              "    two [Completed (with errors), 1 error]\n"
              "    three [Completed (with warnings), 1 warning]\n"
              "    plain text [Completed]\n"
              "  lib [Completed (with warnings), 1 warning, 2 notes]\n"
              "    four [Completed (with warnings), 1 warning]\n"
              "    five [Completed, 1 note]\n"
              "    six [Completed, 1 note]\n"
              "  docs [Completed]\n"
              "Build failed []\n");
    const BuildLogItem* build = log.root()->child(0);
    EXPECT_EQ(build->icon(), Icon::Fatal);
    EXPECT_EQ(build->child(1)->icon(), Icon::Warning);
    EXPECT_EQ(build->child(2)->icon(), Icon::Success);
    EXPECT_EQ(build->child(0)->child(1)->icon(), Icon::Error);
    EXPECT_EQ(build->child(0)->child(4)->icon(), Icon::Blank);
    EXPECT_EQ(build->counters().fatalErrors, 1);
    EXPECT_EQ(log.errors(), 2);
    EXPECT_EQ(log.warnings(), 2);
    EXPECT_EQ(log.notes(), 2);
    EXPECT_EQ(counts, u"2 2 2"_s);
    EXPECT_EQ(log.output(),
              QStringList({u"Build"_s, u"main"_s, u"Compiling a.c"_s, u"/p/a.c(1): error 7: one"_s,
                           u"/p/a.c(2): fatal: two"_s, u"/p/a.c(3): warning: three"_s,
                           u"  plain \t text  "_s, u"lib"_s, u"/p/b.c(1): warning: four"_s,
                           u"/p/b.c(1): note: five"_s, u"/p/b.c(1): note: six"_s, u"lib is done"_s,
                           u"docs"_s, u"Build failed"_s}));
}

TEST_F(Log, additionsByFlags)
{
    log.beginGroup(u"g"_s);
    const BuildLogItem* success = log.addSuccess(u"'a.c' is up to date."_s);
    const BuildLogItem* message = log.addMessage(u"plain"_s);
    EXPECT_TRUE(success->isDone());
    EXPECT_EQ(success->statusText(), QString());
    EXPECT_FALSE(message->isDone());
    EXPECT_EQ(message->icon(), Icon::Success);
    EXPECT_EQ(log.addNote(u"n"_s)->icon(), Icon::Note);
    EXPECT_TRUE(message->isDone());
    log.addWarning(u"w"_s);
    log.addError(u"e"_s);
    log.addMessage(u"f"_s, DiagnosticData::Fatal);
    EXPECT_EQ(log.root()->child(0)->statusText(), u"2 errors, 1 warning, 1 note"_s);
    EXPECT_TRUE(log.records().isEmpty());
}

TEST_F(Log, unparsedOutputAndRelativePaths)
{
    log.setWorkingDirectory(Path(u"/home/me/project"_s));
    process({"../src/a.c(3): error: one"});
    log.options().showUnparsedErrorOutput = true;
    process({"  /abs/b.c(4): error: two "});
    EXPECT_EQ(log.root()->child(0)->text(), u"one"_s);
    EXPECT_EQ(log.root()->child(1)->text(), u"/abs/b.c(4): error: two"_s);
    EXPECT_EQ(log.root()->child(0)->data().path, Path(u"/home/me/src/a.c"_s));
    const BuildLogModel::SummaryRow row = log.summaryRow(0);
    EXPECT_EQ(row.severity, u"Error"_s);
    EXPECT_EQ(row.file, u"a.c"_s);
    EXPECT_EQ(row.message, u"one"_s);
    EXPECT_EQ(row.icon, Icon::Error);
}

TEST_F(Log, findResultsHaveASelection)
{
    log.beginGroup(u"Find 'x'"_s);
    DiagnosticData found;
    found.path = Path(u"/p/a.c"_s);
    found.line = 4;
    found.message = u"int x;"_s;
    found.level = DiagnosticData::Find;
    found.selectionStart = 4;
    found.selectionLength = 1;
    const BuildLogItem* item = log.addResult(found);
    log.addResult(found);
    EXPECT_EQ(item->text(), u"int x;"_s);
    EXPECT_EQ(item->data().selectionStart, 4);
    EXPECT_EQ(log.summaryRow(1).severity, u"Find"_s);
    log.endGroup();
    EXPECT_EQ(log.root()->child(0)->statusText(), u"Completed, 2 occurrences"_s);
    EXPECT_EQ(next(), "1|/p/a.c|4|int x;");
    log.locateResult(item);
    EXPECT_EQ(happened(), "1|/p/a.c|4|int x;");
}

TEST_F(Log, nextErrorBySeverity)
{
    EXPECT_EQ(next(), "");
    process({"/p/a(1): warning: w1", "/p/a(2): error: e1", "/p/a(3): note: n1", "kld: fatal: f1",
             "/p/a(4): error: e2", "/p/a(5): warning: w2"});
    for (const char* expected :
         {"5||-1|f1", "4|/p/a|2|e1", "4|/p/a|4|e2", "3|/p/a|1|w1", "3|/p/a|5|w2", "2|/p/a|3|n1"})
        EXPECT_EQ(next(), expected);
    EXPECT_EQ(next(), "note No more errors\nclear");
    EXPECT_EQ(log.context(), -1);
    EXPECT_EQ(log.selectedItem(), nullptr);
    for (const char* expected :
         {"5||-1|f1", "4|/p/a|4|e2", "4|/p/a|2|e1", "3|/p/a|5|w2", "3|/p/a|1|w1", "2|/p/a|3|n1"})
        EXPECT_EQ(previous(), expected);
    EXPECT_EQ(previous(), "note No previous errors\nclear");
}

TEST_F(OtherLog, nextTagByArrival)
{
    log.options().diagnosticCycleMode = BuildLogModel::CycleMode::ByArrival;
    process({"/p/a(1): warning: w1", "/p/a(2): error: e1", "/p/a(3): note: n1"});
    for (const char* expected : {"3|/p/a|1|w1", "4|/p/a|2|e1", "2|/p/a|3|n1"})
        EXPECT_EQ(next(), expected);
    EXPECT_EQ(previous(), "4|/p/a|2|e1");
    EXPECT_EQ(previous(), "3|/p/a|1|w1");
    EXPECT_EQ(previous(), "note No previous tags");
    log.setContext(2);
    happened();
    EXPECT_EQ(next(), "note No more tags");
    // From where the user has clicked: a line behind the second record.
    process({"plain"});
    log.setSelectedItem(log.root()->child(1));
    EXPECT_EQ(previous(), "3|/p/a|1|w1");
    log.setSelectedItem(log.root()->child(3));
    EXPECT_EQ(previous(), "2|/p/a|3|n1");
    EXPECT_EQ(counts, QString());
}

TEST_F(Log, resultsFollowEdits)
{
    process({"/p/a.c(10): error: x", "/p/a.c(20): error: y"});
    log.fileLinesChanged(Path(u"/p/a.c"_s), 5, 3);
    EXPECT_EQ(next(), "4|/p/a.c|13|x");
    log.fileLinesChanged(Path(u"/p/a.c"_s), 20, -10);
    EXPECT_EQ(next(), "4||-1|y");
    log.locateResult(log.root()->child(0));
    EXPECT_EQ(happened(), "4|/p/a.c|13|x");
    log.locateResult(log.root()->child(1));
    EXPECT_EQ(happened(), "4|/p/a.c|-1|y");
}

TEST_F(Log, cancelledGroupsLeaveNoTrace)
{
    log.beginGroup(u"Build"_s);
    process({"/p/a(1): error: kept"});
    log.beginGroup(u"cancelled"_s);
    log.beginGroup(u"inner"_s);
    process({"/p/a(2): error: gone", "/p/a(3): fatal: gone"});
    log.endGroup();
    log.setContext(2);
    log.cancelGroup();
    EXPECT_EQ(log.context(), -1);
    EXPECT_EQ(log.selectedItem(), nullptr);
    EXPECT_EQ(counts, u"1 0 0"_s);
    process({"more"});
    log.endGroup();
    log.endGroup();
    log.cancelGroup();
    EXPECT_EQ(tree(log.root()),
              "Build [Completed (with errors), 1 error]\n"
              "  kept [Completed (with errors), 1 error]\n"
              "  more [Completed]\n");
    EXPECT_EQ(log.records().count(), 1);
    EXPECT_EQ(log.root()->child(0)->counters().fatalErrors, 0);
}

TEST_F(Log, clearForgetsAll)
{
    log.beginGroup(u"Build"_s);
    process({"/p/a(1): error: x"});
    next();
    log.clear();
    EXPECT_EQ(counts, u"0 0 0"_s);
    EXPECT_EQ(tree(log.root()), "");
    EXPECT_TRUE(log.output().isEmpty());
    EXPECT_EQ(log.context(), -1);
    EXPECT_EQ(log.errors(), 0);
    DiagnosticData data;
    EXPECT_FALSE(log.getFirstDiagnostic(data));
    process({"/p/b(2): error: y"});
    EXPECT_EQ(next(), "4|/p/b|2|y");
}

TEST_F(Log, recordsInTurnAndTexts)
{
    log.beginGroup(u"Build"_s);
    process({"/p/a(1): error: x", "plain", "/p/a(2): note: y"});
    log.endGroup();
    log.addMessage(u"end"_s);
    DiagnosticData data;
    ASSERT_TRUE(log.getFirstDiagnostic(data));
    EXPECT_EQ(data.message, u"x"_s);
    ASSERT_TRUE(log.getNextDiagnostic(data));
    EXPECT_EQ(data.message, u"y"_s);
    EXPECT_FALSE(log.getNextDiagnostic(data));
    EXPECT_EQ(log.copyAll(), u"Build\nx\nplain\ny\nend"_s);
    EXPECT_EQ(log.copy(), QString());
    log.setContext(1);
    EXPECT_EQ(log.copy(), u"y"_s);
}

TEST_F(Log, timesAndRates)
{
    const BuildLogItem* plain = log.beginGroup(u"no time"_s);
    const BuildLogItem* timed = log.beginGroup(u"timed"_s, BuildLogFlags::RecordsStartTime);
    const struct {
        seconds elapsed;
        qint64 count;
        BuildLogItem::RateUnit unit;
        const char* text;
    } cases[] = {
        {seconds(0), 0, BuildLogItem::RateUnit::Files, "0:00s"},
        {seconds(5), 0, BuildLogItem::RateUnit::Files, "0:05s"},
        {seconds(65), 0, BuildLogItem::RateUnit::Files, "1:05s"},
        {seconds(6000), 0, BuildLogItem::RateUnit::Files, "100:00s"},
        {seconds(10), 30, BuildLogItem::RateUnit::Files, "0:10s 3 files/s"},
        {seconds(10), 40, BuildLogItem::RateUnit::Targets, "0:10s 4 targets/s"},
        {seconds(10), 20480, BuildLogItem::RateUnit::Bytes, "0:10s 2.0 KiB/s"},
    };
    for (const auto& it : cases) {
        now = it.elapsed;
        log.setTransferred(it.count, it.unit);
        EXPECT_EQ(timed->statusText().toStdString(), it.text);
    }
    log.setTransferred(0, BuildLogItem::RateUnit::Bytes);
    now = seconds(11);
    log.updateTimes();
    EXPECT_EQ(timed->timeText(), u"0:11s"_s);
    log.endGroup();
    EXPECT_EQ(timed->statusText(), u"Completed, 0:11s"_s);
    EXPECT_EQ(plain->timeText(), QString());
}

TEST_F(Log, stepsOfTheInnermostGroupThatHasSome)
{
    log.nextStep();
    log.setTotalSteps(7);
    BuildLogItem* project = log.beginGroup(u"project"_s);
    log.setTotalSteps(3);
    log.beginGroup(u"file"_s);
    log.nextStep();
    log.setProgress(2);
    EXPECT_EQ(project->totalSteps(), 3);
    EXPECT_EQ(project->progress(), 2);
    log.endGroup();
    log.resetTotalSteps();
    EXPECT_EQ(project->totalSteps(), 0);
    EXPECT_EQ(project->progress(), 0);
}

TEST_F(Log, drawnAtOnceOnlyAtTheTop)
{
    QStringList drawn;
    QObject::connect(&log, &BuildLogModel::updateNow, &log, [&](BuildLogItem* item) {
        drawn << item->text() + u' ' + item->statusText();
    });
    log.addMessage(u"silent"_s);
    log.setImmediateUpdate(true);
    log.beginGroup(u"g"_s);
    log.addMessage(u"below"_s);
    log.endGroup();
    EXPECT_EQ(drawn, QStringList({u"silent Completed"_s, u"g "_s, u"g Completed"_s}));
}

TEST_F(OtherLog, linesThatVanish)
{
    class Filter : public RegexpDiagnosticParser {
    public:
        bool filterOut(const Path&, const QString& line) override { return line.startsWith(u'#'); }
    };
    log.setParser(std::make_unique<Filter>());
    process({"# hidden", "shown"});
    EXPECT_EQ(log.output(), QStringList({u"shown"_s}));
    log.setParser(nullptr);
    process({"# a.c(1): error: x"});
    EXPECT_EQ(log.root()->childCount(), 2);
    EXPECT_TRUE(log.records().isEmpty());
}

TEST_F(Log, endlessOutputIsCountedNotKept)
{
    log.options().outputLimit = 100'000;
    log.beginGroup(u"Build"_s);
    for (int i = 0; i < 5000; ++i)
        process({"/p/a.c(1): error: x"});
    log.endGroup();
    const BuildLogItem* build = log.root()->child(0);
    EXPECT_EQ(build->statusText(), u"Completed (with errors), 5000 errors"_s);
    EXPECT_GT(build->childCount(), 500);
    EXPECT_LT(build->childCount(), 1001);
    EXPECT_EQ(build->child(build->childCount() - 1)->text(),
              u"Too much output: what follows is counted but not shown"_s);
    EXPECT_EQ(log.output().size(), build->childCount() + 1);
    EXPECT_EQ(log.records().count(), build->childCount() - 1);
}

TEST_F(Log, hundredThousandLines)
{
    log.beginGroup(u"Build"_s);
    log.beginGroup(u"project"_s);
    for (int i = 0; i < 100'000; ++i)
        log.processOutput(i % 10 == 0 ? u"/p/a.c(%1): warning: unused"_s.arg(i + 1)
                                      : u"some plain output"_s);
    log.endGroup();
    log.endGroup();
    EXPECT_EQ(log.warnings(), 10'000);
    EXPECT_EQ(log.records().count(), 10'000);
    EXPECT_EQ(log.output().size(), 100'002);
}
