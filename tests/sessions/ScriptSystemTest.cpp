// Scripts of the environment: one at a time, what they leave behind, and what they say when they
// fail.

#include "base/HException.h"
#include "script/es/ESContext.h"
#include "script/host/BuiltinScript.h"
#include "script/objects/BenchScriptSystem.h"
#include "script/objects/ThreadsScriptObject.h"

#include <gtest/gtest.h>

using namespace Qt::Literals::StringLiterals;

namespace {

class ScriptSystemTest : public testing::Test, public BenchScriptSystemHost {
protected:
    void showMessage(const QString& title, const QString& text) override
    {
        messages << title + u": "_s + text;
    }
    void installScriptObjects(ESContext* context) override
    {
        m_echo.install(context);
        m_bench.install(context);
        m_threads.install(context);
    }
    void processEvents() override
    {
        ++events;
        if (atEvent)
            std::exchange(atEvent, nullptr)();
    }
    void scriptRunning(bool running) override { states += running ? '+' : '-'; }

    QStringList messages;
    QStringList lines;
    std::string states;
    int events = 0;
    std::function<void()> atEvent;
    BenchScriptSystem system{*this};
    ThreadList threads;

private:
    BuiltinScript m_echo{[this](const QString& text) { lines << text; }};
    BenchScript m_bench;
    ThreadsScriptObject m_threads{threads};
};

TEST_F(ScriptSystemTest, ShowsFailuresUnderTheirTitles)
{
    const std::pair<const char*, const char*> cases[] = {
        {"throw new Error('bad')", "Script Runtime Error: bad"},
        {"throw 5", "Script Runtime Error: Uncaught exception: 5"},
        {"Bench.SetError('stopped')", "Script Runtime Error: stopped"},
        {"function f() { return f() + 1; } f()",
         "Script Fatal Error: virtual machine stack too small"},
    };
    for (const auto& [text, message] : cases) {
        messages.clear();
        EXPECT_FALSE(system.execute(QString::fromLatin1(text))) << text;
        EXPECT_EQ(messages.join(u'\n').toStdString(), message);
        EXPECT_FALSE(system.executing());
    }
    EXPECT_EQ(states, "+-+-+-+-");
    EXPECT_TRUE(system.execute(u"WScript.Echo(); var x = 1"_s));
    EXPECT_TRUE(system.execute(u"WScript.Echo(typeof x)"_s)) << "variables die with the run";
    EXPECT_EQ(lines, (QStringList{u"undefined"_s, u"undefined"_s}));
}

TEST_F(ScriptSystemTest, RunsOneAtATimeAndStopsWhenAsked)
{
    atEvent = [this] {
        EXPECT_TRUE(system.executing());
        EXPECT_FALSE(system.execute(u"WScript.Echo('second')"_s));
        EXPECT_EQ(messages, QStringList{u"Error: Script already running."_s});
        EXPECT_TRUE(system.executing());
        system.requestStop();
    };
    EXPECT_TRUE(system.execute(u"for (;;) ;"_s)) << "stopping is no failure";
    EXPECT_TRUE(system.stopRequested());
    EXPECT_TRUE(lines.isEmpty());
    events = 0;
    EXPECT_TRUE(system.execute(u"1"_s, false));
    EXPECT_EQ(events, 0);
    EXPECT_FALSE(system.stopRequested());
}

TEST_F(ScriptSystemTest, GivesLists)
{
    EXPECT_EQ(system.executeWithResult(u"['Blink', 'blink()', 3]"_s),
              (QStringList{u"Blink"_s, u"blink()"_s, u"3"_s}));
    EXPECT_EQ(system.executeWithResult(u"var o = new Object(); o.one = 1; o.two = 2; o"_s),
              (QStringList{u"one"_s, u"two"_s}));
    EXPECT_TRUE(system.executeWithResult(u"5"_s).isEmpty());
    EXPECT_TRUE(system.executeWithResult(u"throw 5"_s).isEmpty());
}

TEST_F(ScriptSystemTest, ThreadsAreFilledByTheirScript)
{
    threads.newqueue(u"old"_s);
    EXPECT_TRUE(threads.evaluateScript(system,
                                       u"Threads.add('idle'); Threads.newqueue('ready');"
                                       "Threads.add('main', 3, 0x1100, true, 'more');"_s));
    ASSERT_EQ(threads.queues().size(), 2u);
    EXPECT_EQ(threads.queues()[0].rows[0], (ThreadList::Row{u"idle"_s}));
    EXPECT_EQ(threads.queues()[1].name, u"ready");
    EXPECT_EQ(threads.queues()[1].rows[0],
              (ThreadList::Row{u"main"_s, u"3"_s, u"4352"_s, u"true"_s}));
    EXPECT_FALSE(threads.evaluateScript(system, u"Threads.clear(); none()"_s));
    EXPECT_TRUE(threads.queues().empty());
}

} // namespace
