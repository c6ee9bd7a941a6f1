#pragma once

#include "debugger/breakpoints/BreakpointDebugger.h"

#include <memory>
#include <vector>

class BreakpointGroup;
class BreakpointList;
class QDomDocument;
class QDomElement;

/// A breakpoint of the user's list, which outlives debug sessions.
class BreakpointListItem {
public:
    enum Type { Breakpoint = 0, Exception = 1 };

    /// What the user chose, and what a session file keeps besides the state.
    struct Settings {
        int ignoreCount = 0;
        Path fileName; ///< of a breakpoint in source code
        int line = -1;
        bool useHardware = false;
        bool functionBreakpoint = false; ///< made by naming a function
        QString expression;              ///< of all other kinds; the name of an exception
        QString action;
        QString trigger;            ///< empty for the default
        QString hardwareBreakpoint; ///< an index; empty for any
        Type type = Breakpoint;
    };

    BreakpointListItem(BreakpointGroup* group, Settings settings)
        : m_group(group),
          m_settings(std::move(settings))
    {
    }

    const Settings& settings() const { return m_settings; }
    BreakpointGroup* group() const { return m_group; }
    BreakpointState state() const { return m_state; }
    Type getType() const { return m_settings.type; }
    void setType(Type type) { m_settings.type = type; }
    /// Set while it is placed in a session.
    DebuggerBreakpoint* breakpoint() const { return m_breakpoint; }
    /// It caused the current stop.
    bool isMatched() const { return m_matched; }
    bool isPermanent() const { return m_permanent; }
    /// Why it couldn't be placed.
    const QString& info() const { return m_info; }
    /// The title of the breakpoint that arms this one; empty if it is armed at once.
    const QString& chainedFrom() const { return m_chainedFrom; }

    /// The expression; else "FILE, line N"; else "disassembly".
    QString title() const;

private:
    friend class BreakpointList;

    BreakpointGroup* m_group;
    Settings m_settings;
    BreakpointState m_state = BreakpointState::Enabled;
    DebuggerBreakpoint* m_breakpoint = nullptr;
    bool m_matched = false;
    bool m_permanent = false;
    QString m_info;
    QString m_chainedFrom;
};

/// A named group of breakpoints, or the exceptions of one class.
class BreakpointGroup {
public:
    static constexpr int NoClass = -1;

    BreakpointGroup(QString name, int exceptionClass)
        : m_name(std::move(name)),
          m_exceptionClass(exceptionClass)
    {
    }

    const QString& name() const { return m_name; }
    bool isExceptionGroup() const { return m_exceptionClass != NoClass; }
    int classNumber() const { return m_exceptionClass; }
    /// A target without these exceptions hides them.
    bool isVisible() const { return m_visible; }
    const std::vector<std::unique_ptr<BreakpointListItem>>& items() const { return m_items; }

private:
    friend class BreakpointList;

    QString m_name;
    int m_exceptionClass;
    bool m_visible = true;
    std::vector<std::unique_ptr<BreakpointListItem>> m_items;
};

/// What shows the list, and knows how the session stands.
class BreakpointListView {
public:
    virtual ~BreakpointListView() = default;

    /// Whether a session runs or is stopped.
    virtual bool isDebugging() const = 0;
    virtual Frame* selectedFrame() const { return nullptr; }
    /// Comes ahead of a change of the state at a line.
    virtual void sourceBreakpointStateChanged(const Path&, int /*line*/) { }
    /// The list has changed; calls and editors show breakpoints too.
    virtual void refresh() { }
    /// The item is to be selected and made visible.
    virtual void select(BreakpointListItem*) { }
};

/// The user's breakpoints, in groups ordered by name. While a session lasts, those that are enabled
/// are placed on the target.
class BreakpointList {
public:
    using Item = BreakpointListItem;
    using Group = BreakpointGroup;

    BreakpointList(BreakpointDebugger& debugger, BreakpointListView& view)
        : m_debugger(debugger),
          m_view(view)
    {
    }
    BreakpointList(const BreakpointList&) = delete;
    BreakpointList& operator=(const BreakpointList&) = delete;

    const std::vector<std::unique_ptr<Group>>& groups() const { return m_groups; }
    /// The group that new breakpoints go to: the default one, "Breakpoints", if none was chosen.
    Group* activeGroup();
    void setActiveGroup(Group* group) { m_activeGroup = group; }
    /// The group of that name, made if there is none.
    Group* newBreakpointGroup(const QString& name);
    Group* findGroup(const QString& name) const;
    /// By title.
    Item* find(const QString& title) const;
    /// A line of -1 stands for any.
    Item* find(const Path& file, int line) const;

    /// Places all that are wanted: those with a comparator of their own first, then those that need
    /// one, then the others. Not zero if any is enabled.
    int check();
    /// Marks what caused the current stop.
    void update();
    /// At the end of a session: nothing is placed any more.
    void clear();
    /// Makes groups of the exceptions that the target reports.
    void updateExceptions();

    /// None if there is no breakpoint there.
    BreakpointState getState(const Path& file, int line) const;
    BreakpointState getState(const Path& file, int line, const QString& title) const;
    /// Where it is placed, or why it isn't. False if there is none there.
    bool getInfo(const Path& file, int line, QString& info) const;
    void selectBreakpoint(const Path& file, int line);

    void toggleBreakpoint(const Path& file, int line);
    void toggleBreakpointEnable(Item* item);
    void setBreakpoint(const Path& file, int line, BreakpointState state);
    void setBreakpoint(const Path& file, int line, const QString& text, BreakpointState state);
    /// Makes one at an expression.
    Item* setBreakpoint(const Path& file, int line, const QString& text);
    /// Makes one in the active group, as a dialog has put it together.
    Item* addBreakpoint(Item::Settings settings);
    void setState(Item* item, BreakpointState state);
    /// Stores the count; a placed breakpoint is placed anew with it.
    void setIgnoreCount(Item* item, int count);
    /// The breakpoint is armed by the arrival at the one of that title; by none with an empty
    /// title. Not kept in sessions.
    void setChainFrom(Item* item, const QString& title);
    void resetIgnoreCount(Item* item) { setIgnoreCount(item, item->m_settings.ignoreCount); }

    void enableAllBreakpoints() { setAllBreakpointState(BreakpointState::Enabled); }
    void disableAllBreakpoints() { setAllBreakpointState(BreakpointState::Disabled); }
    void deleteAllBreakpoints() { setAllBreakpointState(BreakpointState::None); }
    /// Of a group by its name; without one, of the active group.
    void enableBreakpointGroup(const QString& name = QString());
    void disableBreakpointGroup(const QString& name = QString());
    /// With the group itself.
    void deleteBreakpointGroup(const QString& name = QString());

    /// Lines were inserted at `line`, or deleted from it on if `delta` is below 1.
    void editorLinesChanged(const Path& file, int line, int delta);

    void saveSession(QDomDocument& document, QDomElement& element) const;
    void loadSession(const QDomElement& element);

private:
    std::vector<Item*> allItems() const;
    Item* add(Group* group, Item::Settings settings);
    void remove(Item* item);
    Group* addGroup(const QString& name, int exceptionClass);
    DebuggerBreakpoint* place(const Item& item);
    void disable(Item* item);
    void updateChainFrom(Item* item);
    void releaseChainsFrom(const Item& from);
    void enable(Item* item, BreakpointState state);
    void setAllBreakpointState(BreakpointState state);
    void setBreakpointGroupState(const QString& name, BreakpointState state);
    void setStates(const std::vector<Item*>& items, BreakpointState state);
    void setBreakpoint(Item* existing, const Path& file, int line, const QString& text,
                       BreakpointState state);
    void linesInserted(const Path& file, int line, int count);
    void linesDeleted(const Path& file, int line, int count);
    void loadItem(const QDomElement& element);

    BreakpointDebugger& m_debugger;
    BreakpointListView& m_view;
    std::vector<std::unique_ptr<Group>> m_groups;
    Group* m_activeGroup = nullptr;
};
