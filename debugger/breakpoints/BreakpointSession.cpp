// The list of breakpoints in session files.

#include "debugger/breakpoints/BreakpointList.h"

#include <QDomDocument>

using namespace Qt::Literals::StringLiterals;

namespace {

QString boolean(bool value) { return value ? u"true"_s : u"false"_s; }

QString typeName(BreakpointListItem::Type type)
{
    return type == BreakpointListItem::Exception ? u"Exception"_s : u"Breakpoint"_s;
}

/// An attribute for which the dialogs have a word that means none.
QString unless(const QDomElement& element, const QString& attribute, const QString& none)
{
    const QString text = element.attribute(attribute);
    return text == none ? QString() : text;
}

/// Exceptions that a session of another target may hold.
bool isForeignGroup(const QString& name)
{
    return name == u"ARM Exceptions"_s || name == u"Cortex-M3 Exceptions"_s;
}

BreakpointState stateOf(const QDomElement& element)
{
    const int state = element.attribute(u"state"_s).toInt();
    const bool isState = state >= static_cast<int>(BreakpointState::None)
        && state <= static_cast<int>(BreakpointState::Invalid);
    return isState ? static_cast<BreakpointState>(state) : BreakpointState::Enabled;
}

BreakpointListItem::Settings settingsOf(const QDomElement& element)
{
    BreakpointListItem::Settings it;
    it.ignoreCount = element.attribute(u"counter"_s).toInt();
    it.type = element.attribute(u"type"_s) == typeName(BreakpointListItem::Exception)
        ? BreakpointListItem::Exception
        : BreakpointListItem::Breakpoint;
    it.expression = element.attribute(u"expression"_s);
    const QString file = element.attribute(u"filename"_s);
    if (!file.isEmpty())
        it.fileName = Path(file);
    it.line = element.attribute(u"line"_s, u"-1"_s).toInt();
    it.useHardware = element.attribute(u"useHWbreakpoint"_s) == u"true"_s;
    it.hardwareBreakpoint = unless(element, u"hardwareBreakpoint"_s, u"Any"_s);
    it.functionBreakpoint = element.attribute(u"isFunctionBreakpoint"_s) == u"true"_s;
    it.trigger = unless(element, u"trigger"_s, u"Default"_s);
    it.action = element.attribute(u"action"_s);
    return it;
}

} // namespace

void BreakpointList::saveSession(QDomDocument& document, QDomElement& element) const
{
    for (const Item* item : allItems()) {
        const Item::Settings& it = item->m_settings;
        QDomElement saved = document.createElement(u"BreakpointListItem"_s);
        saved.setAttribute(u"counter"_s, it.ignoreCount);
        saved.setAttribute(u"group"_s, item->m_group->name());
        saved.setAttribute(u"type"_s, typeName(it.type));
        saved.setAttribute(u"state"_s, static_cast<int>(item->m_state));
        saved.setAttribute(u"expression"_s, it.expression);
        saved.setAttribute(u"filename"_s, it.fileName.osPath());
        saved.setAttribute(u"line"_s, it.line);
        saved.setAttribute(u"useHWbreakpoint"_s, boolean(it.useHardware));
        saved.setAttribute(u"hardwareBreakpoint"_s, it.hardwareBreakpoint);
        saved.setAttribute(u"isFunctionBreakpoint"_s, boolean(it.functionBreakpoint));
        saved.setAttribute(u"trigger"_s, it.trigger);
        saved.setAttribute(u"action"_s, it.action);
        element.appendChild(saved);
    }
}

void BreakpointList::loadSession(const QDomElement& element)
{
    for (QDomElement it = element.firstChildElement(); !it.isNull(); it = it.nextSiblingElement())
        loadItem(it);
    m_activeGroup = nullptr;
    activeGroup();
}

void BreakpointList::loadItem(const QDomElement& element)
{
    const BreakpointState state = stateOf(element);
    const QString groupName = element.attribute(u"group"_s);
    if (state == BreakpointState::None || isForeignGroup(groupName))
        return;
    Group* group = newBreakpointGroup(groupName);
    const Item::Settings settings = settingsOf(element);
    if (!group->isExceptionGroup()) {
        setState(add(group, settings), state);
        return;
    }
    for (const auto& item : group->m_items)
        if (item->m_settings.expression == settings.expression)
            setState(item.get(), state);
}
