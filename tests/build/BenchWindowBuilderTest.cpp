#include "BuildTestSupport.h"

#include "build/log/BuildLogModel.h"
#include "build/log/TOBFDiagnosticParser.h"
#include "build/process/BenchWindowBuilder.h"
#include "build/process/BuildCommands.h"
#include "build/process/BuildObserver.h"
#include "build/process/QtToolProcess.h"

#include <gtest/gtest.h>

#include <QFileInfo>
#include <QTimer>

#include <signal.h>
#include <sys/resource.h>
#include <unistd.h>

using namespace Qt::Literals::StringLiterals;
using Script = FakeToolProcess::Script;

namespace {

/// Addresses stand for elements, which the builder never looks into.
ProjectElement* elementAt(char& place) { return reinterpret_cast<ProjectElement*>(&place); }

class Commands : public BuildCommands {
public:
    bool builtinCommand(const QString& directory, QStringList& command, QString& errorText) override
    {
        if (command.value(0) == u"kmh")
            command[0] = u"/root/bin/kmh"_s;
        if (command.value(0) != u"rm")
            return false;
        if (command.value(1) == u"missing")
            errorText = u"rm failed in "_s + directory;
        return true;
    }
    bool isProject(const ProjectElement* element) const override { return element == project; }
    void setFailed() override { failed = true; }
    bool cancelled() const override { return isCancelled; }
    void setCancelled() override { isCancelled = true; }

    const ProjectElement* project = nullptr;
    bool failed = false;
    bool isCancelled = false;
};

class BuilderTest : public testing::Test {
protected:
    BuilderTest() : log(BuildLogModel::Kind::Main)
    {
        application();
        log.setParser(std::make_unique<TOBFDiagnosticParser>());
    }

    BenchWindowBuilder& make(const Script& script)
    {
        return make([this, script] { return std::make_unique<FakeToolProcess>(script, &told); });
    }
    BenchWindowBuilder& make(const ToolProcessFactory& factory)
    {
        builder = std::make_unique<BenchWindowBuilder>(&log, &commands, nullptr, options, factory);
        return *builder;
    }
    /// Runs a shell script as the command; the script's output as the log has it.
    QString shell(const QString& script, const QStringList& environment = {})
    {
        log.clear();
        BenchWindowBuilder& real = make(QtToolProcess::factory());
        prepare(real, {u"/bin/sh"_s, u"-c"_s, script});
        real.setEnvironment(environment);
        real.doit();
        return log.output().join(u'\n');
    }
    /// Output and temporary files exist when the command begins.
    void prepare(Builder& it, const QStringList& command)
    {
        commands.failed = false;
        writeFile(path(u"out"_s), "half");
        writeFile(path(u"temp"_s), "half");
        it.init();
        it.setDirectory(folder.path());
        it.setCommand(command);
        it.setOutputFiles({path(u"out"_s), path(u"never made"_s)});
        it.setTemporaryFiles({path(u"temp"_s)});
    }
    QString path(const QString& name) const { return folder.filePath(name); }
    /// Which of the two files are left.
    QString left() const
    {
        return QString(QFile::exists(path(u"out"_s)) ? u"out "_s : QString())
            + (QFile::exists(path(u"temp"_s)) ? u"temp"_s : QString());
    }
    /// Cancels as soon as the log has this line.
    void cancelAt(const QString& line)
    {
        QObject::connect(&log, &BuildLogModel::outputAdded, &log,
                         [this, line](const QString& text) {
                             if (text == line)
                                 QTimer::singleShot(0, &log, [this] { builder->cancelBuild(); });
                         });
    }

    QTemporaryDir folder;
    BuildLogModel log;
    Commands commands;
    BenchWindowBuilder::Options options;
    QStringList told;
    std::unique_ptr<BenchWindowBuilder> builder;
};

/// The number that a script has written; 0 if it is none.
pid_t processIn(const QString& path) { return static_cast<pid_t>(readFile(path).toInt()); }

bool exists(pid_t process) { return ::kill(process, 0) == 0; }

// In KB. The address sanitizer keeps 256 MB of freed memory.
#ifdef __SANITIZE_ADDRESS__
constexpr long AllowedGrowth = 600'000;
#else
constexpr long AllowedGrowth = 100'000;
#endif

/// Waits for what another process does.
bool eventually(const std::function<bool()>& condition)
{
    for (int i = 0; i < 500 && !condition(); ++i)
        usleep(10'000);
    return condition();
}

} // namespace

TEST_F(BuilderTest, standardErrorComesFirstOnEachPass)
{
    BenchWindowBuilder& it = make(Script{
        {{{u"o1"_s, u"o2"_s}, {u"e1"_s}}, {{u"o3"_s}, {}}, {{u"o4"_s}, {u"e2"_s, u"e3"_s}}}});
    prepare(it, {u"tool"_s, u"a b"_s});
    it.setEnvironment({u"A=1"_s});
    it.doit();
    EXPECT_EQ(log.output().join(u' '), u"e1 o1 o2 o3 e2 e3 o4"_s);
    EXPECT_EQ(told,
              QStringList({u"directory "_s + folder.path(), u"arguments tool|a b"_s,
                           u"environment A=1"_s, u"start"_s}));
    EXPECT_EQ(log.workingDirectory(), Path(folder.path()));
    EXPECT_FALSE(commands.failed);
    EXPECT_EQ(left(), u"out temp"_s);
}

TEST_F(BuilderTest, failureRemovesTheFiles)
{
    BenchWindowBuilder& it = make(Script{{{{}, {u"kcc: error: bad"_s}}}, 1});
    prepare(it, {u"tool"_s});
    it.doit();
    EXPECT_TRUE(commands.failed);
    EXPECT_FALSE(commands.isCancelled);
    EXPECT_EQ(left(), QString());
    EXPECT_EQ(log.records().count(), 1);
}

TEST_F(BuilderTest, commandsThatCannotStart)
{
    BenchWindowBuilder& it = make(Script{{}, 0, false});
    prepare(it, {u"tool"_s, u"x"_s});
    it.doit();
    EXPECT_EQ(log.output(), QStringList({u"Can't start process tool"_s}));
    EXPECT_EQ(log.errors(), 1);
    EXPECT_TRUE(commands.failed);
    EXPECT_EQ(left(), u"out temp"_s);
}

TEST_F(BuilderTest, builtinCommandsRunNoProcess)
{
    options.showCommandLines = true;
    BenchWindowBuilder& it = make(Script{});
    prepare(it, {u"rm"_s, u"a b"_s});
    it.doit();
    EXPECT_FALSE(commands.failed);
    prepare(it, {u"rm"_s, u"missing"_s});
    it.doit();
    EXPECT_TRUE(commands.failed);
    EXPECT_TRUE(told.isEmpty());
    prepare(it, {u"kmh"_s, u"x"_s});
    it.doit();
    EXPECT_EQ(told.value(1), u"arguments /root/bin/kmh|x"_s);
    EXPECT_EQ(log.output(),
              QStringList({u"rm \"a b\""_s, u"rm missing"_s, u"rm failed in "_s + folder.path(),
                           u"kmh x"_s}));
}

TEST_F(BuilderTest, cancellingEndsTheCommandAndTheBuild)
{
    const auto cancel = [this] { builder->cancelBuild(); };
    BenchWindowBuilder& it = make(Script{{{{u"one"_s}, {}}, {{u"two"_s}, {}, cancel}, {{}, {}}}});
    prepare(it, {u"tool"_s});
    it.doit();
    EXPECT_TRUE(commands.failed);
    EXPECT_TRUE(commands.isCancelled);
    EXPECT_EQ(left(), QString());
    EXPECT_EQ(told.last(), u"kill"_s);
    EXPECT_EQ(log.output(), QStringList({u"one"_s}));

    told.clear();
    prepare(it, {u"another"_s});
    it.doit();
    EXPECT_TRUE(told.isEmpty());
    EXPECT_EQ(left(), u"out temp"_s);
}

TEST_F(BuilderTest, groupsAndSteps)
{
    class Observer : public BuildObserver {
    public:
        void beginBuild(ProjectElement* element) override
        {
            seen << number(element) + u" begins"_s;
        }
        void endBuild(ProjectElement* element) override { seen << number(element) + u" ends"_s; }
        QString number(ProjectElement* element) const
        {
            return QString::number(element == nullptr ? 0 : element == project ? 1 : 2);
        }
        const ProjectElement* project = nullptr;
        QStringList seen;
    } observer;
    char places[2];
    ProjectElement* project = elementAt(places[0]);
    ProjectElement* file = elementAt(places[1]);
    commands.project = observer.project = project;
    BenchWindowBuilder it(&log, &commands, &observer, options, QtToolProcess::factory());

    it.beginGroup(nullptr, u"all"_s);
    it.beginGroup(project, u"project"_s);
    it.setTotalSteps(project, 2);
    const BuildLogItem* item = log.currentGroup();
    EXPECT_EQ(item->flags(), 4096u);
    it.beginGroup(file, u"file"_s);
    it.setTotalSteps(file, 9);
    it.message(u"m"_s);
    it.error(u"e"_s);
    it.note(u"n"_s);
    it.success(u"s"_s);
    it.nextStep();
    it.endGroup(file);
    it.nextStep();
    EXPECT_EQ(item->totalSteps(), 2);
    EXPECT_EQ(item->progress(), 2);
    it.endGroup(project);
    it.endGroup(nullptr);
    EXPECT_EQ(item->statusText(), u"Completed (with errors), 1 error, 1 note"_s);
    EXPECT_EQ(log.currentGroup(), nullptr);
    EXPECT_EQ(observer.seen.join(u", "_s),
              u"0 begins, 1 begins, 2 begins, 2 ends, 1 ends, 0 ends"_s);
}

// The same with real processes

TEST_F(BuilderTest, outputOfRealProcesses)
{
    const struct {
        const char* script;
        const char* output;
        bool failed;
    } cases[] = {
        {"echo one; echo two", "one\ntwo", false},
        {"printf 'one\\r\\ntwo'", "one\ntwo", false},
        {"printf two; printf three >&2", "three\ntwo", false},
        {"printf '\\342\\202\\254\\n'", "\xE2\x82\xAC", false},
        {"exit 0", "", false},
        {"echo bad >&2; exit 3", "bad", true},
        {"kill -SEGV $$", "/bin/sh was ended by signal 11", true},
        {"cat; echo end", "end", false},
        {"echo a; sleep 0.2; echo b", "a\nb", false},
        // What a process leaves behind doesn't hold up the build.
        {"sleep 5 & echo started", "started", false},
    };
    for (const auto& it : cases) {
        const auto begin = std::chrono::steady_clock::now();
        EXPECT_EQ(shell(QString::fromUtf8(it.script)).toStdString(), it.output) << it.script;
        EXPECT_EQ(commands.failed, it.failed) << it.script;
        EXPECT_EQ(left(), it.failed ? QString() : u"out temp"_s) << it.script;
        EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(4)) << it.script;
    }
}

TEST_F(BuilderTest, whereRealProcessesRun)
{
    EXPECT_EQ(shell(u"pwd -P"_s), QFileInfo(folder.path()).canonicalFilePath());
    EXPECT_EQ(shell(u"echo $A-$HOME"_s, {u"A=x y"_s}), u"x y-"_s);

    BenchWindowBuilder& it = make(QtToolProcess::factory());
    log.clear();
    for (const QString& program : {u"no-such-program"_s, u"./here"_s, u""_s}) {
        prepare(it, {program});
        it.doit();
    }
    writeFile(path(u"here"_s), "#!/bin/sh\necho found\n");
    QFile::setPermissions(path(u"here"_s), QFile::ReadOwner | QFile::ExeOwner);
    prepare(it, {u"./here"_s});
    it.doit();
    prepare(it, {u"/bin/true"_s});
    it.setDirectory(path(u"no such folder"_s));
    it.doit();
    EXPECT_EQ(
        log.output(),
        QStringList({u"Can't start process no-such-program"_s, u"Can't start process ./here"_s,
                     u"Can't start process "_s, u"found"_s, u"Can't start process /bin/true"_s}));
}

TEST_F(BuilderTest, cancellingReachesGrandchildren)
{
    cancelAt(u"ready"_s);
    shell(u"sh -c 'trap \"\" TERM; echo $$ > grandchild; sleep 60; sleep 60' & "
          "while [ ! -s grandchild ]; do sleep 0.01; done; echo ready; wait"_s);
    EXPECT_TRUE(commands.isCancelled);
    EXPECT_TRUE(commands.failed);
    EXPECT_EQ(left(), QString());
    const pid_t grandchild = processIn(path(u"grandchild"_s));
    ASSERT_GT(grandchild, 0);
    EXPECT_TRUE(eventually([&] { return !exists(grandchild); }));
    EXPECT_EQ(log.errors(), 0);
}

TEST_F(BuilderTest, chattyProcessesAreCancelledAndBounded)
{
    log.options().outputLimit = 1'000'000;
    // 100 MB in lines, then 100 MB without a line end.
    int events = 0;
    QTimer timer;
    QObject::connect(&timer, &QTimer::timeout, &timer, [&] { ++events; });
    timer.start(1);
    rusage before{};
    getrusage(RUSAGE_SELF, &before);
    shell(u"yes 0123456789012345678901234567890123456789012345678901234567890123456789 | "
          "head -c 100000000; head -c 100000000 /dev/zero | tr '\\0' x >&2"_s);
    rusage after{};
    getrusage(RUSAGE_SELF, &after);
    EXPECT_FALSE(commands.failed);
    EXPECT_GT(events, 20);
    EXPECT_LT(after.ru_maxrss - before.ru_maxrss, AllowedGrowth);

    cancelAt(u"y"_s);
    shell(u"yes"_s);
    EXPECT_TRUE(commands.isCancelled);
}

TEST_F(BuilderTest, waitingTakesNoTime)
{
    rusage before{};
    getrusage(RUSAGE_SELF, &before);
    shell(u"sleep 1"_s);
    rusage after{};
    getrusage(RUSAGE_SELF, &after);
    const auto microseconds = [](const rusage& usage) {
        return (usage.ru_utime.tv_sec + usage.ru_stime.tv_sec) * 1'000'000L + usage.ru_utime.tv_usec
            + usage.ru_stime.tv_usec;
    };
    EXPECT_LT(microseconds(after) - microseconds(before), 300'000);
}
