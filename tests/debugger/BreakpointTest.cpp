// Terms of breakpoint expressions, and the user's list of breakpoints over a debugger that notes
// what it is asked.

#include "debugger/FakeDebugger.h"
#include "debugger/breakpoints/BreakpointChain.h"
#include "debugger/breakpoints/BreakpointList.h"
#include "debugger/breakpoints/TOBFBreakpoint.h"
#include "objfile/TestProgram.h"
#include "target/msp430/MSP430Monitor.h"

#include <QDomDocument>

#include <gtest/gtest.h>

#include <algorithm>
#include <optional>

namespace {

class BreakpointTerms : public testing::Test {
protected:
    BreakpointTerms()
    {
        TestProgram program;
        program.section("CODE", SectionKind::Code, 0x1000);
        program.beginFunction("main");
        program.bytes({2});
        program.symbol("local", TestProgram::atRegister(1, -4), TestProgram::integer(2));
        program.symbol("fast", new TOBFRegisterExpr(5), TestProgram::integer(2));
        program.endScope();
        program.section("DATA", SectionKind::Data, 0x200);
        program.variable("x", TestProgram::integer(2));
        program.variable("l", TestProgram::integer(4));
        program.variable("a", new TOBFArrayType(TestProgram::integer(2), 4));
        program.variable(
            "far", new TOBFQualifiedType(TestProgram::integer(2), static_cast<TOBFTag>(0x6B)));
        program.absolute("limit", 9, TestProgram::integer(2));
        m_module = program.finish();
        m_debug.emplace(m_module.get(), Path());
        m_target.emplace(*m_debug);
        m_target->registers[0] = 0x1000;
        m_target->registers[1] = 0x400;
        m_target->setWord(0x202, 0x77); // l
    }

    /// "kind[@]address+length=value&mask" of each term.
    std::string terms(const std::string& text)
    {
        std::list<BreakpointExpression> found;
        try {
            const ExpressionPtr expression = m_target->parse(text.c_str());
            evaluateBreakpointExpression(expression.get(), found);
        } catch (const DebuggerBreakpointFailure& failure) {
            return failure.text().toStdString();
        } catch (const ParserException& failure) {
            return failure.getCause().toStdString();
        }
        QStringList all;
        for (const BreakpointExpression& it : found)
            all.append(QStringLiteral("%1%2%3+%4=%5&%6")
                           .arg(it.kind)
                           .arg(QString::fromLatin1(it.isRegister ? "@" : ":"))
                           .arg(it.address, 0, 16)
                           .arg(it.length)
                           .arg(it.value)
                           .arg(it.mask, 0, 16));
        return all.join(u' ').toStdString();
    }

    OwnedModule m_module;
    std::optional<SymbolicDebug> m_debug;
    std::optional<FakeDebugger> m_target;
};

TEST_F(BreakpointTerms, ArePlacesAloneOrCompared)
{
    const struct {
        const char* text;
        const char* terms;
    } cases[] = {
        {"x", "0:200+2=0&ffffffff"},
        {"0x1234", "0:1234+8=0&ffffffff"},
        {"main", "0:1000+3=0&ffffffff"},
        {"l == 5", "2:202+4=5&ffffffff"},
        {"x != limit", "3:200+2=9&ffffffff"},
        {"x >= -1", "4:200+2=4294967295&ffffffff"},
        {"x <= 2 + 3", "5:200+2=5&ffffffff"},
        {"x > 5", "6:200+2=5&ffffffff"},
        {"x < 5", "7:200+2=5&ffffffff"},
        {"(x & 0xF0) == 0x10", "2:200+2=16&f0"},
        {"a[1] == 3", "2:208+2=3&ffffffff"},
        {"(a[1] & 3) == 3", "2:208+2=3&3"},
        {"local == 1", "2:3fc+2=1&ffffffff"},
        {"fast == 1", "2@5+2=1&ffffffff"},
        {"@R7", "0@7+2=0&ffffffff"},
        {"*((int *)0x300) == 1", "2:300+2=1&ffffffff"},
        {"x > 1 && x < 9", "6:200+2=1&ffffffff 7:200+2=9&ffffffff"},
        {"x && l && @R4", "0:200+2=0&ffffffff 0:202+4=0&ffffffff 0@4+2=0&ffffffff"},
        {"!x", "1:200+2=0&ffffffff"},
        {"!x && l == 2", "1:200+2=0&ffffffff 2:202+4=2&ffffffff"},
        {"!(x == 1)", "! only applicable to range expressions"},
        {"5 == x", "Symbol required for lhs"},
        {"5 == 5", "Symbol required for lhs"},
        {"(x + 1) == 5", "& is the only supported mask operator"},
        {"(x & l) == 5", "2:200+2=5&77"},
        {"x == l", "2:200+2=119&ffffffff"},
        {"(x & \"a\") == 5", "Constant required for rhs of mask"},
        {"x == \"a\"", "Constant required for rhs"},
        {"\"a\"", "Expression has no address"},
        {"1.5", "Expression has no address"},
        {"x || l", "Expression has no address"},
        {"far", "Expression has no address"},
        {"nothing == 1", "nothing symbol not found"},
    };
    for (const auto& it : cases)
        EXPECT_EQ(terms(it.text), it.terms) << it.text;
}

TEST_F(BreakpointTerms, AreTheMonitorsComparisons)
{
    const unsigned numbers[] = {0, 3, 1, 2, 5, 4}; // of kinds 2 to 7
    for (unsigned i = 0; i < std::size(numbers); ++i) {
        HBreakpoint breakpoint;
        BreakpointExpression{
            static_cast<BreakpointExpression::Kind>(i + 2), false, 0x200, 2, 7, 0xF}
            .applyTo(breakpoint);
        EXPECT_EQ(breakpoint.comparison, numbers[i]);
        EXPECT_TRUE(breakpoint.valued);
        EXPECT_FALSE(breakpoint.inverse);
        EXPECT_EQ(breakpoint.value, 7U);
        EXPECT_EQ(breakpoint.mask, 0xFU);
        EXPECT_EQ(breakpoint.length, 2U);
    }
    HBreakpoint inverted;
    BreakpointExpression{BreakpointExpression::InvertedRange, true, 5, 2, 0, 0}.applyTo(inverted);
    EXPECT_TRUE(inverted.inverse);
    EXPECT_TRUE(inverted.isRegister);
    EXPECT_FALSE(inverted.valued);
}

TEST_F(BreakpointTerms, BecomeAChainForTheMonitor)
{
    MSP430Monitor monitor;
    const auto chain = [&](const char* text, const BreakpointRequest& request) {
        std::list<BreakpointExpression> found;
        const ExpressionPtr expression = m_target->parse(text);
        evaluateBreakpointExpression(expression.get(), found);
        return makeBreakpointChain(found, request, monitor,
                                   [&](unsigned address) { return m_debug->getSection(address); });
    };
    const auto execute = static_cast<unsigned>(monitor.getExecuteTriggerNumber());
    const auto write = static_cast<unsigned>(monitor.getWriteTriggerNumber());
    ASSERT_NE(execute, write);

    BreakpointRequest request;
    request.count = 4;
    const BreakpointChain both = chain("x > 1 && x < 9", request);
    ASSERT_EQ(both.size(), 2U);
    EXPECT_EQ(both[0]->next, nullptr);
    EXPECT_EQ(both[1]->next, both[0].get());
    EXPECT_EQ(both[1]->trigger, write);
    EXPECT_EQ(both[1]->count, 4);
    EXPECT_EQ(both[1]->length, 2U);
    EXPECT_EQ(both[1]->hardwareIndex, -1);
    EXPECT_TRUE(both[1]->enabled);

    const BreakpointChain code = chain("main", request);
    EXPECT_EQ(code[0]->trigger, execute);
    EXPECT_EQ(code[0]->length, 1U);
    EXPECT_EQ(chain("@R7", request)[0]->trigger, write);
    EXPECT_EQ(chain("0x8000", request)[0]->trigger, execute); // in no section
    EXPECT_EQ(chain("0x8000", request)[0]->length, 8U);

    request.hardwareIndex = QStringLiteral("2");
    EXPECT_EQ(chain("x", request)[0]->hardwareIndex, -1); // not asked for
    request.hardware = true;
    EXPECT_EQ(chain("x", request)[0]->hardwareIndex, 2);
    EXPECT_TRUE(chain("x", request)[0]->hardware);
    for (int i = 0; i < monitor.numTriggers(); ++i) {
        request.trigger = QString::fromLatin1(monitor.getTrigger(i));
        EXPECT_EQ(chain("main", request)[0]->trigger, static_cast<unsigned>(i));
    }
    for (int i = 0; i < monitor.numActions(); ++i) {
        request.action = QString::fromLatin1(monitor.getAction(i));
        EXPECT_EQ(chain("main", request)[0]->action, static_cast<unsigned>(i));
    }
    request.action = QStringLiteral("no such action");
    EXPECT_EQ(chain("main", request)[0]->action,
              static_cast<unsigned>(monitor.getStopActionNumber()));
}

TEST(TOBFBreakpoint, TellsWhereItIs)
{
    const auto make = [](unsigned address, unsigned length, bool isRegister) {
        auto record = std::make_unique<HBreakpoint>();
        record->address = address;
        record->length = length;
        record->isRegister = isRegister;
        record->count = 3;
        return TOBFBreakpoint(std::move(record));
    };
    TOBFBreakpoint code = make(0x1000, 1, false);
    EXPECT_EQ(code.getDescription(), u"0x1000");
    EXPECT_EQ(code.getAddress(), u"0x1000");
    EXPECT_EQ(code.getCount(), 3);
    EXPECT_TRUE(code.isVisible());
    EXPECT_FALSE(code.isPermanent());
    EXPECT_EQ(make(0x200, 4, false).getDescription(), u"0x200-0x203");
    EXPECT_EQ(make(12, 2, true).getAddress(), u"@r12");
}

/// Places breakpoints at lines below 100, and notes what it is asked.
class NotingDebugger : public BreakpointDebugger {
public:
    DebuggerBreakpoint* setBreakpoint(const QString&, const Path& file, int line, int count, bool,
                                      bool, const QString&, const QString&) override
    {
        if (line >= 100)
            throw DebuggerBreakpointFailure("No code for breakpoint");
        return placed(file.fileName() + u':' + QString::number(line), line, count);
    }
    DebuggerBreakpoint* setBreakpoint(const ExpressionContext&, const QString& expression,
                                      const QString&, int count, bool, bool, const QString&,
                                      const QString&) override
    {
        return expression == u"refused" ? nullptr : placed(expression, 0, count);
    }
    void clearBreakpoint(DebuggerBreakpoint* breakpoint) override
    {
        calls.append(QStringLiteral("clear ") + names.at(breakpoint));
        std::erase_if(breakpoints, [=](const auto& it) { return it.get() == breakpoint; });
    }
    void chainFrom(DebuggerBreakpoint* breakpoint, DebuggerBreakpoint* from) override
    {
        if (names.at(breakpoint) == u"alone")
            throw DebuggerBreakpointFailure("Chaining not supported");
        calls.append(QStringLiteral("chain ") + names.at(breakpoint)
                     + (from ? QStringLiteral(" from ") + names.at(from) : QString()));
    }
    std::set<DebuggerBreakpoint*> lastMatchedBreakpoints() override { return matched; }
    QString lastMatchedException() override { return exception; }
    QStringList getExceptionClasses() override { return classes; }
    QStringList getExceptionTypes(unsigned number) override
    {
        return {QStringLiteral("Type%1a").arg(number), QStringLiteral("Type%1b").arg(number)};
    }
    bool targetHasExceptionClass(unsigned number) override { return number == 0; }
    void setExceptionEnabled(const QString& name, bool enabled) override
    {
        calls.append((enabled ? QStringLiteral("enable ") : QStringLiteral("disable ")) + name);
    }

    QStringList takeCalls() { return std::exchange(calls, {}); }

    QStringList calls;
    std::set<DebuggerBreakpoint*> matched;
    QString exception;
    QStringList classes;
    std::vector<std::unique_ptr<TOBFBreakpoint>> breakpoints;
    std::map<DebuggerBreakpoint*, QString> names;

private:
    DebuggerBreakpoint* placed(const QString& name, int line, int count)
    {
        auto record = std::make_unique<HBreakpoint>();
        record->address = static_cast<unsigned>(line);
        record->count = count;
        breakpoints.push_back(std::make_unique<TOBFBreakpoint>(std::move(record)));
        names[breakpoints.back().get()] = name;
        calls.append(QStringLiteral("set ") + name
                     + (count > 0 ? u'#' + QString::number(count) : QString()));
        return breakpoints.back().get();
    }
};

class NotingView : public BreakpointListView {
public:
    bool isDebugging() const override { return debugging; }
    void sourceBreakpointStateChanged(const Path&, int line) override { changed.push_back(line); }
    void select(BreakpointListItem* item) override { selected = item; }

    bool debugging = false;
    std::vector<int> changed;
    BreakpointListItem* selected = nullptr;
};

class BreakpointListTest : public testing::Test {
protected:
    using State = BreakpointState;
    using Settings = BreakpointListItem::Settings;

    void startDebugging()
    {
        m_view.debugging = true;
        m_list.check();
    }
    Settings hardware(const char* expression, const char* index)
    {
        Settings settings;
        settings.expression = QString::fromLatin1(expression);
        settings.useHardware = true;
        settings.hardwareBreakpoint = QString::fromLatin1(index);
        return settings;
    }
    std::vector<int> lines(const char* group = "Breakpoints")
    {
        std::vector<int> result;
        for (const auto& item : m_list.findGroup(QString::fromLatin1(group))->items())
            result.push_back(item->settings().line);
        return result;
    }

    const Path m_file{QStringLiteral("/src/a.c")};
    NotingDebugger m_debugger;
    NotingView m_view;
    BreakpointList m_list{m_debugger, m_view};
};

TEST_F(BreakpointListTest, OutsideASessionOnlyTheListChanges)
{
    m_list.toggleBreakpoint(m_file, 10);
    EXPECT_EQ(m_list.getState(m_file, 10), State::Enabled);
    EXPECT_EQ(m_list.find(m_file, 10)->title(), u"a.c, line 10");
    m_list.setBreakpoint(m_file, 10, State::Disabled);
    EXPECT_EQ(m_list.getState(m_file, 10), State::Disabled);
    m_list.toggleBreakpointEnable(m_list.find(m_file, -1));
    EXPECT_EQ(m_list.getState(m_file, 10), State::Enabled);
    m_list.setBreakpoint(m_file, 11, State::Disabled); // nothing there to be disabled
    EXPECT_EQ(m_list.getState(m_file, 11), State::None);
    m_list.toggleBreakpoint(m_file, 10);
    EXPECT_EQ(m_list.getState(m_file, 10), State::None);
    EXPECT_TRUE(m_debugger.calls.isEmpty());
    Settings nowhere;
    EXPECT_EQ(m_list.addBreakpoint(nowhere)->title(), u"disassembly");
}

TEST_F(BreakpointListTest, ASessionPlacesThemByTheirNeedOfComparators)
{
    m_list.toggleBreakpoint(m_file, 10);
    m_list.addBreakpoint(hardware("any", ""));
    m_list.addBreakpoint(hardware("third", "3"));
    m_list.setBreakpoint(m_file, 20, QStringLiteral("off"));
    m_list.setState(m_list.find(QStringLiteral("off")), State::Disabled);
    m_view.changed.clear();
    m_view.debugging = true;
    EXPECT_NE(m_list.check(), 0);
    EXPECT_EQ(m_debugger.takeCalls(),
              (QStringList{QStringLiteral("set third"), QStringLiteral("set any"),
                           QStringLiteral("set a.c:10")}));
    EXPECT_EQ(m_view.changed, (std::vector<int>{-1, -1, 10, 20}));
    m_list.check(); // what is placed stays
    EXPECT_TRUE(m_debugger.takeCalls().isEmpty());
    m_list.clear();
    m_list.check();
    EXPECT_EQ(m_debugger.takeCalls().size(), 3);
}

TEST_F(BreakpointListTest, NoneEnabledCountsAsZero)
{
    m_list.toggleBreakpoint(m_file, 10);
    m_list.setBreakpoint(m_file, 10, State::Disabled);
    EXPECT_EQ(m_list.check(), 0);
}

TEST_F(BreakpointListTest, ThoseThatCantBePlacedAreTriedAgain)
{
    m_list.toggleBreakpoint(m_file, 200);
    m_list.setBreakpoint(m_file, 1, QStringLiteral("refused"));
    startDebugging();
    EXPECT_EQ(m_list.getState(m_file, 200), State::Invalid);
    QString info;
    ASSERT_TRUE(m_list.getInfo(m_file, 200, info));
    EXPECT_EQ(info, u"No code for breakpoint");
    EXPECT_EQ(m_list.getState(m_file, 1, QStringLiteral("refused")), State::Invalid);
    m_list.editorLinesChanged(m_file, 1, -150);
    EXPECT_NE(m_list.check(), 0);
    EXPECT_EQ(m_list.getState(m_file, 50), State::Enabled);
    ASSERT_TRUE(m_list.getInfo(m_file, 50, info));
    EXPECT_EQ(info, u"0x32");
    EXPECT_FALSE(m_list.getInfo(m_file, 51, info));
}

TEST_F(BreakpointListTest, ASessionFollowsTheList)
{
    startDebugging();
    m_list.toggleBreakpoint(m_file, 10);
    EXPECT_EQ(m_debugger.takeCalls(), QStringList{QStringLiteral("set a.c:10")});
    m_list.setBreakpoint(m_file, 10, State::Disabled);
    EXPECT_EQ(m_debugger.takeCalls(), QStringList{QStringLiteral("clear a.c:10")});
    m_list.enableAllBreakpoints();
    EXPECT_EQ(m_debugger.takeCalls(), QStringList{QStringLiteral("set a.c:10")});
    m_list.setIgnoreCount(m_list.find(m_file, 10), 5);
    EXPECT_EQ(m_debugger.takeCalls(),
              (QStringList{QStringLiteral("clear a.c:10"), QStringLiteral("set a.c:10#5")}));
    m_list.toggleBreakpoint(m_file, 10);
    EXPECT_EQ(m_debugger.takeCalls(), QStringList{QStringLiteral("clear a.c:10")});
    EXPECT_EQ(m_list.find(m_file, 10), nullptr);
    EXPECT_TRUE(m_debugger.breakpoints.empty());
}

TEST_F(BreakpointListTest, LinesAreFollowed)
{
    for (const int line : {5, 10, 11, 12, 13, 20})
        m_list.toggleBreakpoint(m_file, line);
    m_list.toggleBreakpoint(Path(QStringLiteral("/src/b.c")), 11);
    m_list.editorLinesChanged(m_file, 10, -3);
    EXPECT_EQ(lines(), (std::vector<int>{5, 10, 17, 11}));
    m_list.editorLinesChanged(m_file, 10, 2);
    EXPECT_EQ(lines(), (std::vector<int>{5, 12, 19, 11}));
    m_list.editorLinesChanged(m_file, 1, 0);
    EXPECT_EQ(lines(), (std::vector<int>{5, 12, 19, 11}));
    EXPECT_EQ(m_list.find(m_file, 19)->title(), u"a.c, line 19");
}

TEST_F(BreakpointListTest, GroupsStandInTheOrderOfTheirNames)
{
    m_list.toggleBreakpoint(m_file, 1);
    m_list.setActiveGroup(m_list.newBreakpointGroup(QStringLiteral("Alpha")));
    EXPECT_EQ(m_list.newBreakpointGroup(QStringLiteral("Alpha")), m_list.activeGroup());
    m_list.toggleBreakpoint(m_file, 2);
    ASSERT_EQ(m_list.groups().size(), 2U);
    EXPECT_EQ(m_list.groups()[0]->name(), u"Alpha");
    m_list.disableBreakpointGroup();
    EXPECT_EQ(m_list.getState(m_file, 2), State::Disabled);
    EXPECT_EQ(m_list.getState(m_file, 1), State::Enabled);
    m_list.disableBreakpointGroup(QStringLiteral("Breakpoints"));
    EXPECT_EQ(m_list.getState(m_file, 1), State::Disabled);
    m_list.enableBreakpointGroup(QStringLiteral("Alpha"));
    EXPECT_EQ(m_list.getState(m_file, 2), State::Enabled);
    m_list.deleteBreakpointGroup();
    EXPECT_EQ(m_list.groups().size(), 1U);
    EXPECT_EQ(m_list.activeGroup()->name(), u"Breakpoints");
    m_list.deleteAllBreakpoints();
    EXPECT_TRUE(m_list.activeGroup()->items().empty());
}

TEST_F(BreakpointListTest, AStopMarksWhatCausedIt)
{
    m_list.toggleBreakpoint(m_file, 10);
    m_list.toggleBreakpoint(m_file, 20);
    startDebugging();
    BreakpointListItem* item = m_list.find(m_file, 20);
    m_debugger.matched = {item->breakpoint()};
    m_list.update();
    EXPECT_TRUE(item->isMatched());
    EXPECT_FALSE(m_list.find(m_file, 10)->isMatched());
    EXPECT_EQ(m_view.selected, item);
    m_debugger.matched.clear();
    m_list.update();
    EXPECT_FALSE(item->isMatched());
}

TEST_F(BreakpointListTest, ExceptionsOfTheTargetHaveGroups)
{
    m_debugger.classes = {QStringLiteral("Faults"), QStringLiteral("Traps")};
    m_list.updateExceptions();
    ASSERT_EQ(m_list.groups().size(), 2U);
    const BreakpointGroup* faults = m_list.findGroup(QStringLiteral("Faults"));
    ASSERT_EQ(faults->items().size(), 2U);
    startDebugging();
    EXPECT_TRUE(faults->isVisible());
    EXPECT_FALSE(m_list.findGroup(QStringLiteral("Traps"))->isVisible());
    EXPECT_EQ(m_debugger.takeCalls().first(), u"enable Type0a");
    BreakpointListItem* item = faults->items()[1].get();
    m_list.setState(item, State::Disabled);
    EXPECT_EQ(m_debugger.takeCalls(), QStringList{QStringLiteral("disable Type0b")});
    m_list.setState(item, State::None); // not while debugging
    EXPECT_EQ(faults->items().size(), 2U);
    m_debugger.exception = QStringLiteral("Type0b");
    m_list.update();
    EXPECT_TRUE(item->isMatched());
    m_debugger.classes.removeLast();
    m_list.updateExceptions();
    EXPECT_EQ(m_list.groups().size(), 1U);
    EXPECT_EQ(m_list.findGroup(QStringLiteral("Faults"))->items().size(), 2U);
}

TEST_F(BreakpointListTest, OneArmsAnother)
{
    m_list.setBreakpoint(m_file, 1, QStringLiteral("first"));
    BreakpointListItem* second = m_list.setBreakpoint(m_file, 2, QStringLiteral("second"));
    m_list.setChainFrom(second, QStringLiteral("first"));
    EXPECT_TRUE(m_debugger.takeCalls().isEmpty());
    startDebugging();
    EXPECT_EQ(m_debugger.takeCalls().join(u';'), u"set first;set second;chain second from first");
    // The one that goes lets go of the other, and comes back.
    m_list.setState(m_list.find(QStringLiteral("first")), State::Disabled);
    EXPECT_EQ(m_debugger.takeCalls().join(u';'), u"chain second;clear first");
    m_list.setBreakpoint(m_file, 1, QStringLiteral("first"), State::Enabled);
    EXPECT_EQ(m_debugger.takeCalls().join(u';'), u"set first;chain second from first");
    m_list.setChainFrom(second, QString());
    EXPECT_EQ(m_debugger.takeCalls().join(u';'), u"chain second");
    // A target that can't, and a breakpoint that would arm itself.
    BreakpointListItem* alone = m_list.setBreakpoint(m_file, 3, QStringLiteral("alone"));
    m_list.setChainFrom(alone, QStringLiteral("first"));
    EXPECT_EQ(alone->state(), State::Invalid);
    EXPECT_EQ(alone->info(), u"Chaining not supported");
    m_debugger.takeCalls();
    m_list.setChainFrom(second, QStringLiteral("second"));
    EXPECT_TRUE(m_debugger.takeCalls().contains(QStringLiteral("chain second")));
}

TEST_F(BreakpointListTest, SessionsKeepThem)
{
    m_list.toggleBreakpoint(m_file, 10);
    m_list.setBreakpoint(m_file, 10, State::Disabled);
    m_list.setActiveGroup(m_list.newBreakpointGroup(QStringLiteral("Data")));
    Settings settings = hardware("x == 5", "2");
    settings.ignoreCount = 7;
    settings.trigger = QStringLiteral("Data Write");
    settings.action = QStringLiteral("Stop");
    settings.functionBreakpoint = true;
    m_list.addBreakpoint(settings);

    QDomDocument document;
    QDomElement root = document.createElement(QStringLiteral("Breakpoints"));
    m_list.saveSession(document, root);
    const QDomElement first = root.firstChildElement();
    EXPECT_EQ(first.tagName(), u"BreakpointListItem");
    EXPECT_EQ(first.attribute(QStringLiteral("filename")), u"/src/a.c");
    EXPECT_EQ(first.attribute(QStringLiteral("state")), u"3");
    EXPECT_EQ(first.attribute(QStringLiteral("useHWbreakpoint")), u"false");

    BreakpointList loaded(m_debugger, m_view);
    loaded.loadSession(root);
    EXPECT_EQ(loaded.activeGroup()->name(), u"Breakpoints");
    EXPECT_EQ(loaded.getState(m_file, 10), State::Disabled);
    const BreakpointListItem* item = loaded.find(QStringLiteral("x == 5"));
    ASSERT_NE(item, nullptr);
    EXPECT_EQ(item->group()->name(), u"Data");
    EXPECT_EQ(item->settings().ignoreCount, 7);
    EXPECT_EQ(item->settings().trigger, u"Data Write");
    EXPECT_EQ(item->settings().action, u"Stop");
    EXPECT_EQ(item->settings().hardwareBreakpoint, u"2");
    EXPECT_TRUE(item->settings().useHardware);
    EXPECT_TRUE(item->settings().functionBreakpoint);
    EXPECT_TRUE(item->settings().fileName.isEmpty());
}

TEST_F(BreakpointListTest, OddSessionsAreReadAsFarAsTheyGo)
{
    QDomDocument document;
    document.setContent(QStringLiteral(
        "<S><BreakpointListItem state='1' group='G' expression='gone'/>"
        "<BreakpointListItem state='2' group='ARM Exceptions' expression='foreign'/>"
        "<BreakpointListItem state='99' group='G' expression='odd' trigger='Default' "
        "hardwareBreakpoint='Any' line='x' counter='y'/>"
        "<BreakpointListItem state='3' group='Faults' expression='Type0a'/>"
        "<BreakpointListItem/></S>"));
    m_debugger.classes = {QStringLiteral("Faults")};
    m_list.updateExceptions();
    m_list.loadSession(document.documentElement());
    EXPECT_EQ(m_list.find(QStringLiteral("gone")), nullptr);
    EXPECT_EQ(m_list.find(QStringLiteral("foreign")), nullptr);
    const BreakpointListItem* odd = m_list.find(QStringLiteral("odd"));
    ASSERT_NE(odd, nullptr);
    EXPECT_EQ(odd->state(), State::Enabled);
    EXPECT_EQ(odd->settings().trigger, u"");
    EXPECT_EQ(odd->settings().hardwareBreakpoint, u"");
    EXPECT_EQ(m_list.find(QStringLiteral("Type0a"))->state(), State::Disabled);
    EXPECT_EQ(m_list.findGroup(QStringLiteral("Faults"))->items().size(), 2U);
}

} // namespace
