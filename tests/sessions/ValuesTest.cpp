// Values of every kind in a real program, and interrupts. What must be seen is what C says of the
// sources in programs/.

#include "Session.h"

#include "base/HException.h"

namespace {

struct Expected {
    const char* expression;
    const char* value;
};

void expectValues(Session& session, std::initializer_list<Expected> values)
{
    for (const auto& [expression, value] : values)
        EXPECT_EQ(session.value(expression), value) << expression;
}

TEST(Values, AreReadAsTheirTypesSay)
{
    Session session({"values.c"}, "-O0");
    session.startTo("inner scope");
    expectValues(session,
                 {{"flags.ready", "1"},
                  {"flags.mode", "5"},
                  {"flags.level", "29"},    // bit-fields are unsigned
                  {"flags.wide", "344865"}, // 0x54321
                  {"word.value", "4660"},
                  {"word.bytes[0]", "52"},
                  {"word.bytes[1]", "18"},
                  {"word.parts.low", "4"},
                  {"word.parts.high", "291"},
                  {"colour", "6"},
                  {"single", "1.5"},
                  {"single * 3 - 0.25", "4.25"},
                  {"large", "-1e+10"},
                  {"big", "81985529216486895"},
                  {"address", "3735928559"},
                  {"grid[1][2]", "6"},
                  {"*grid[1]", "4"},
                  {"sizeof(grid)", "12"},
                  {"text[1]", "101"},
                  {"text[4]", "111"},
                  {"thing.kind", "7"},
                  {"thing.inner[1].ratio", "-2"},
                  {"thing.inner[0].name[2]", "101"},
                  {"thing.self->self->inner[0].ratio", "0.5"},
                  {"thing.word.parts.high", "2748"},
                  {"thing.handler == negate", "true"},
                  {"*pointer", "5"},
                  {"none", "0"},
                  {"none == 0", "true"},
                  {"tiny", "-128"},
                  {"(unsigned char)tiny", "128"},
                  {"truth", "1"},
                  {"local", "1000"},
                  {"mean", "-20.25"},
                  {"copy.ratio", "-2"},
                  {"walk->kind", "7"},
                  {"&grid[1][1] == pointer", "true"},
                  {"sizeof(thing)", "28"},
                  {"((struct outer *)walk)->kind", "7"}});
}

TEST(Values, AreWrittenAsTheirTypesSay)
{
    Session session({"values.c"}, "-O0");
    session.startTo("changed");
    expectValues(session,
                 {{"flags.level", "7"},
                  {"flags.mode", "5"},
                  {"word.value", "65332"},
                  {"flags.mode = 2", "2"},
                  {"flags.ready", "1"},
                  {"flags.level", "7"},
                  {"flags.level = -16", "16"},
                  {"flags.wide", "344865"},
                  {"flags.wide = 0xfffff", "1048575"},
                  {"flags.level", "16"},
                  {"word.parts.high = 0xabc", "2748"},
                  {"word.value", "43972"}, // 0xabc4
                  {"single = 2.25", "2.25"},
                  {"single", "2.25"},
                  {"large /= 4", "-2.5e+09"},
                  {"big = -1", "-1"},
                  {"grid[1][0] += 10", "14"},
                  {"*pointer = 9", "9"},
                  {"grid[1][1]", "9"},
                  {"(pointer = &grid[0][1]) == &grid[0][1]", "true"},
                  {"*pointer", "2"},
                  {"tiny = 200", "-56"},
                  {"local = -7", "-7"},
                  {"local", "-7"}});
    session.breakAt("end");
    session.go();
    expectValues(session, {{"*pointer", "55"}, {"grid[0][1]", "55"}, {"copy.name[0]", "84"}});
    session.go();
    EXPECT_EQ(session.exitCode, -7 + -40 + 'T' + 1);
}

TEST(Values, OfScopesAndStatics)
{
    Session session({"values.c"}, "-O0");
    session.startTo("negate");
    EXPECT_EQ(session.value("x"), "42");
    EXPECT_EQ(session.where(1).substr(0, 5), "main:");
    session.breakAt("inner scope");
    session.go();
    EXPECT_EQ(session.value("local"), "1000");
    session.breakAt("statics");
    session.go();
    EXPECT_EQ(session.value("calls"), "10");
    EXPECT_EQ(session.value("local", 1), "-42");
    session.stepInstruction();
    session.stepInstruction();
    session.stepInstruction();
    EXPECT_EQ(session.value("calls"), "11");
    EXPECT_EQ(session.value("none[0]", 1), session.value("*(unsigned char *)0", 1));
}

TEST(Values, OfOptimisedCode)
{
    for (const char* optimisation : {"-O1", "-O-9", "-O+9"}) {
        SCOPED_TRACE(optimisation);
        Session session({"values.c"}, optimisation);
        session.startTo("negate");
        expectValues(session,
                     {{"flags.wide", "344865"}, {"thing.inner[1].ratio", "-2"}, {"x", "42"}});
        session.breakAt("end");
        session.go();
        session.go();
        EXPECT_EQ(session.exitCode, -42 + -40 + 'T' + 1);
    }
}

TEST(Interrupts, AreStoppedIn)
{
    Session session({"interrupts.c"}, "-O0 -D__MSP430F449__");
    session.startTo("spin");
    // Pending until the program goes on; TIMERA0 is vector 6.
    session.monitor().raiseInterrupt(6);
    DebuggerBreakpoint* const tick = session.breakAt("tick");
    session.go();
    EXPECT_EQ(session.where(), "tick:tick");
    EXPECT_EQ(session.where(1).substr(0, 5), "main:");
    EXPECT_EQ(session.value("ticks"), "0");
    session.stepOver();
    EXPECT_EQ(session.value("ticks"), "1");
    session.breakAt("count");
    session.go();
    EXPECT_EQ(session.where(), "count:count");
    EXPECT_EQ(session.value("by"), "1");
    EXPECT_EQ(session.where(2).substr(0, 5), "main:");
    const std::string spins = session.value("spin", 2);
    session.stepOut();
    EXPECT_EQ(session.where().substr(0, 5), "tick:");
    session.stepOut();
    EXPECT_EQ(session.where().substr(0, 5), "main:");
    EXPECT_EQ(session.value("spin"), spins);
    for (int i = 2; i <= 3; ++i) {
        session.monitor().raiseInterrupt(6);
        session.go();
        EXPECT_EQ(session.value("ticks"), std::to_string(i - 1));
        session.go();
        EXPECT_EQ(session.where(), "count:count");
    }
    session.debugger().clearBreakpoint(tick);
    session.breakAt("end");
    session.go();
    EXPECT_EQ(session.where(), "main:end");
    EXPECT_EQ(session.value("sum"), "6");
}

// A stack that is nonsense, and code that isn't there.

TEST(Session, OutlivesANonsenseStack)
{
    Session session({"values.c"}, "-O0");
    session.startTo("negate");
    TargetRegisterInterface& registers = *session.monitor().registers();
    for (const unsigned sp : {0U, 0x1FEU, 0x9FFU, 0xA00U, 0xFFFEU, 0xFFFFU}) {
        registers.setValue(1, sp);
        session.debugger().locate();
        EXPECT_GE(session.debugger().numcalls(), 1) << sp;
        EXPECT_EQ(session.where(), "negate:negate") << sp;
        session.locals();
    }
}

TEST(Session, StopsInEmptyMemory)
{
    Session session({"values.c"}, "-O0");
    session.startTo("negate");
    for (const QString& name : session.debugger().getExceptionTypes(0))
        session.debugger().setExceptionEnabled(name, true);
    session.value("@PC = 0x9000"); // erased
    session.go();
    EXPECT_FALSE(session.debugger().lastMatchedException().isEmpty());
    EXPECT_GE(session.debugger().numcalls(), 1);
    // The session goes on to be of use.
    EXPECT_EQ(session.value("thing.kind"), "7");
    session.monitor().reset(true, false);
    session.startTo("end");
    EXPECT_EQ(session.where(), "main:end");
}

} // namespace
