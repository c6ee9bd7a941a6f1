#include "debugger/views/VariableView.h"

#include "debugger/expressions/ParserException.h"
#include "debugger/interface/SymbolicDebuggerInterface.h"
#include "debugger/views/TypedValue.h"
#include "debugger/views/ViewSettings.h"

#include <algorithm>
#include <limits>

using namespace Qt::Literals::StringLiterals;

VariableView::VariableView(SymbolicDebuggerInterface& debugger, VariableViewHost& host)
    : m_debugger(debugger),
      m_host(host)
{
    beginUpdate();
}

VariableView::~VariableView() = default;

// Updates

void VariableView::refresh()
{
    m_sameStop = true;
    try {
        update(m_host.selectedFrame());
    } catch (...) {
        m_sameStop = false;
        throw;
    }
    m_sameStop = false;
}

void VariableView::reset()
{
    beginUpdate();
    removeRows(&m_root, 0, m_root.children().size());
    m_displayed.clear();
    triggerUpdate();
}

void VariableView::beginUpdate() { beginUpdate(&m_root); }

void VariableView::beginUpdate(VariableViewItem* parent)
{
    m_open.assign(1, {parent});
    m_target = nullptr;
}

void VariableView::beginUpdateOf(VariableViewItem* item)
{
    beginUpdate();
    m_target = item;
}

void VariableView::triggerUpdate()
{
    if (m_unsorted && m_order != Reported)
        sort();
    m_unsorted = false;
    if (m_listener)
        m_listener->valuesChanged();
}

void VariableView::cleanup() { cleanup(m_root); }

/// The rows below go first, then runs of rows that went away, from the last one on.
void VariableView::cleanup(VariableViewItem& parent)
{
    for (const auto& child : parent.children())
        cleanup(*child);
    const auto isGone = [&](std::size_t row) {
        return parent.children()[row]->state() == VariableViewItem::Invalid;
    };
    for (std::size_t last = parent.children().size(); last > 0;) {
        if (!isGone(last - 1)) {
            --last;
            continue;
        }
        std::size_t first = last - 1;
        while (first > 0 && isGone(first - 1))
            --first;
        removeRows(&parent, first, last);
        last = first;
    }
}

void VariableView::newGeneration()
{
    for (const auto& item : m_root.children())
        ++item->m_generation;
}

void VariableView::trimGeneration(int generation)
{
    for (const auto& item : m_root.children())
        if (item->generation() >= generation)
            item->invalidate();
}

// Rows

VariableViewItem* VariableView::insertRow(VariableViewItem* parent, std::size_t at,
                                          const QString& name, const QString& expression)
{
    auto made = std::make_unique<VariableViewItem>(name, expression);
    VariableViewItem* const item = made.get();
    const DisplayedInfo* const known = findDisplayed(expression);
    item->m_radix = known && known->radix != DefaultDisplay ? known->radix : parent->radix();
    addDisplayed(expression, NotKnown).radix = item->m_radix;
    if (m_listener)
        m_listener->rowsToBeInserted(parentForListener(parent), int(at), int(at));
    parent->insert(at, std::move(made));
    if (m_listener)
        m_listener->rowsInserted();
    m_unsorted = m_unsorted || parent == &m_root;
    return item;
}

VariableViewItem* VariableView::addRow(VariableViewItem* parent, const QString& name,
                                       const QString& expression)
{
    return insertRow(parent, parent->children().size(), name, expression);
}

void VariableView::removeRows(VariableViewItem* parent, std::size_t first, std::size_t last)
{
    if (first == last)
        return;
    for (std::size_t i = first; i < last; ++i)
        removeDisplayed(*parent->children()[i]);
    if (m_listener)
        m_listener->rowsToBeRemoved(parentForListener(parent), int(first), int(last) - 1);
    parent->erase(first, last);
    if (m_listener)
        m_listener->rowsRemoved();
}

VariableViewItem* VariableView::add(const QString& name, const QString& expression,
                                    const ExpressionType& value, const QString& type,
                                    MarkerType* marker, unsigned size)
{
    Level& level = m_open.back();
    VariableViewItem* item = std::exchange(m_target, nullptr);
    if (!item)
        item = level.item->find(expression);
    if (!item)
        item = insertRow(level.item, std::min(level.next, level.item->children().size()), name,
                         expression);
    level.next = static_cast<std::size_t>(item->row()) + 1;
    item->update(value, type, marker, size, m_sameStop);
    return item;
}

void VariableView::addPrimitive(const QString& name, const QString& expression,
                                const ExpressionType& value, const QString& type,
                                MarkerType* marker)
{
    add(name, expression, value, type, marker, value.getSizeInBytes());
}

void* VariableView::beginObject(const QString& name, const QString& expression,
                                const ExpressionType& value, const QString& type,
                                MarkerType* marker, unsigned size)
{
    VariableViewItem* const item = add(name, expression, value, type, marker, size);
    m_open.push_back({item});
    return item;
}

void* VariableView::beginArray(const QString& name, const QString& expression,
                               const ExpressionType& value, const QString& type, MarkerType* marker,
                               unsigned size)
{
    return beginObject(name, expression, value, type, marker, size);
}

void VariableView::endObject(void*)
{
    if (m_open.size() > 1)
        m_open.pop_back();
}

// What is known of expressions

const VariableView::DisplayedInfo* VariableView::findDisplayed(const QString& expression) const
{
    const auto found = m_displayed.constFind(expression);
    return found != m_displayed.cend() ? &*found : nullptr;
}

VariableView::DisplayedInfo& VariableView::addDisplayed(const QString& expression, PointerType kind)
{
    DisplayedInfo& info = m_displayed[expression];
    if (kind != NotKnown)
        info.kind = kind;
    return info;
}

void VariableView::removeDisplayed(const VariableViewItem& item)
{
    if (&item == m_selected)
        m_selected = nullptr;
    m_displayed.remove(item.expression());
    for (const auto& child : item.children())
        removeDisplayed(*child);
}

unsigned VariableView::getNumElements(const QString& expression) const
{
    const DisplayedInfo* const info = findDisplayed(expression);
    return info ? info->count : DisplayedInfo::FirstCount;
}

bool VariableView::isPointer(const QString& expression) const
{
    const DisplayedInfo* const info = findDisplayed(expression);
    return info && info->kind == Pointer;
}

VariableListBuilder::pointerEvalMode VariableView::getPointerEvalMode(const QString&,
                                                                      const QString& expression,
                                                                      unsigned size,
                                                                      unsigned& count)
{
    const DisplayedInfo* const known = findDisplayed(expression);
    const bool isNew = !known || known->kind == NotKnown;
    DisplayedInfo& info = addDisplayed(expression, Pointer);
    if (isNew && info.mode == Value && size == 1 && ViewSettings::displayCharPtrAsString())
        info.mode = AsString;
    count = std::min(info.count, DisplayedInfo::MostElements);
    return info.mode;
}

VariableListBuilder::pointerEvalMode
VariableView::getArrayEvalMode(const QString&, const QString& expression, unsigned& count)
{
    DisplayedInfo& info = addDisplayed(expression, Array);
    if (info.mode == Value)
        info.count = count;
    else
        count = std::min(info.count, DisplayedInfo::MostElements);
    return info.mode;
}

VariableListBuilder::pointerEvalMode VariableView::getStructEvalMode(const QString&,
                                                                     const QString& expression)
{
    return addDisplayed(expression, Structure).mode;
}

// How rows are shown

bool VariableView::isExpandable(const VariableViewItem* item) const
{
    if (!item->children().empty())
        return true;
    const DisplayedInfo* const info = findDisplayed(item->expression());
    return info && info->kind != NotKnown && info->mode == Value
        && item->state() != VariableViewItem::Message;
}

void VariableView::itemExpanded(VariableViewItem* item)
{
    const DisplayedInfo* const known = findDisplayed(item->expression());
    if (!known || known->kind == NotKnown || known->mode != Value)
        return;
    DisplayedInfo info = *known;
    if (info.kind == Array && info.count > ViewSettings::arrayElementsPromptSize()
        && !askCount(info))
        return;
    setInterpretation(item, info.kind == Array ? AsArray : Dereference, info.count);
}

bool VariableView::askCount(DisplayedInfo& info)
{
    return m_host.askNumber(u"Array display"_s, u"Number of elements"_s, 1,
                            unsigned(std::numeric_limits<int>::max()), info.count);
}

void VariableView::showAsArray()
{
    if (!m_selected)
        return;
    const DisplayedInfo* const known = findDisplayed(m_selected->expression());
    DisplayedInfo info = known ? *known : DisplayedInfo();
    if (askCount(info))
        setInterpretation(m_selected, AsArray, info.count);
}

void VariableView::interpretSelected(pointerEvalMode mode)
{
    if (m_selected)
        setInterpretation(m_selected, mode, getNumElements(m_selected->expression()));
}

void VariableView::setInterpretation(VariableViewItem* item, pointerEvalMode mode, unsigned count)
{
    DisplayedInfo& info = addDisplayed(item->expression(), NotKnown);
    info.mode = mode;
    info.count = count;
    item->invalidate();
    item->forgetValue();
    refresh();
}

void VariableView::setInterpretation(const QString& expression, PointerType kind,
                                     pointerEvalMode mode, unsigned count)
{
    DisplayedInfo& info = addDisplayed(expression, kind);
    info.mode = mode;
    info.count = count;
    if (VariableViewItem* const item = m_root.find(expression))
        setInterpretation(item, mode, count);
}

int VariableView::itemRadix(const VariableViewItem* item) const
{
    return resolvedDisplayMode(item->value(), item->radix());
}

void VariableView::setRadix(VariableViewItem* item, int radix)
{
    if (!item)
        return;
    applyRadix(*item, radix);
    triggerUpdate();
}

void VariableView::setRadix(const QString& expression, int radix)
{
    addDisplayed(expression, NotKnown).radix = radix;
    setRadix(m_root.find(expression), radix);
}

void VariableView::applyRadix(VariableViewItem& item, int radix)
{
    item.setRadix(radix);
    addDisplayed(item.expression(), NotKnown).radix = radix;
    for (const auto& child : item.children())
        applyRadix(*child, radix);
}

void VariableView::defaultDisplayModeChanged()
{
    const auto format = [](const auto& self, VariableViewItem& item) -> void {
        if (item.radix() == DefaultDisplay)
            item.setRadix(DefaultDisplay);
        for (const auto& child : item.children())
            self(self, *child);
    };
    format(format, m_root);
    triggerUpdate();
}

// Order

void VariableView::setOrder(Order order)
{
    m_order = order;
    sort();
    triggerUpdate();
}

void VariableView::sort()
{
    using Row = std::unique_ptr<VariableViewItem>;
    const auto byName = [](const Row& a, const Row& b) { return a->name() < b->name(); };
    const auto byPlace = [](const Row& a, const Row& b) {
        if (!a->marker() || !b->marker())
            return a->marker() && !b->marker();
        return a->marker()->lt(b->marker());
    };
    if (m_listener)
        m_listener->rowsToBeSorted();
    auto& rows = m_root.m_children;
    if (m_order == Alphabetic)
        std::stable_sort(rows.begin(), rows.end(), byName);
    else
        std::stable_sort(rows.begin(), rows.end(), byPlace);
    m_root.number(0);
    if (m_listener)
        m_listener->rowsSorted();
}

// Values set by the user

namespace {

/// Rows below a watch are read where it is.
ExpressionContext contextOf(const VariableViewItem* item, Frame* frame)
{
    while (item->parent() && item->parent()->parent())
        item = item->parent();
    return {frame, item->file(), item->line()};
}

} // namespace

void VariableView::dataSet(const QString& text, bool repeat)
{
    if (!m_selected)
        return;
    const QString expression = m_selected->expression();
    ExpressionType result;
    m_debugger.evaluateExpression(contextOf(m_selected, m_host.selectedFrame()),
                                  expression + text + (repeat ? expression : QString()), result);
    m_host.setCall(m_host.selectedCall());
}

void VariableView::modify(VariableViewItem* item, const QString& text)
{
    const ExpressionContext context = contextOf(item, m_host.selectedFrame());
    ExpressionType value;
    if (!typedValue(item->value(), text, itemRadix(item), value))
        m_debugger.evaluateExpression(context, text, value);
    m_debugger.setExpression(context, item->expression(), value);
    m_host.setCall(m_host.selectedCall());
}

void VariableView::locateMemory()
{
    const auto* const place =
        m_selected ? dynamic_cast<const DebugMarkerType*>(m_selected->marker()) : nullptr;
    if (place && place->isMemory())
        m_host.locateMemory(place->address(), m_selected->sizeInBytes());
}
