// The commands of debugging on a project that the real tools have built.

#include "debugger/session/DebugControl.h"
#include "TestFolder.h"
#include "base/HException.h"
#include "build/log/BuildLogModel.h"
#include "build/projectsystem/MSP430ProjectSystem.h"
#include "build/system/MSP430BuildSystem.h"
#include "build/workspace/BuildRun.h"
#include "build/workspace/Workspace.h"
#include "debugger/msp430/MSP430Debugger.h"
#include "debugger/session/DebugSession.h"
#include "projects/settings/GantryBenchEnvironmentSettings.h"
#include "target/control/TargetControl.h"
#include "target/msp430/MSP430Monitor.h"

#include <QDir>
#include <QScopedValueRollback>

#include <gtest/gtest.h>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr const char* Solution = R"(<!DOCTYPE GantryBench_Project_File>
<solution Name="tour" version="2">
  <configuration Name="Debug" build_debug_information="Yes"/>
  <project Name="tour">
    <configuration Name="Common" Target="MSP430F449" msp430_identify_string="MSP430F449"
      build_use_hardware_multiplier="No Multiplier" link_IOLibraryName="debug"
      linker_memory_map_file="$(PackagesDir)/targets/msp430/MSP430F449.xml"
      linker_section_placement_file="$(BenchDir)/targets/section_placement.xml"
      linker_printf_fmt_level="long" debug_command_arguments="tour one  two"
      msp430_insn_set="MSP430" optimize_register_allocation="None"/>
    <file file_name="tour.c"/>
    <file file_name="other.c"/>
  </project>
  <project Name="library">
    <configuration Name="Common" Target="MSP430F449" project_type="Library"/>
    <file file_name="other.c"/>
  </project>
</solution>
)";

/// The solution and what it builds, made once.
class BuiltSolution : public testing::Environment {
public:
    void SetUp() override
    {
        for (const char* name : {"tour.c", "other.c"})
            std::filesystem::copy_file(std::string(GANTRY_TEST_DATA "/programs/") + name,
                                       folder / name);
        folder.write("tour.kvp", Solution);
        const std::string command = GANTRY_ROOT_TREE "/bin/gantry build " + (folder / "tour.kvp")
            + " --project tour --configuration Debug > " + (folder / "log") + " 2>&1";
        ASSERT_EQ(std::system(command.c_str()), 0) << folder.read("log");
    }

    /// The line of a mark, 1-based.
    int line(const std::string& file, const std::string& mark) const
    {
        const std::string text = folder.read(file);
        const std::size_t at = text.find("/* mark: " + mark + " */");
        const std::string before = text.substr(0, at);
        return 1 + int(std::count(before.begin(), before.end(), '\n'));
    }

    TestFolder folder;
};

BuiltSolution* const built =
    static_cast<BuiltSolution*>(testing::AddGlobalTestEnvironment(new BuiltSolution));

/// Notes what the commands ask of the window.
class NotingHost : public DebugControlHost,
                   public TargetControlHost,
                   public DebuggerHelperFunctions,
                   public TargetIOServerTerminalInterface {
public:
    bool isOutOfDate(ProjectElement*, const QString&) override { return outOfDate; }
    bool ask(const QString& text, const QString& title) override
    {
        questions << title + u": "_s + text;
        return answer;
    }
    bool build(ProjectElement*, const QString&) override
    {
        notes << u"build"_s;
        return true;
    }
    void sessionBegins() override { notes << u"begins"_s; }
    void stateChanged(DebugState state) override { notes << QString::number(int(state)); }
    void startPolling() override { notes << u"poll"_s; }
    void stopPolling() override { notes << u"rest"_s; }
    void showOperationCancel(bool on) override { notes << (on ? u"cancel on"_s : u"cancel off"_s); }
    void programExited(int code) override { notes << u"exit %1"_s.arg(code); }
    void logError(const QString& text) override { errors << text; }
    void showTranscript() override { }
    void displayError(const QString& text) override { errors << text; }
    QString getDebugSourceText(const Path&, int) override { return {}; }
    bool carryOn() override { return true; }

    void addOutput(QString text) override { output += text; }
    QString getInputLine() override { return {}; }
    int inputLines() const override { return 0; }
    int getInputChar() override { return -1; }
    bool inputCharAvailable() const override { return false; }

    QString takeNotes() { return std::exchange(notes, {}).join(u' '); }

    bool outOfDate = false;
    bool answer = true;
    QStringList questions;
    QStringList notes;
    QStringList errors;
    QString output;
};

class DebugControlTest : public testing::Test {
protected:
    DebugControlTest()
    {
        m_workspace.projects().loadSolution(QString::fromStdString(built->folder / "tour.kvp"),
                                            nullptr, nullptr);
        TargetProject::setPropertyClassFinder(
            [](const QString& name) { return buildSystem->findPropertyClass(name); });
        m_project = m_workspace.projects().findProject(nullptr, u"tour"_s);
        m_targets.connectTargetInterface(&m_monitor, false, m_project, u"Debug"_s);
    }
    ~DebugControlTest() override
    {
        TargetProject::setPropertyClassFinder({});
        QDir::setCurrent(m_directory);
    }

    void set(const char* property, const QString& value)
    {
        m_workspace.projects().setProperty(m_project, QLatin1String(property), CommonConfiguration,
                                           value, false);
    }
    bool start(unsigned mode = DebugControl::Start)
    {
        const bool started = m_control.startDebugging(m_project, u"Debug"_s, mode);
        m_control.waitForStop();
        return started;
    }
    std::string startFailure(unsigned mode = DebugControl::Start)
    {
        try {
            start(mode);
        } catch (const HException& exception) {
            return exception.message();
        }
        return "started";
    }
    bool go()
    {
        m_control.debugGo();
        return m_control.waitForStop();
    }
    Path file(const char* name) const { return Path(built->folder / name); }
    BreakpointListItem* breakAt(const char* mark, const char* source = "tour.c")
    {
        const int line = built->line(source, mark);
        m_control.breakpoints().setBreakpoint(file(source), line, BreakpointState::Enabled);
        return m_control.breakpoints().find(file(source), line);
    }
    /// "function line" of the innermost frame.
    std::string where()
    {
        QString module;
        Path source;
        QString function;
        int line = 0;
        unsigned pc = 0;
        m_debugger.locate(m_debugger.getFrame(0), module, source, function, line, pc);
        return function.toStdString() + " " + std::to_string(line);
    }
    std::string at(const char* function, const char* mark, const char* source = "tour.c")
    {
        return std::string(function) + " " + std::to_string(built->line(source, mark));
    }
    std::string value(const char* expression)
    {
        ExpressionType result;
        m_debugger.evaluateExpression({m_debugger.getFrame(0), Path(), 0},
                                      QString::fromLatin1(expression), result);
        return result.resolved().toStr(10).toStdString();
    }

    const QString m_directory = QDir::currentPath();
    TestFolder m_folder;
    QScopedValueRollback<MacroSystem*> m_macros{macroSystem};
    Workspace m_workspace{{.root = QStringLiteral(GANTRY_ROOT_TREE),
                           .settingsFolder = QString::fromStdString(m_folder / "settings")}};
    NotingHost m_host;
    MSP430Monitor m_monitor;
    MSP430Debugger m_debugger{&m_host};
    TargetControl m_targets{m_workspace.settings(), m_host, nullptr};
    DebugControl m_control{{m_debugger, m_targets, m_workspace.settings(), &m_host}, m_host};
    ProjectElement* m_project = nullptr;
};

TEST_F(DebugControlTest, GoesToTheInitialBreakpointAndToTheEnd)
{
    ASSERT_TRUE(start());
    EXPECT_EQ(where().substr(0, 5), "main ");
    EXPECT_EQ(m_host.takeNotes(), u"begins 2 cancel on cancel off poll rest 3");
    EXPECT_EQ(QDir::currentPath().toStdString(), std::filesystem::canonical(built->folder / ""));
    EXPECT_EQ(m_control.breakpoints().groups().size(), 1U); // the program's errors
    EXPECT_FALSE(go());
    EXPECT_EQ(m_host.takeNotes(), u"poll 2 rest 3 exit 89");
    EXPECT_EQ(m_host.output, u"total 89, counter 53\n");
    EXPECT_EQ(m_control.session()->exitCode(), 89);
    m_control.debugStop();
    EXPECT_EQ(m_host.takeNotes(), u"0");
    EXPECT_TRUE(m_host.errors.isEmpty()) << m_host.errors.join(u'\n').toStdString();
    // The same again, in a second session.
    m_host.output.clear();
    ASSERT_TRUE(start());
    EXPECT_FALSE(go());
    EXPECT_EQ(m_host.output, u"total 89, counter 53\n");
}

TEST_F(DebugControlTest, TheInitialBreakpointFollowsItsSettings)
{
    auto& settings = m_workspace.settings();
    breakAt("bottom");
    settings.setInitialBreakpoint->setPropertyValue(u"Only With No Breakpoints Set"_s);
    start();
    EXPECT_EQ(where(), at("factorial", "bottom"));
    m_control.debugStop();
    m_control.breakpoints().disableAllBreakpoints();
    start();
    EXPECT_EQ(where().substr(0, 5), "main ");
    m_control.debugStop();
    settings.setInitialBreakpoint->setPropertyValue(u"Never"_s);
    start();
    EXPECT_TRUE(m_control.session()->hasEnded());
    m_control.debugStop();
    settings.setInitialBreakpoint->setPropertyValue(u"Always"_s);
    settings.initialBreakpoint->setPropertyValue(u"start_here"_s);
    start();
    EXPECT_TRUE(m_control.session()->hasEnded());
    EXPECT_EQ(m_host.errors.join(u'\n'),
              u"The initial breakpoint can't be set at start_here: start_here symbol not found");
}

TEST_F(DebugControlTest, StartUpEndsAtItsCompletionPoint)
{
    set("debug_startup_completion_point", u"main"_s);
    // Both at one place: one stop.
    start();
    EXPECT_EQ(where().substr(0, 5), "main ");
    EXPECT_TRUE(m_debugger.startupComplete());
    m_control.debugStop();
    // Start-up is passed without a stop.
    m_workspace.settings().initialBreakpoint->setPropertyValue(u"twice"_s);
    start();
    EXPECT_EQ(where().substr(0, 6), "twice ");
    EXPECT_TRUE(m_debugger.startupComplete());
    m_control.debugStop();
    // A stop ahead of it leaves it in its place.
    set("debug_startup_completion_point", u"twice"_s);
    m_workspace.settings().initialBreakpoint->setPropertyValue(u""_s);
    breakAt("bottom");
    start();
    EXPECT_EQ(where(), at("factorial", "bottom"));
    EXPECT_FALSE(m_debugger.startupComplete());
    breakAt("inside other", "other.c");
    ASSERT_TRUE(go());
    EXPECT_EQ(where(), at("other", "inside other", "other.c"));
    EXPECT_TRUE(m_debugger.startupComplete());
    m_control.debugStop();

    set("debug_startup_completion_point", u"nowhere"_s);
    m_host.takeNotes();
    EXPECT_EQ(startFailure(), "cannot set startup completion breakpoint");
    EXPECT_EQ(m_control.state(), DebugState::Idle);
    EXPECT_EQ(m_host.takeNotes(), u"begins 2 0");
}

TEST_F(DebugControlTest, ModesOfStarting)
{
    start(DebugControl::StartStopped);
    const unsigned entry = m_monitor.registers()->getPC();
    EXPECT_EQ(entry, m_monitor.codeMemory()->peekUint16(0xFFFE));
    // The initial breakpoint has gone with the stop.
    EXPECT_FALSE(go());
    m_control.debugStop();

    m_host.output.clear();
    m_monitor.codeMemory()->pokeByte(0x1000, 7); // loading erases; this does not load
    start(DebugControl::ResetOnly);
    EXPECT_EQ(where().substr(0, 5), "main ");
    EXPECT_EQ(m_monitor.codeMemory()->peekByte(0x1000), 7);
    breakAt("other");
    go();
    EXPECT_EQ(where(), at("main", "other"));
    m_control.debugStop();

    // The target stands where it was left.
    start(DebugControl::Attach);
    EXPECT_EQ(where(), at("main", "other"));
    EXPECT_EQ(value("corner.x"), "60");
    m_control.debugStop();

    set("debug_entry_point_symbol", u"nothing"_s);
    start(DebugControl::StartStopped);
    EXPECT_EQ(m_monitor.registers()->getPC(), entry);
    EXPECT_EQ(m_host.errors.takeLast(), u"entry point symbol nothing not found");
    m_control.debugStop();
    set("debug_entry_point_symbol", u"0x1234"_s);
    start(DebugControl::StartStopped);
    EXPECT_EQ(m_monitor.registers()->getPC(), 0x1234U);
}

TEST_F(DebugControlTest, WhatIsRefusedLeavesNoSession)
{
    m_host.outOfDate = true;
    m_host.answer = false;
    EXPECT_FALSE(start());
    EXPECT_EQ(m_host.questions.join(u'\n'),
              u"Build Project?: The project 'tour' is out of date and needs to be built.\n"
              "Build the project before debugging?");
    EXPECT_EQ(m_host.takeNotes(), u"");
    m_host.answer = true;
    EXPECT_TRUE(start());
    EXPECT_TRUE(m_host.takeNotes().startsWith(u"build begins 2"));
    m_host.outOfDate = false;
    EXPECT_TRUE(m_control.checkNotDebugging());
    EXPECT_EQ(m_host.questions.takeLast(),
              u"Stop Debugging?: This operation will stop the debugger.\n\n"
              "Do you want to stop the debugger?");
    EXPECT_EQ(m_control.state(), DebugState::Idle);

    ProjectElement* const program = m_project;
    m_project = m_workspace.projects().findProject(nullptr, u"library"_s);
    EXPECT_EQ(startFailure(), "No executable to load");
    m_project = program;

    m_folder.write("big.hex", ":0410000001020304E2\n:040A000001020304E8\n:00000001FF\n");
    set("debug_additional_load_files", QString::fromStdString(m_folder / "big.hex"));
    EXPECT_EQ(startFailure(),
              "The 0x00000A00 - 0x00000A03 load section does not fit the target "
              "description.");
    EXPECT_EQ(m_control.state(), DebugState::Idle);
    m_folder.write("big.hex", ":0410000001020304E2\n:00000001FF\n");
    EXPECT_TRUE(start());
    EXPECT_EQ(m_monitor.codeMemory()->peekByte(0x1003), 4);
    m_control.debugStop();
    m_folder.write("big.hex", "rubbish\n");
    EXPECT_EQ(startFailure(), "missing record mark in hex file : line 1");

    m_targets.disconnectTargetInterface();
    EXPECT_FALSE(start());
    EXPECT_EQ(m_control.state(), DebugState::Idle);
}

TEST_F(DebugControlTest, BreakpointsOfTheListStopIt)
{
    m_workspace.settings().initialBreakpoint->setPropertyValue(u""_s);
    BreakpointListItem* const loop = breakAt("loop");
    BreakpointListItem* const nowhere = breakAt("none: the last line");
    BreakpointListItem* const recursion = breakAt("recursion");
    m_control.breakpoints().setIgnoreCount(recursion, 2);
    start();
    EXPECT_EQ(where(), at("main", "loop"));
    EXPECT_TRUE(loop->isMatched());
    EXPECT_EQ(nowhere->state(), BreakpointState::Invalid);
    EXPECT_EQ(nowhere->info(), u"No code for breakpoint");
    // Taken off while the program is stopped; the third arrival at the other stops.
    m_control.breakpoints().toggleBreakpoint(file("tour.c"), built->line("tour.c", "loop"));
    go();
    EXPECT_EQ(where(), at("factorial", "recursion"));
    EXPECT_EQ(value("n"), "2");
    EXPECT_TRUE(recursion->isMatched());
    m_control.debugStop();
    EXPECT_EQ(recursion->breakpoint(), nullptr);
    EXPECT_EQ(recursion->state(), BreakpointState::Enabled);
}

TEST_F(DebugControlTest, ABreakpointArmsAnother)
{
    m_workspace.settings().initialBreakpoint->setPropertyValue(u""_s);
    BreakpointListItem* const twice = breakAt("twice");
    BreakpointListItem* const apply = breakAt("apply");
    m_control.breakpoints().setChainFrom(twice, apply->title());
    start();
    // The one that arms doesn't stop, and the first call of twice came ahead of it.
    EXPECT_EQ(where(), at("twice", "twice"));
    EXPECT_EQ(value("x"), "21");
    m_control.debugStop();
    // Without the one that arms it, it is armed at once.
    m_control.breakpoints().setState(apply, BreakpointState::None);
    start();
    EXPECT_EQ(value("x"), "24");
}

TEST_F(DebugControlTest, ErrorsOfTheProgramStopIt)
{
    start();
    ASSERT_EQ(m_control.breakpoints().groups().front()->name(), u"Program Errors");
    value("first.next = (struct node *)0x0b00");
    ASSERT_TRUE(go());
    EXPECT_EQ(where().substr(0, 4), "sum ");
    BreakpointListItem* const error =
        m_control.breakpoints().find(u"Address outside memory range on read"_s);
    EXPECT_TRUE(error->isMatched());
    m_control.debugStop();
    // The same with the exception disabled.
    m_control.breakpoints().setState(error, BreakpointState::Disabled);
    start();
    value("first.next = (struct node *)0x0b00");
    EXPECT_FALSE(go());
}

TEST_F(DebugControlTest, RestartsAndStepsByItself)
{
    start();
    breakAt("pointer");
    go();
    EXPECT_EQ(value("total"), "24");
    m_control.debugRestartClicked();
    ASSERT_TRUE(m_control.waitForStop());
    EXPECT_EQ(where(), at("main", "pointer"));
    EXPECT_EQ(value("total"), "24");
    m_control.debugStepOut(nullptr == m_debugger.getFrame(1) ? m_debugger.getFrame(0)
                                                             : m_debugger.getFrame(1));
    m_control.waitForStop();
    m_control.debugStop();

    start(DebugControl::Start);
    m_host.takeNotes();
    m_control.debugAutoStep();
    EXPECT_TRUE(m_control.session()->hasEnded());
    EXPECT_FALSE(m_control.isAutoStepping());
    EXPECT_EQ(m_host.output.right(21), u"total 89, counter 53\n");
    EXPECT_GT(m_host.takeNotes().count(u"poll 2 rest 3"_s), 20);
}

} // namespace
