#include "BuildTestSupport.h"

#include "build/log/BuildLogModel.h"
#include "build/process/JobQueue.h"
#include "build/process/QtToolProcess.h"

#include <gtest/gtest.h>

#include <QElapsedTimer>
#include <QFileInfo>

using namespace Qt::Literals::StringLiterals;

namespace {

class JobQueueTest : public testing::Test {
protected:
    JobQueueTest() : log(BuildLogModel::Kind::Other) { application(); }

    void make(bool stopAtFailure)
    {
        queue = std::make_unique<JobQueue>(nullptr, &log, stopAtFailure, QtToolProcess::factory());
        QObject::connect(queue.get(), &JobQueue::jobDone, queue.get(),
                         [this](int status) { events << QString::number(status); });
        QObject::connect(queue.get(), &JobQueue::allJobsDone, queue.get(),
                         [this] { events << u"all"_s; });
    }
    QJob job(const QStringList& command) const { return {u"title"_s, folder.path(), command}; }
    QJob script(const QString& text) const { return job({u"/bin/sh"_s, u"-c"_s, text}); }
    /// Runs what was submitted; the signals that came.
    QString run()
    {
        queue->start();
        waitFor([this] { return events.contains(u"all"_s); });
        const QString text = events.join(u' ');
        events.clear();
        return text;
    }
    static void waitFor(const std::function<bool()>& condition)
    {
        QElapsedTimer timer;
        timer.start();
        while (!condition() && timer.elapsed() < 10'000)
            QCoreApplication::processEvents(QEventLoop::AllEvents, 100);
    }
    QString path(const QString& name) const { return folder.filePath(name); }

    QTemporaryDir folder;
    BuildLogModel log;
    QStringList events;
    std::unique_ptr<JobQueue> queue;
};

} // namespace

TEST_F(JobQueueTest, jobsRunInTurn)
{
    make(false);
    log.beginGroup(u"Running tool"_s);
    queue->submit({script(u"echo one; exit 2"_s), job({u"no-such-program"_s}),
                   script(u"printf two; printf three >&2"_s)});
    queue->submit(script(u"echo four"_s));
    EXPECT_TRUE(queue->isBusy());
    EXPECT_FALSE(queue->isRunning());
    EXPECT_EQ(run(), u"2 1 0 0 all"_s);
    EXPECT_FALSE(queue->isBusy());
    EXPECT_EQ(log.output(),
              QStringList({u"Running tool"_s, u"one"_s, u"Can't start process no-such-program"_s,
                           u"three"_s, u"two"_s, u"four"_s}));
    EXPECT_EQ(log.currentGroup(), nullptr);
    EXPECT_EQ(run(), u"all"_s);
}

TEST_F(JobQueueTest, firstFailureStopsTheQueue)
{
    make(true);
    queue->submit({script(u"true"_s), script(u"exit 1"_s), script(u"echo never"_s)});
    EXPECT_EQ(run(), u"0 1 all"_s);
    queue->submit({job({u"no-such-program"_s}), script(u"echo never"_s)});
    EXPECT_EQ(run(), u"1 all"_s);
    EXPECT_FALSE(log.output().contains(u"never"_s));
}

TEST_F(JobQueueTest, copyingNeedsNoProcess)
{
    make(false);
    writeFile(path(u"a"_s), "new");
    writeFile(path(u"b"_s), "old and longer");
    queue->submit({job({u"cp"_s, u"a"_s, u"b"_s}), job({u"cp"_s, path(u"a"_s), path(u"c"_s)}),
                   job({u"cp"_s, u"a"_s, u"./a"_s}), job({u"cp"_s, u"missing"_s, u"b"_s}),
                   job({u"cp"_s, u"a"_s, u"."_s}), job({u"cp"_s})});
    EXPECT_EQ(run(), u"0 0 1 1 1 1 all"_s);
    EXPECT_EQ(readFile(path(u"a"_s)), "new");
    EXPECT_EQ(readFile(path(u"b"_s)), "new");
    EXPECT_EQ(readFile(path(u"c"_s)), "new");
    EXPECT_EQ(log.output(), QStringList(4, u"Copy failed"_s));
}

TEST_F(JobQueueTest, commandLinesAndEnvironment)
{
    make(false);
    queue->setShowCommandLines(true);
    queue->submit(
        QJob(u"t"_s, folder.path() + u"/."_s, {u"/bin/sh"_s, u"-c"_s, u"echo $A"_s}, {u"A=b c"_s}));
    run();
    EXPECT_EQ(log.output(),
              QStringList({u"cd "_s + QFileInfo(folder.path()).canonicalFilePath(),
                           u"/bin/sh -c echo $A"_s, u"b c"_s}));
    EXPECT_EQ(script(u"a"_s).commandLine(), u"/bin/sh -c a"_s);
    EXPECT_EQ(script(u"a b"_s).commandLine(), u"/bin/sh -c \"a b\""_s);
}

TEST_F(JobQueueTest, killEndsAllAndTheQueueCanGoOn)
{
    make(false);
    queue->submit({script(u"echo ready; sleep 60 & wait"_s), script(u"echo never"_s)});
    queue->start();
    waitFor([this] { return !log.output().isEmpty(); });
    queue->submit(script(u"echo never"_s));
    queue->kill();
    waitFor([this] { return events.contains(u"all"_s); });
    EXPECT_EQ(events.join(u' '), u"137 all"_s);
    events.clear();
    queue->submit(script(u"echo again"_s));
    EXPECT_EQ(run(), u"0 all"_s);
    EXPECT_EQ(log.output(), QStringList({u"ready"_s, u"again"_s}));
}

TEST_F(JobQueueTest, receiversMaySubmitStartAndDelete)
{
    make(false);
    bool more = true;
    QObject::connect(queue.get(), &JobQueue::jobDone, queue.get(), [&] {
        if (std::exchange(more, false)) {
            queue->submit(job({u"cp"_s}));
            queue->start();
        }
    });
    queue->submit(script(u"true"_s));
    EXPECT_EQ(run(), u"0 1 all"_s);

    for (const QJob& last : {script(u"true"_s), job({u"cp"_s})}) {
        make(false);
        QObject::connect(queue.get(), &JobQueue::jobDone, qApp, [&] { queue.reset(); });
        queue->submit({last, script(u"echo never"_s)});
        queue->start();
        waitFor([this] { return queue == nullptr; });
        EXPECT_EQ(queue, nullptr);
    }
    make(false);
    queue->submit(script(u"sleep 60"_s));
    queue->start();
    queue.reset();
    EXPECT_TRUE(log.output().contains(u"Copy failed"_s));
    EXPECT_FALSE(log.output().contains(u"never"_s));
}
