// The views of data on real programs: what is marked, kept and dropped from stop to stop.

#include "Session.h"

#include "base/HException.h"
#include "debugger/expressions/ParserException.h"
#include "debugger/views/AutosVariableView.h"
#include "debugger/views/LocalsVariableView.h"
#include "debugger/views/MemoryView.h"
#include "debugger/views/RegistersView.h"
#include "debugger/views/TextVariableView.h"
#include "debugger/views/WatchVariableView.h"

#include <QDomDocument>

using namespace Qt::Literals::StringLiterals;

namespace {

using State = VariableViewItem::State;

/// The window around the views of a session.
class Window : public VariableViewHost, public MemoryViewHost, public AutosSource {
public:
    explicit Window(Session& session) : m_session(session) { }

    Frame* selectedFrame() override { return m_session.debugger().getFrame(call); }
    int selectedCall() override { return call; }
    void setCall(int selected) override
    {
        call = selected;
        for (VariableView* view : views)
            view->update(selectedFrame());
    }
    bool askNumber(const QString& title, const QString& label, unsigned, unsigned,
                   unsigned& number) override
    {
        asked << title + u": "_s + label + u" %1"_s.arg(number);
        number = answer;
        return answer != 0;
    }
    void locateMemory(unsigned address, unsigned size) override { located = {address, size}; }
    bool ask(const QString& question) override
    {
        asked << question;
        return answer != 0;
    }
    void displayError(const QString& text) override { errors << text; }
    QString currentLine() override { return line; }
    bool isKeyword(const QString& word) override { return isCKeyword(word); }

    /// A stop.
    void update()
    {
        for (VariableView* view : views)
            view->update(selectedFrame());
    }

    std::vector<VariableView*> views;
    int call = 0;
    unsigned answer = 0;
    QStringList asked, errors;
    std::pair<unsigned, unsigned> located{};
    QString line;

private:
    Session& m_session;
};

class Views : public testing::Test {
protected:
    explicit Views(std::vector<std::string> sources = {"tour.c", "other.c"})
        : session(sources, "-O0")
    {
    }

    /// "name=value" of the rows at the top, with "*" behind what is marked as changed.
    static std::string rows(const VariableViewItem& parent)
    {
        std::string text;
        for (const auto& item : parent.children())
            text += (text.empty() ? "" : " ") + item->name().toStdString() + "="
                + item->text(VariableViewItem::ValueColumn).toStdString()
                + (item->background(VariableViewItem::ValueColumn) != 0 ? "*" : "");
        return text;
    }
    static VariableViewItem* row(VariableView& view, const char* expression)
    {
        return view.root().find(QString::fromLatin1(expression));
    }
    std::string message(const std::function<void()>& action)
    {
        try {
            action();
        } catch (const ParserException& failure) {
            return failure.getCause().toStdString();
        } catch (const HException& failure) {
            return failure.message();
        }
        return "done";
    }

    Session session;
    Window window{session};
};

class ValueViews : public Views {
protected:
    ValueViews() : Views({"values.c"}) { }
};

TEST_F(Views, ChangesAreMarkedUpToTheTopAndThenCleared)
{
    WatchVariableView watches(session.debugger(), window);
    window.views = {&watches};
    VariableViewItem* const corner = watches.watch(u"corner"_s);
    VariableViewItem* const total = watches.watch(u"total"_s);
    session.startTo("factorial");
    window.update();
    EXPECT_TRUE(corner->children().empty()) << "closed, and nothing below is read";
    EXPECT_TRUE(watches.isExpandable(corner));
    EXPECT_FALSE(watches.isExpandable(total));
    watches.itemExpanded(corner);
    watches.setRadix(corner, DecimalDisplay);
    watches.setRadix(total, DecimalDisplay);
    EXPECT_EQ(rows(*corner), "x=3 y=-4");
    EXPECT_EQ(total->text(VariableViewItem::ValueColumn), u"0");

    session.breakAt("other");
    session.go();
    window.update();
    EXPECT_EQ(rows(*corner), "x=60* y=-4");
    EXPECT_EQ(corner->state(), State::Changed);
    EXPECT_NE(corner->background(VariableViewItem::ValueColumn), 0u);
    EXPECT_EQ(corner->children()[0]->previousValue().toStr(10), u"3");
    watches.refresh();
    EXPECT_EQ(corner->state(), State::Changed) << "no stop between";
    session.stepInstruction();
    window.update();
    EXPECT_EQ(rows(*corner), "x=60 y=-4");
    EXPECT_EQ(corner->state(), State::Unchanged);
    EXPECT_EQ(corner->background(VariableViewItem::ValueColumn), 0u);
}

TEST_F(Views, LocalsComeAndGoWithTheirScope)
{
    LocalsVariableView locals(session.debugger(), window);
    window.views = {&locals};
    session.startTo("twice");
    window.update();
    for (const char* name : {"x", "result"})
        ASSERT_NE(row(locals, name), nullptr) << name;
    EXPECT_EQ(row(locals, "i"), nullptr);
    locals.setRadix(row(locals, "x"), DecimalDisplay);
    EXPECT_EQ(row(locals, "x")->text(VariableViewItem::ValueColumn), u"24");
    window.setCall(1);
    EXPECT_EQ(row(locals, "x"), nullptr);
    ASSERT_NE(row(locals, "i"), nullptr);
    window.setCall(0);
    EXPECT_EQ(row(locals, "x")->radix(), DefaultDisplay) << "what is known of it went with it";
}

TEST_F(Views, WatchesAreReadInTheirPlace)
{
    WatchVariableView watches(session.debugger(), window);
    window.views = {&watches};
    const Path other = session.placeOf("inside other").first;
    VariableViewItem* const bad = watches.watch(u"total +"_s);
    VariableViewItem* const unknown = watches.watch(u"nothing"_s);
    VariableViewItem* const there = watches.watch(u"counter"_s, other, 6);
    VariableViewItem* const here = watches.watch(u"counter"_s);
    session.startTo("factorial");
    window.update();
    EXPECT_EQ(bad->state(), State::Message);
    EXPECT_FALSE(bad->text(VariableViewItem::ValueColumn).isEmpty());
    EXPECT_EQ(unknown->text(VariableViewItem::ValueColumn), u"nothing symbol not found");
    EXPECT_EQ(there->value().resolved().getInteger(), 100);
    EXPECT_EQ(here->value().resolved().getInteger(), 5);

    watches.linesInserted(other, 1, 2);
    EXPECT_EQ(there->line(), 8);
    watches.linesDeleted(other, 2, 1);
    EXPECT_EQ(there->line(), 7);
    watches.linesDeleted(Path(u"/elsewhere.c"_s), 1, 5);
    EXPECT_EQ(there->line(), 7);

    watches.select(here);
    watches.dataIncrement();
    EXPECT_EQ(session.value("counter"), "6");
    watches.dataNegate();
    EXPECT_EQ(session.value("counter"), "-6");
    watches.dataInvert();
    EXPECT_EQ(session.value("counter"), "5");
    watches.dataSetToZero();
    EXPECT_EQ(session.value("counter"), "0");
    EXPECT_EQ(here->state(), State::Changed);
    watches.setRadix(here, DecimalDisplay);
    watches.modify(here, u"12"_s);
    watches.modify(here, u"counter * 2 + total"_s);
    EXPECT_EQ(session.value("counter"), "24");
    EXPECT_EQ(message([&] { watches.modify(here, u"counter *"_s); }).empty(), false);
    EXPECT_EQ(session.value("counter"), "24");
    watches.locateMemory();
    EXPECT_EQ(window.located.second, 2u);
}

TEST_F(ValueViews, InterpretationsSurviveStopsAndSessions)
{
    WatchVariableView watches(session.debugger(), window);
    window.views = {&watches};
    VariableViewItem* const pointer = watches.watch(u"pointer"_s);
    VariableViewItem* const text = watches.watch(u"text"_s);
    VariableViewItem* const single = watches.watch(u"single"_s);
    VariableViewItem* const self = watches.watch(u"thing.self"_s);
    session.startTo("inner scope");
    window.update();
    EXPECT_EQ(single->text(VariableViewItem::ValueColumn), u"1.5") << "whatever the default form";
    EXPECT_EQ(text->text(VariableViewItem::ValueColumn), u"hello");
    window.answer = 2;
    watches.select(pointer);
    watches.showAsArray();
    EXPECT_EQ(window.asked, QStringList{u"Array display: Number of elements 10"_s});
    watches.setRadix(pointer, DecimalDisplay);
    EXPECT_EQ(rows(*pointer), "[0]=5 [1]=6");
    watches.itemExpanded(self);
    ASSERT_NE(self->find(u"(thing.self)->inner"_s), nullptr);
    EXPECT_TRUE(watches.isExpandable(self->find(u"(thing.self)->inner"_s)));
    session.breakAt("end");
    session.go();
    window.update();
    EXPECT_EQ(rows(*pointer), "[0]=55* [1]=6");
    EXPECT_EQ(pointer->state(), State::Changed);

    QDomDocument document;
    QDomElement stored = document.createElement(u"Session"_s);
    document.appendChild(stored);
    watches.saveSession(document, stored);
    QDomElement element = stored.firstChildElement(u"Watches"_s).firstChildElement();
    EXPECT_EQ(element.tagName(), u"Watchpoint");
    EXPECT_EQ(element.attribute(u"evalMode"_s), u"2");
    EXPECT_EQ(element.attribute(u"numelements"_s), u"2");
    WatchVariableView again(session.debugger(), window);
    again.loadSession(stored.firstChildElement(u"Watches"_s));
    again.update(window.selectedFrame());
    EXPECT_EQ(rows(*row(again, "pointer")), "[0]=55 [1]=6");
    EXPECT_EQ(again.root().children().size(), 4u);
}

TEST_F(ValueViews, LargeArraysAreOpenedWhenTheUserSaysHowMuch)
{
    WatchVariableView watches(session.debugger(), window);
    VariableViewItem* const memory = watches.watch(u"thing"_s);
    VariableViewItem* const grid = watches.watch(u"grid"_s);
    session.startTo("inner scope");
    watches.update(window.selectedFrame());
    watches.setRadix(grid, DecimalDisplay);
    watches.itemExpanded(grid);
    EXPECT_TRUE(window.asked.isEmpty());
    ASSERT_EQ(grid->children().size(), 2u);
    watches.itemExpanded(grid->children()[1].get());
    EXPECT_EQ(rows(*grid->children()[1]), "[0]=4 [1]=5 [2]=6");
    watches.itemExpanded(memory);
    EXPECT_EQ(memory->children().size(), 5u);
    watches.select(grid);
    watches.showValue();
    EXPECT_TRUE(grid->children().empty());
}

TEST_F(Views, AutosFollowTheLine)
{
    AutosVariableView autos(session.debugger(), window, window);
    const auto names = [&] {
        std::string text;
        for (const auto& item : autos.root().children())
            text += item->name().toStdString() + " ";
        return text;
    };
    session.startTo("factorial");
    window.line = u"    total = factorial(4) + squares[i] + corner.x; // counter"_s;
    autos.update(window.selectedFrame());
    for (const char* name : {"total", "corner.x", "squares[i]"})
        EXPECT_NE(row(autos, name), nullptr) << name << " in " << names();
    EXPECT_EQ(row(autos, "factorial"), nullptr) << "is called";
    EXPECT_EQ(row(autos, "counter"), nullptr) << "in a comment";
    window.line = u"    while (counter) return counter;"_s;
    autos.sameAutos();
    autos.update(window.selectedFrame());
    EXPECT_NE(row(autos, "counter"), nullptr);
    EXPECT_NE(row(autos, "total"), nullptr) << "no new stop";
    autos.update(window.selectedFrame());
    EXPECT_EQ(names(), "counter ");
}

TEST_F(ValueViews, TipsAreShort)
{
    session.startTo("inner scope");
    const auto tip = [&](const char* expression) {
        TextVariableView text;
        session.debugger().evaluateExpression({window.selectedFrame(), Path(), -1},
                                              QString::fromLatin1(expression),
                                              QString::fromLatin1(expression), &text);
        return text.text().toStdString();
    };
    EXPECT_EQ(tip("text"), "text = \"hello\"");
    EXPECT_EQ(tip("single"), "single = 1.5");
    EXPECT_EQ(tip("copy"), "copy = {name = \"two\", ratio = -2}");
    EXPECT_EQ(getFormattedValueString(ExpressionType(65ULL, 1, 0)).count(u"<tr>"), 6);
}

TEST_F(ValueViews, MemoryIsATable)
{
    session.startTo("inner scope");
    MemoryView memory(session.debugger(), window);
    const auto shown = [&] {
        std::string text;
        for (const MemoryView::Row& row : memory.rows()) {
            for (const MemoryView::Cell& cell : row.cells)
                text += "[" + cell.text.toStdString() + (cell.style != 0 ? "*]" : "]");
            text += row.ascii.toStdString() + "\n";
        }
        return text;
    };
    memory.setAddressText(u"grid"_s);
    memory.setSizeText(u"sizeof(grid)"_s);
    memory.setDataSize(2);
    memory.setColumns(3);
    memory.setRadix(MemoryView::UnsignedDecimal);
    memory.evaluate();
    EXPECT_EQ(memory.formatDisplay().join(u' '), u"Address +0 +2 +4");
    EXPECT_EQ(shown(), "[    1][    2][    3]\n[    4][    5][    6]\n");
    session.breakAt("changed");
    session.go();
    memory.update();
    EXPECT_EQ(shown(), "[ 1001*][    2][    3]\n[    4][    5][    6]\n");
    memory.setRadix(MemoryView::SignedDecimal);
    EXPECT_TRUE(memory.onItemRenamed(0, 1, u"-2"_s));
    EXPECT_EQ(session.value("grid[0][1]"), "-2");
    EXPECT_EQ(shown(), "[  1001][    -2*][     3]\n[     4][     5][     6]\n");
    memory.setRadix(MemoryView::Hexadecimal);
    EXPECT_FALSE(memory.onItemRenamed(0, 1, u"12345"_s));
    EXPECT_FALSE(memory.onItemRenamed(0, 1, u"xyz"_s));
    EXPECT_FALSE(memory.onItemRenamed(7, 0, u"0"_s));
    EXPECT_EQ(shown(), "[03e9][fffe][0003]\n[0004][0005][0006]\n");
    memory.buttonSmallJumpDownPressed();
    EXPECT_EQ(shown().substr(0, 18), "[0004][0005][0006]");
    memory.buttonSmallJumpUpPressed();

    memory.setRadix(MemoryView::Binary);
    memory.setDataSize(1);
    memory.setAddressText(u"thing.inner[0].name"_s);
    memory.setSizeText(u"4"_s);
    memory.evaluate();
    EXPECT_EQ(shown(), "[01101111][01101110][01100101]one\n[00000000].\n");

    memory.setAddressText(u"0xF0000"_s);
    memory.evaluate();
    memory.setAddressText(u"grid +"_s);
    memory.evaluate();
    EXPECT_EQ(window.errors.first(), u"Address not in a valid memory range");
    EXPECT_EQ(window.errors.size(), 2);
    memory.setAddressText(u"0x200"_s);
    memory.setSizeText(u"0x1001"_s);
    memory.evaluate();
    EXPECT_EQ(window.asked,
              QStringList{u"Size to display is big - are you sure you want to do this?"_s});
    EXPECT_EQ(memory.size(), 4u) << "refused";
}

TEST_F(ValueViews, MemoryGoesToFilesAndBack)
{
    session.startTo("inner scope");
    MemoryView memory(session.debugger(), window);
    memory.setAddressText(u"grid"_s);
    memory.setSizeText(u"12"_s);
    memory.evaluate();
    const TestFolder folder;
    const auto path = [&](const char* name) { return QString::fromStdString(folder / name); };
    memory.saveToBinary(path("grid.bin"));
    memory.saveToIntelHex(path("grid.hex"));
    memory.saveToSRecord(path("grid.s19"));
    memory.saveToTIHex(path("grid.txt"));
    memory.saveToHex(path("grid.lst"));
    const std::pair<void (MemoryView::*)(const QString&), const char*> loads[] = {
        {&MemoryView::loadFromBinary, "grid.bin"},
        {&MemoryView::loadFromIntelHex, "grid.hex"},
        {&MemoryView::loadFromSRecord, "grid.s19"},
        {&MemoryView::loadFromTIHex, "grid.txt"},
        {&MemoryView::loadFromHex, "grid.lst"}};
    for (const auto& [load, name] : loads) {
        session.value("grid[1][1] = 77");
        (memory.*load)(path(name));
        EXPECT_EQ(session.value("grid[1][1]"), "5") << name;
    }
    folder.write("far.txt", "@F0000\n01 02\n@0200\n03\nq\n");
    const std::string before = session.value("*(unsigned char *)0x200");
    EXPECT_EQ(message([&] { memory.loadFromTIHex(path("far.txt")); }),
              "Address not in a valid memory range");
    EXPECT_EQ(session.value("*(unsigned char *)0x200"), before) << "nothing half done";
    EXPECT_NE(message([&] { memory.loadFromSRecord(path("none")); }), "done");
}

TEST_F(ValueViews, RegistersAreReadByGroups)
{
    RegistersView registers(session.debugger(), window);
    window.views = {&registers};
    registers.addRegisterGroup(u"Watchdog"_s,
                               {{u"WDTCTL"_s, 0x120, 2, {{u"IS"_s, 0, 2}, {u"HOLD"_s, 7, 1}}},
                                {u"TOOBIG"_s, 0x122, 9, {}}});
    session.startTo("inner scope");
    window.update();
    ASSERT_EQ(registers.root().children().size(), 2u);
    VariableViewItem* const cpu = registers.root().children()[0].get();
    VariableViewItem* const watchdog = registers.root().children()[1].get();
    EXPECT_EQ(cpu->children().size(), 16u);
    EXPECT_EQ(cpu->children()[0]->name(), u"PC");
    EXPECT_TRUE(watchdog->children().empty()) << "closed, and not read";
    registers.itemExpanded(watchdog);
    ASSERT_EQ(watchdog->children().size(), 1u);
    VariableViewItem* const control = watchdog->children()[0].get();
    registers.itemExpanded(control);
    registers.setRadix(control, DecimalDisplay);
    registers.modify(control, u"3"_s);
    registers.modify(control->children()[1].get(), u"1"_s);
    registers.modify(control->children()[0].get(), u"1"_s);
    EXPECT_EQ(rows(*control), "IS=1* HOLD=1");
    EXPECT_EQ(session.value("*(unsigned short *)0x120"), "129");
    registers.setRadix(cpu, DecimalDisplay);
    registers.modify(cpu->children()[5].get(), u"1234"_s);
    EXPECT_EQ(session.value("@R5"), "1234");
    session.stepInstruction();
    window.update();
    EXPECT_EQ(cpu->children()[0]->state(), State::Changed);
    EXPECT_EQ(cpu->state(), State::Changed);
}

} // namespace
