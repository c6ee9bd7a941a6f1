#include "debugger/views/WatchVariableView.h"

#include "debugger/expressions/ParserException.h"
#include "debugger/interface/SymbolicDebuggerInterface.h"

#include <QDomDocument>

#include <algorithm>
#include <limits>

using namespace Qt::Literals::StringLiterals;

void WatchVariableView::update(Frame* frame)
{
    invalidate();
    for (const auto& item : root().children()) {
        beginUpdateOf(item.get());
        try {
            debugger().evaluateExpression({frame, item->file(), item->line()}, item->name(),
                                          item->expression(), this);
        } catch (const ParserException& failure) {
            item->update(failure.getCause());
        }
    }
    beginUpdate();
    cleanup();
    triggerUpdate();
}

void WatchVariableView::reset()
{
    beginUpdate();
    for (const auto& item : root().children()) {
        removeRows(item.get(), 0, item->children().size());
        item->update(QString());
    }
    triggerUpdate();
}

VariableViewItem* WatchVariableView::watch(const QString& expression, const Path& file, int line)
{
    VariableViewItem* const item = addRow(&root(), expression, expression);
    item->m_file = file;
    item->m_line = line;
    return item;
}

void WatchVariableView::remove(VariableViewItem* item)
{
    const auto row = static_cast<std::size_t>(item->row());
    removeRows(&root(), row, row + 1);
}

void WatchVariableView::removeAll() { removeRows(&root(), 0, root().children().size()); }

// Lines

void WatchVariableView::linesInserted(const Path& file, int line, int count)
{
    for (const auto& item : root().children())
        if (item->m_file == file && item->m_line >= line)
            item->m_line += count;
}

void WatchVariableView::linesDeleted(const Path& file, int line, int count)
{
    for (const auto& item : root().children())
        if (item->m_file == file && item->m_line >= line)
            item->m_line = std::max(line, item->m_line - count);
}

// Sessions

namespace {

QString boolean(bool value) { return value ? u"true"_s : u"false"_s; }

/// A number of a session file within what it may be.
int numberOf(const QDomElement& element, const QString& attribute, int lowest, int highest,
             int otherwise)
{
    bool ok = false;
    const int number = element.attribute(attribute).toInt(&ok);
    return ok && number >= lowest && number <= highest ? number : otherwise;
}

int radixOf(const QDomElement& element)
{
    const int radix = numberOf(element, u"radix"_s, AsciiDisplay, HexadecimalDisplay, -1);
    switch (radix) {
    case AsciiDisplay:
    case BinaryDisplay:
    case OctalDisplay:
    case DecimalDisplay:
    case UnsignedDisplay:
    case HexadecimalDisplay: return radix;
    default: return DefaultDisplay;
    }
}

} // namespace

void WatchVariableView::saveSession(QDomDocument& document, QDomElement& session) const
{
    QDomElement watches = document.createElement(u"Watches"_s);
    watches.setAttribute(u"active"_s, boolean(m_active));
    watches.setAttribute(u"update"_s, m_updateChoice);
    for (const auto& item : root().children()) {
        const DisplayedInfo* const known = findDisplayed(item->expression());
        const DisplayedInfo info = known ? *known : DisplayedInfo();
        QDomElement saved = document.createElement(u"Watchpoint"_s);
        saved.setAttribute(u"filename"_s, item->file().osPath());
        saved.setAttribute(u"linenumber"_s, item->line());
        saved.setAttribute(u"name"_s, item->name());
        saved.setAttribute(u"expression"_s, item->expression());
        saved.setAttribute(u"radix"_s, item->radix());
        saved.setAttribute(u"evalType"_s, static_cast<int>(info.kind));
        saved.setAttribute(u"evalMode"_s, static_cast<int>(info.mode));
        saved.setAttribute(u"numelements"_s, info.count);
        watches.appendChild(saved);
    }
    session.appendChild(watches);
}

void WatchVariableView::loadSession(const QDomElement& watches)
{
    m_active = watches.attribute(u"active"_s) == u"true";
    m_updateChoice = watches.attribute(u"update"_s);
    for (QDomElement it = watches.firstChildElement(u"Watchpoint"_s); !it.isNull();
         it = it.nextSiblingElement(u"Watchpoint"_s))
        loadWatch(it);
    triggerUpdate();
}

void WatchVariableView::loadWatch(const QDomElement& element)
{
    const QString expression = element.attribute(u"expression"_s);
    if (expression.isEmpty())
        return;
    const int most = std::numeric_limits<int>::max();
    setInterpretation(
        expression, PointerType(numberOf(element, u"evalType"_s, Array, NotKnown, NotKnown)),
        pointerEvalMode(numberOf(element, u"evalMode"_s, Value, AsString, Value)),
        unsigned(numberOf(element, u"numelements"_s, 1, most, DisplayedInfo::FirstCount)));
    setRadix(expression, radixOf(element));
    const QString file = element.attribute(u"filename"_s);
    VariableViewItem* const item = watch(expression, file.isEmpty() ? Path() : Path(file),
                                         numberOf(element, u"linenumber"_s, 1, most, -1));
    item->m_name = element.attribute(u"name"_s, expression);
}
