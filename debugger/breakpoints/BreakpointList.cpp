#include "debugger/breakpoints/BreakpointList.h"

#include <algorithm>

namespace {

const QString& defaultGroupName()
{
    static const QString name = QStringLiteral("Breakpoints");
    return name;
}

/// Which breakpoints a pass over the list places: comparators are scarce, and some are asked for by
/// their number.
using Chosen = bool (*)(const BreakpointListItem::Settings&);
constexpr Chosen passes[] = {
    [](const BreakpointListItem::Settings& it) {
        return it.useHardware && !it.hardwareBreakpoint.isEmpty();
    },
    [](const BreakpointListItem::Settings& it) {
        return it.useHardware && it.hardwareBreakpoint.isEmpty();
    },
    [](const BreakpointListItem::Settings& it) { return !it.useHardware; },
};

} // namespace

QString BreakpointListItem::title() const
{
    if (!m_settings.expression.isEmpty())
        return m_settings.expression;
    if (m_settings.fileName.isEmpty())
        return QStringLiteral("disassembly");
    return m_settings.fileName.fileName() + QStringLiteral(", line ")
        + QString::number(m_settings.line);
}

std::vector<BreakpointListItem*> BreakpointList::allItems() const
{
    std::vector<Item*> items;
    for (const auto& group : m_groups)
        for (const auto& item : group->m_items)
            items.push_back(item.get());
    return items;
}

BreakpointGroup* BreakpointList::activeGroup()
{
    if (m_activeGroup == nullptr)
        m_activeGroup = newBreakpointGroup(defaultGroupName());
    return m_activeGroup;
}

BreakpointGroup* BreakpointList::newBreakpointGroup(const QString& name)
{
    Group* group = findGroup(name);
    return group != nullptr ? group : addGroup(name, Group::NoClass);
}

BreakpointGroup* BreakpointList::addGroup(const QString& name, int exceptionClass)
{
    const auto behind = std::find_if(m_groups.begin(), m_groups.end(),
                                     [&](const auto& group) { return name < group->name(); });
    return m_groups.insert(behind, std::make_unique<Group>(name, exceptionClass))->get();
}

BreakpointGroup* BreakpointList::findGroup(const QString& name) const
{
    for (const auto& group : m_groups)
        if (group->name() == name)
            return group.get();
    return nullptr;
}

BreakpointListItem* BreakpointList::find(const QString& title) const
{
    for (Item* item : allItems())
        if (item->title() == title)
            return item;
    return nullptr;
}

BreakpointListItem* BreakpointList::find(const Path& file, int line) const
{
    for (Item* item : allItems())
        if (!item->m_settings.fileName.isEmpty() && item->m_settings.fileName == file
            && (line == -1 || item->m_settings.line == line))
            return item;
    return nullptr;
}

BreakpointListItem* BreakpointList::add(Group* group, Item::Settings settings)
{
    group->m_items.push_back(std::make_unique<Item>(group, std::move(settings)));
    return group->m_items.back().get();
}

void BreakpointList::remove(Item* item)
{
    auto& items = item->m_group->m_items;
    std::erase_if(items, [=](const auto& it) { return it.get() == item; });
}

int BreakpointList::check()
{
    for (const auto& group : m_groups)
        if (group->isExceptionGroup())
            group->m_visible =
                m_debugger.targetHasExceptionClass(static_cast<unsigned>(group->classNumber()));
    int enabled = 0;
    for (const Chosen chosen : passes) {
        for (Item* item : allItems()) {
            if (chosen(item->m_settings)) {
                m_view.sourceBreakpointStateChanged(item->m_settings.fileName,
                                                    item->m_settings.line);
                setState(item, item->m_state);
            }
            enabled +=
                item->getType() == Item::Breakpoint && item->m_state == BreakpointState::Enabled;
        }
    }
    for (Item* item : allItems())
        updateChainFrom(item);
    m_view.refresh();
    return enabled;
}

/// A breakpoint whose arming one isn't placed is armed at once.
void BreakpointList::updateChainFrom(Item* item)
{
    if (item->m_breakpoint == nullptr || item->m_chainedFrom.isEmpty())
        return;
    const Item* from = find(item->m_chainedFrom);
    try {
        m_debugger.chainFrom(item->m_breakpoint,
                             from != nullptr && from != item ? from->m_breakpoint : nullptr);
    } catch (const DebuggerBreakpointFailure& failure) {
        disable(item);
        item->m_state = BreakpointState::Invalid;
        item->m_info = failure.text();
    }
}

void BreakpointList::releaseChainsFrom(const Item& from)
{
    for (const Item* item : allItems())
        if (item->m_breakpoint != nullptr && item != &from && item->m_chainedFrom == from.title())
            m_debugger.chainFrom(item->m_breakpoint, nullptr);
}

void BreakpointList::setChainFrom(Item* item, const QString& title)
{
    const bool wasChained = !item->m_chainedFrom.isEmpty();
    item->m_chainedFrom = title;
    if (item->m_breakpoint != nullptr && wasChained && title.isEmpty())
        m_debugger.chainFrom(item->m_breakpoint, nullptr);
    check();
}

DebuggerBreakpoint* BreakpointList::place(const Item& item)
{
    const Item::Settings& it = item.m_settings;
    if (!it.expression.isEmpty())
        return m_debugger.setBreakpoint({m_view.selectedFrame(), it.fileName, it.line},
                                        it.expression, it.trigger, it.ignoreCount, it.useHardware,
                                        false, it.action, it.hardwareBreakpoint);
    if (it.fileName.isEmpty())
        return nullptr;
    return m_debugger.setBreakpoint(QString(), it.fileName, it.line, it.ignoreCount, it.useHardware,
                                    false, it.action, it.hardwareBreakpoint);
}

void BreakpointList::disable(Item* item)
{
    if (item->m_breakpoint != nullptr) {
        releaseChainsFrom(*item);
        m_debugger.clearBreakpoint(item->m_breakpoint);
    } else if (item->getType() == Item::Exception) {
        m_debugger.setExceptionEnabled(item->m_settings.expression, false);
    }
    item->m_breakpoint = nullptr;
}

void BreakpointList::enable(Item* item, BreakpointState state)
{
    item->m_state = state;
    if (item->getType() == Item::Exception) {
        m_debugger.setExceptionEnabled(item->m_settings.expression, true);
        return;
    }
    if (item->m_breakpoint == nullptr) {
        item->m_info.clear();
        try {
            item->m_breakpoint = place(*item);
        } catch (const DebuggerBreakpointFailure& failure) {
            item->m_info = failure.text();
        }
    }
    item->m_state =
        item->m_breakpoint != nullptr ? BreakpointState::Enabled : BreakpointState::Invalid;
    if (item->m_breakpoint != nullptr)
        item->m_permanent = item->m_breakpoint->isPermanent();
}

void BreakpointList::setState(Item* item, BreakpointState state)
{
    const bool isDebugging = m_view.isDebugging();
    if (state == BreakpointState::None) {
        if (isDebugging && item->getType() == Item::Exception)
            return;
        if (isDebugging)
            disable(item);
        remove(item);
        return;
    }
    item->m_state = state;
    if (!isDebugging)
        return;
    if (state == BreakpointState::Disabled)
        disable(item);
    else if (state == BreakpointState::Enabled || state == BreakpointState::Invalid)
        enable(item, state);
}

void BreakpointList::setIgnoreCount(Item* item, int count)
{
    item->m_settings.ignoreCount = count;
    if (item->m_breakpoint != nullptr) {
        setState(item, BreakpointState::Disabled);
        setState(item, BreakpointState::Enabled);
    }
    m_view.refresh();
}

void BreakpointList::update()
{
    const std::vector<Item*> items = allItems();
    for (Item* item : items)
        item->m_matched = false;
    if (!m_view.isDebugging())
        return;
    const auto matched = m_debugger.lastMatchedBreakpoints();
    const QString exception = matched.empty() ? m_debugger.lastMatchedException() : QString();
    const auto found = std::find_if(items.begin(), items.end(), [&](const Item* item) {
        if (!matched.empty())
            return item->m_breakpoint != nullptr && item->m_breakpoint == *matched.begin();
        return item->getType() == Item::Exception && !exception.isEmpty()
            && item->m_settings.expression == exception;
    });
    if (found == items.end())
        return;
    (*found)->m_matched = true;
    m_view.select(*found);
}

void BreakpointList::clear()
{
    for (Item* item : allItems()) {
        item->m_breakpoint = nullptr;
        item->m_matched = false;
    }
}

void BreakpointList::updateExceptions()
{
    const QStringList classes = m_debugger.getExceptionClasses();
    std::erase_if(m_groups, [&](const auto& group) {
        const bool isGone = group->isExceptionGroup() && !classes.contains(group->name());
        if (isGone && m_activeGroup == group.get())
            m_activeGroup = nullptr;
        return isGone;
    });
    for (qsizetype i = 0; i < classes.size(); ++i) {
        Group* group = findGroup(classes[i]);
        if (group == nullptr)
            group = addGroup(classes[i], static_cast<int>(i));
        if (!group->isExceptionGroup() || !group->m_items.empty())
            continue;
        for (const QString& name : m_debugger.getExceptionTypes(static_cast<unsigned>(i))) {
            Item::Settings settings;
            settings.type = Item::Exception;
            settings.expression = name;
            Item* item = add(group, settings);
            if (m_view.isDebugging())
                setState(item, item->m_state);
        }
    }
}

BreakpointState BreakpointList::getState(const Path& file, int line) const
{
    const Item* item = find(file, line);
    return item != nullptr ? item->m_state : BreakpointState::None;
}

BreakpointState BreakpointList::getState(const Path&, int, const QString& title) const
{
    const Item* item = find(title);
    return item != nullptr ? item->m_state : BreakpointState::None;
}

bool BreakpointList::getInfo(const Path& file, int line, QString& info) const
{
    const Item* item = find(file, line);
    if (item == nullptr)
        return false;
    info = item->m_breakpoint != nullptr ? item->m_breakpoint->getDescription() : item->m_info;
    return true;
}

void BreakpointList::selectBreakpoint(const Path& file, int line)
{
    if (Item* item = find(file, line))
        m_view.select(item);
}

void BreakpointList::toggleBreakpoint(const Path& file, int line)
{
    if (Item* item = find(file, line)) {
        m_view.sourceBreakpointStateChanged(file, line);
        setState(item, BreakpointState::None);
    } else {
        setBreakpoint(file, line, BreakpointState::Enabled);
    }
    m_view.refresh();
}

void BreakpointList::toggleBreakpointEnable(Item* item)
{
    const bool isEnabled = item->m_state == BreakpointState::Enabled;
    m_view.sourceBreakpointStateChanged(item->m_settings.fileName, item->m_settings.line);
    setState(item, isEnabled ? BreakpointState::Disabled : BreakpointState::Enabled);
    m_view.refresh();
}

void BreakpointList::setBreakpoint(const Path& file, int line, BreakpointState state)
{
    setBreakpoint(find(file, line), file, line, QString(), state);
}

void BreakpointList::setBreakpoint(const Path& file, int line, const QString& text,
                                   BreakpointState state)
{
    setBreakpoint(find(text), file, line, text, state);
}

void BreakpointList::setBreakpoint(Item* existing, const Path& file, int line, const QString& text,
                                   BreakpointState state)
{
    if (existing != nullptr) {
        m_view.sourceBreakpointStateChanged(existing->m_settings.fileName,
                                            existing->m_settings.line);
        setState(existing, state);
    } else if (state == BreakpointState::Enabled) {
        Item::Settings settings;
        settings.fileName = file;
        settings.line = line;
        settings.expression = text;
        add(activeGroup(), settings);
    } else {
        return;
    }
    check();
}

BreakpointListItem* BreakpointList::setBreakpoint(const Path& file, int line, const QString& text)
{
    Item::Settings settings;
    settings.fileName = file;
    settings.line = line;
    settings.expression = text;
    return addBreakpoint(settings);
}

BreakpointListItem* BreakpointList::addBreakpoint(Item::Settings settings)
{
    Item* item = add(activeGroup(), std::move(settings));
    check();
    m_view.select(item);
    return item;
}

void BreakpointList::setStates(const std::vector<Item*>& items, BreakpointState state)
{
    for (Item* item : items) {
        m_view.sourceBreakpointStateChanged(item->m_settings.fileName, item->m_settings.line);
        setState(item, state);
    }
    m_view.refresh();
}

void BreakpointList::setAllBreakpointState(BreakpointState state)
{
    std::vector<Item*> items = allItems();
    // Exceptions are enabled and disabled one by one or by their group.
    std::erase_if(items, [](const Item* item) { return item->getType() == Item::Exception; });
    setStates(items, state);
}

void BreakpointList::setBreakpointGroupState(const QString& name, BreakpointState state)
{
    const Group* group = name.isEmpty() ? m_activeGroup : findGroup(name);
    if (group == nullptr)
        return;
    std::vector<Item*> items;
    for (const auto& item : group->m_items)
        items.push_back(item.get());
    setStates(items, state);
}

void BreakpointList::enableBreakpointGroup(const QString& name)
{
    setBreakpointGroupState(name, BreakpointState::Enabled);
}

void BreakpointList::disableBreakpointGroup(const QString& name)
{
    setBreakpointGroupState(name, BreakpointState::Disabled);
}

void BreakpointList::deleteBreakpointGroup(const QString& name)
{
    Group* group = name.isEmpty() ? m_activeGroup : findGroup(name);
    if (group == nullptr || group->isExceptionGroup())
        return;
    setBreakpointGroupState(group->name(), BreakpointState::None);
    if (m_activeGroup == group)
        m_activeGroup = nullptr;
    std::erase_if(m_groups, [=](const auto& it) { return it.get() == group; });
    m_view.refresh();
}

void BreakpointList::editorLinesChanged(const Path& file, int line, int delta)
{
    if (delta < 1)
        linesDeleted(file, line, -delta);
    else
        linesInserted(file, line, delta);
}

void BreakpointList::linesInserted(const Path& file, int line, int count)
{
    for (Item* item : allItems())
        if (item->m_settings.fileName == file && item->m_settings.line >= line)
            item->m_settings.line += count;
}

void BreakpointList::linesDeleted(const Path& file, int line, int count)
{
    std::vector<Item*> gone;
    for (Item* item : allItems()) {
        if (item->m_settings.fileName != file || item->m_settings.line < line)
            continue;
        if (item->m_settings.line < line + count)
            gone.push_back(item);
        else
            item->m_settings.line -= count;
    }
    for (Item* item : gone)
        setState(item, BreakpointState::None);
}
