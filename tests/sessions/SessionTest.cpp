// Real programs, run and stepped through. What must be seen is what their sources say.

#include "Session.h"

#include "InstalledTree.h"
#include "base/HException.h"
#include "objfile/query/FileMappings.h"
#include "objfile/query/TOBFObjectFileInterface.h"

namespace {

const std::vector<std::string> Tour = {"tour.c", "other.c"};

TEST(Session, StepsThroughAProgram)
{
    Session session(Tour, "-O0");
    session.startTo("loop");
    EXPECT_EQ(session.where(), "main:loop");
    EXPECT_EQ(session.locals(), "i=0");
    session.breakAt("factorial");
    session.go();
    EXPECT_EQ(session.where(), "main:factorial");
    EXPECT_EQ(session.value("squares[4]"), "16");
    session.stepOver();
    EXPECT_EQ(session.where(), "main:counter");
    EXPECT_EQ(session.value("total"), "24");
    session.stepInto();
    EXPECT_EQ(session.where().substr(0, 6), "twice:");
    EXPECT_EQ(session.value("x"), "24");
    session.stepOut();
    EXPECT_EQ(session.where(), "main:counter");
    session.stepOver();
    EXPECT_EQ(session.where(), "main:pointer");
    EXPECT_EQ(session.value("counter"), "53");
    session.breakAt("end");
    session.go();
    EXPECT_EQ(session.where(), "main:end");
    EXPECT_EQ(session.output, "total 89, counter 53\n");
    session.go();
    EXPECT_EQ(session.exitCode, 89);
    EXPECT_TRUE(session.errors.empty());
}

TEST(Session, WalksTheStackOfARecursion)
{
    Session session(Tour, "-O0");
    session.startTo("bottom");
    const std::string stack = session.callStack();
    EXPECT_EQ(stack.substr(0, stack.rfind(" < ")),
              "factorial:bottom < factorial:recursion < factorial:recursion < "
              "factorial:recursion < main:factorial");
    EXPECT_EQ(session.value("n", 0), "1");
    EXPECT_EQ(session.value("n", 1), "2");
    EXPECT_EQ(session.value("n", 3), "4");
    EXPECT_EQ(session.value("i", 4), "5");
}

TEST(Session, WalksTheStackOfOptimisedCode)
{
    for (const char* optimisation : {"-O1", "-O-9", "-O+9"}) {
        Session session(Tour, optimisation);
        session.startTo("inside other");
        EXPECT_EQ(session.where(), "other:inside other") << optimisation;
        EXPECT_EQ(session.where(1), "main:other") << optimisation;
        EXPECT_EQ(session.value("counter"), "100") << optimisation;
        EXPECT_EQ(session.value("by"), "53") << optimisation;
    }
}

TEST(Session, EvaluatesAndAssigns)
{
    Session session(Tour, "-O0");
    session.startTo("factorial");
    const std::pair<const char*, const char*> cases[] = {
        {"counter", "5"},
        {"corner.x", "3"},
        {"corner.y", "-4"},
        {"first.next->value", "20"},
        {"first.next->next->value", "30"},
        {"(*first.next).value", "20"},
        {"squares[i - 2]", "9"},
        {"*squares", "0"},
        {"sizeof(corner)", "4"},
        {"i * 10 + counter", "55"},
        {"total = 7", "7"},
        {"corner.x += 4", "7"},
        {"corner.x", "7"},
        {"nothing", "nothing symbol not found"},
        {"corner.z", "unknown field"},
        {"1 / 0", "divide by zero"},
    };
    for (const auto& [expression, value] : cases)
        EXPECT_EQ(session.value(expression), value) << expression;
    EXPECT_EQ(session.value("@PC"), std::to_string(session.monitor().registers()->getPC()));
}

TEST(Session, TellsStaticsOfOneNameApart)
{
    Session session(Tour, "-O0");
    session.startTo("inside other");
    EXPECT_EQ(session.value("counter"), "100");
    EXPECT_EQ(session.value("by"), "53");
    EXPECT_EQ(session.where(1), "main:other");
    EXPECT_EQ(session.value("counter", 1), "53");
}

TEST(Session, FollowsPointersToFunctions)
{
    Session session(Tour, "-O0");
    session.startTo("apply");
    EXPECT_EQ(session.value("argument"), "21");
    session.stepInto();
    EXPECT_EQ(session.where().substr(0, 6), "twice:");
    EXPECT_EQ(session.where(1), "apply:apply");
}

TEST(Session, StopsOnData)
{
    Session session(Tour, "-O0");
    session.startTo("loop");
    session.breakOn("squares[3] == 9");
    session.go();
    EXPECT_EQ(session.value("squares[3]"), "9");
    EXPECT_EQ(session.value("i"), "3");
    EXPECT_EQ(session.debugger().lastMatchedBreakpoints().size(), 1U);
    session.breakOn("total");
    session.go();
    EXPECT_EQ(session.value("total"), "24");
    // The store is the last instruction of its statement.
    EXPECT_EQ(session.where(), "main:counter");
}

TEST(Session, BreakpointsOnFunctionsCountArrivals)
{
    Session session(Tour, "-O0");
    session.startTo("loop");
    const auto failure = [&](const char* expression) {
        try {
            session.breakOn(expression);
        } catch (const DebuggerBreakpointFailure& exception) {
            return exception.text().toStdString();
        }
        return std::string("set");
    };
    EXPECT_EQ(failure("twice"), "set");
    session.go();
    EXPECT_EQ(session.where().substr(0, 6), "twice:");
    EXPECT_EQ(failure(""), "Invalid expression");
    EXPECT_EQ(failure("5 == total"), "Symbol required for lhs");
    EXPECT_EQ(failure("(total + 1) == 5"), "& is the only supported mask operator");
    EXPECT_EQ(failure("!(total == 1)"), "! only applicable to range expressions");
    EXPECT_EQ(failure("nothing"), "nothing symbol not found");
    EXPECT_EQ(failure("(total & 0xF0) == 0x10"), "set");
}

TEST(Session, ShowsDisassemblyWithSource)
{
    Session session(Tour, "-O0");
    session.startTo("twice");
    const unsigned pc = session.monitor().registers()->getPC();
    const int line = session.debugger().getDisassemblyLineNumber(pc);
    QStringList lines;
    session.debugger().getDisassemblyText(lines);
    ASSERT_GT(line, 1);
    ASSERT_LE(line, lines.size());
    EXPECT_EQ(session.debugger().getDisassemblyLineAddress(line), pc);
    EXPECT_TRUE(lines.contains(QStringLiteral("<twice>")));
    EXPECT_EQ(lines[line - 2], QStringLiteral("int result = x + x; /* mark: twice */"));
    EXPECT_TRUE(lines.filter(QStringLiteral("--- tour.c -- ")).size() > 0);
    for (const QString& text : lines)
        EXPECT_FALSE(text.contains(QStringLiteral("????"))) << text.toStdString();
}

TEST(Session, WithoutATargetHasNothingToRun)
{
    Session session(Tour, "-O0");
    session.startTo("loop");
    session.debugger().clear();
    EXPECT_TRUE(session.debugger().isStopped());
    EXPECT_EQ(session.where(), "nowhere");
    EXPECT_EQ(session.value("total"), "total symbol not found");
    EXPECT_EQ(session.value("*(int *)0x200"), "0");
    EXPECT_THROW(session.debugger().go(), HException);
    EXPECT_THROW(session.debugger().stepinto(false), HException);
    EXPECT_THROW(session.breakOn("0x1100"), HException);
    session.debugger().stop();
}

TEST(Session, ShowsTheInstructionsOfALine)
{
    Session session(Tour, "-O0");
    TOBFObjectFileInterface file{Path(session.program())};
    FileMappings mappings;
    const auto [source, line] = session.placeOf("twice");
    ASSERT_TRUE(file.disassemble(source, unsigned(line), &mappings));
    mappings.create();
    session.startTo("twice");
    const QStringList& lines = file.disassemblyLines();
    ASSERT_GE(lines.size(), 2);
    for (const QString& text : lines)
        EXPECT_TRUE(text.contains(QStringLiteral("R1"))) << text.toStdString();
    EXPECT_EQ(mappings.lineOf(session.monitor().registers()->getPC()), 1);
    EXPECT_FALSE(file.disassemble(source, 1, &mappings));
}

} // namespace
