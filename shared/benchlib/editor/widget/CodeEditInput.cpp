// Keys, mouse, input methods, drag and drop.

#include "editor/widget/CodeEdit.h"

#include "editor/commands/MacroRecorder.h"
#include "editor/widget/DiagnosticPopup.h"

#include <QApplication>
#include <QClipboard>
#include <QDrag>
#include <QHelpEvent>
#include <QMimeData>
#include <QMouseEvent>
#include <QRegularExpression>
#include <QScrollBar>
#include <QToolTip>

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int MouseTickMs = 50;
/// Keys without a character have these codes.
constexpr int FirstFunctionKey = 0x1000;
constexpr int LastFunctionKey = 0xFEFF;
constexpr double DimmedOpacity = 0.15;
constexpr char16_t MiddleDot = 0x00B7;

bool isText(const QKeyEvent& event)
{
    const QString text = event.text();
    const bool ctrl = event.modifiers().testFlag(Qt::ControlModifier);
    const bool alt = event.modifiers().testFlag(Qt::AltModifier);
    const int key = event.key() & 0xFFFF;
    const bool isFunctionKey = event.key() >= 0x01000000
        || (key >= FirstFunctionKey && key <= LastFunctionKey && event.key() < 0x10000);
    // Ctrl and Alt together are AltGr on some keyboards.
    return !text.isEmpty() && text[0].unicode() >= u' ' && text[0].unicode() != 0x7F && ctrl == alt
        && !isFunctionKey;
}

} // namespace

std::optional<EditCommand> CodeEdit::commandOf(const QKeyEvent& event) const
{
    if (m_keypadEdits && event.modifiers() == Qt::KeypadModifier)
        if (const std::optional<EditCommand> command = KeyMap::keypadCommand(event.key()))
            return command;
    return m_keyMap.command(KeyMap::code(event.key(), event.modifiers()));
}

void CodeEdit::keyPressEvent(QKeyEvent* event)
{
    if (event->key() == Qt::Key_Control && m_diagnostic)
        m_diagnostic->setOpacity(DimmedOpacity);
    if (const std::optional<EditCommand> command = commandOf(*event)) {
        m_editor.execute(*command);
        event->accept();
        return;
    }
    if (event->key() == Qt::Key_F1 && event->modifiers() == Qt::NoModifier) {
        emit help(m_editor.wordUnder(m_editor.caret()));
        return;
    }
    const bool digit = event->key() >= Qt::Key_0 && event->key() <= Qt::Key_9;
    if (digit && m_editor.hasArgument() && m_editor.enterArgumentDigit(event->key() - Qt::Key_0))
        return;
    const bool dot = event->key() == Qt::Key_Space
        && event->modifiers() == (Qt::ShiftModifier | Qt::ControlModifier);
    if (!dot && !isText(*event)) {
        event->ignore();
        return;
    }
    if (m_editor.settings().hideCursor)
        viewport()->setCursor(Qt::BlankCursor);
    m_editor.typeText(dot ? QString(QChar(MiddleDot)) : event->text());
}

void CodeEdit::keyReleaseEvent(QKeyEvent* event)
{
    if (event->key() == Qt::Key_Control && m_diagnostic)
        m_diagnostic->setOpacity(1.0);
    QAbstractScrollArea::keyReleaseEvent(event);
}

// Input methods

void CodeEdit::inputMethodEvent(QInputMethodEvent* event)
{
    if (!m_editor.canEdit()) {
        event->ignore();
        return;
    }
    m_preedit = event->preeditString();
    if (event->replacementLength() > 0) {
        const Place caret = m_editor.caret();
        const int from = std::max(0, caret.column + event->replacementStart());
        m_editor.select({{caret.line, from}, {caret.line, from + event->replacementLength()}});
    }
    if (!event->commitString().isEmpty())
        m_editor.typeText(event->commitString());
    viewport()->update();
    updateMicroFocus();
    event->accept();
}

QVariant CodeEdit::inputMethodQuery(Qt::InputMethodQuery query) const
{
    const Place caret = m_editor.caret();
    switch (query) {
    case Qt::ImEnabled: return m_editor.canEdit();
    case Qt::ImCursorRectangle: return caretRectangle().translated(viewport()->pos());
    case Qt::ImFont: return m_fonts.base();
    case Qt::ImCursorPosition: return caret.column;
    case Qt::ImAnchorPosition:
        return m_editor.selecting() && m_editor.selection().begin.line == caret.line
            ? m_editor.selection().begin.column
            : caret.column;
    case Qt::ImSurroundingText: return m_editor.buffer().text(caret.line);
    case Qt::ImCurrentSelection: return m_editor.selectedText();
    default: return QAbstractScrollArea::inputMethodQuery(query);
    }
}

// Mouse

void CodeEdit::pressInMargin(QMouseEvent* event)
{
    using enum BreakpointState;
    const int line = positionAt(event->position()).line;
    const BreakpointState state = breakpointState(line);
    const bool isSet = state != NotApplicable && state != None;
    if (!event->modifiers().testFlag(Qt::ControlModifier))
        setBreakpointState(line, isSet ? None : Enabled);
    else
        setBreakpointState(line, state == Enabled ? Disabled : Enabled);
    viewport()->update();
}

void CodeEdit::mousePressEvent(QMouseEvent* event)
{
    clearDiagnostic();
    const Place place = positionAt(event->position());
    const QSelection& selection = m_editor.selection();
    const bool inSelection =
        selection.isValid() && place >= selection.first() && place < selection.last();
    if (event->button() == Qt::RightButton) {
        // The selection stays, for the menu that comes.
        m_editor.beginUpdate();
        m_editor.setCaret(place);
        m_editor.endUpdate();
        return;
    }
    if (event->button() == Qt::MiddleButton) {
        if (!m_pasteOnMiddle || !m_editor.okToModify())
            return;
        const QClipboard* clipboard = QApplication::clipboard();
        m_editor.setCaretPosition(place);
        m_editor.insert(clipboard->text(clipboard->supportsSelection() ? QClipboard::Selection
                                                                       : QClipboard::Clipboard));
        return;
    }
    if (event->button() != Qt::LeftButton)
        return;
    if (event->position().x() < marginWidth()) {
        pressInMargin(event);
        return;
    }
    m_mousePoint = event->position();
    // A third click.
    if (m_sinceDoubleClick.isValid()
        && m_sinceDoubleClick.elapsed() < QApplication::doubleClickInterval()
        && m_mouseAnchor.first().line == place.line) {
        m_sinceDoubleClick.invalidate();
        beginMouseSelection(MouseMode::Lines);
        return;
    }
    if (inSelection && m_dragDrop && !event->modifiers().testFlag(Qt::ShiftModifier)) {
        m_dragPending = true;
        return;
    }
    if (event->modifiers().testFlag(Qt::ControlModifier)) {
        controlClick(place);
        return;
    }
    m_mouseMode = MouseMode::Characters;
    m_editor.setCaretPosition(place, event->modifiers().testFlag(Qt::ShiftModifier));
    m_mouseAnchor = m_editor.selecting() ? QSelection{selection.begin, selection.begin}
                                         : QSelection{m_editor.caret(), m_editor.caret()};
    m_mouseTimer.start(MouseTickMs, this);
}

void CodeEdit::mouseDoubleClickEvent(QMouseEvent* event)
{
    if (event->button() != Qt::LeftButton || event->position().x() < marginWidth()) {
        mousePressEvent(event);
        return;
    }
    m_dragPending = false;
    Place place = positionAt(event->position());
    const QStringView text = m_editor.buffer().view(place.line);
    // The character below the pointer, not the gap that is nearest.
    if (place.column > 0 && event->position().x() < pointOf(place).x())
        --place.column;
    const bool onText = place.column < text.size() && !text[place.column].isSpace();
    m_editor.setCaretPosition(place);
    m_mousePoint = event->position();
    m_sinceDoubleClick.start();
    beginMouseSelection(onText ? MouseMode::Words : MouseMode::Lines);
}

/// With the word or the line of the caret.
void CodeEdit::beginMouseSelection(MouseMode mode)
{
    m_mouseMode = mode;
    if (mode == MouseMode::Words)
        m_editor.select(m_editor.runAt(m_editor.caret()));
    else
        m_editor.selectLine();
    m_mouseAnchor = m_editor.selection();
    m_mouseTimer.start(MouseTickMs, this);
}

void CodeEdit::mouseMoveEvent(QMouseEvent* event)
{
    const bool overMargin = event->position().x() < marginWidth();
    viewport()->setCursor(overMargin ? Qt::ArrowCursor : m_pointerShape);
    if (m_dragPending) {
        if ((event->position() - m_mousePoint).manhattanLength()
            >= QApplication::startDragDistance())
            startDrag();
        return;
    }
    if (m_mouseMode == MouseMode::Idle) {
        if (!overMargin && event->modifiers().testFlag(Qt::ControlModifier))
            controlMove(positionAt(event->position()));
        return;
    }
    m_mousePoint = event->position();
    extendByMouse(m_mousePoint);
}

/// By characters, whole words or whole lines; what was selected first stays selected.
void CodeEdit::extendByMouse(QPointF point)
{
    Place place = positionAt(point);
    if (m_mouseMode == MouseMode::Characters) {
        m_editor.select({m_mouseAnchor.begin, place});
        return;
    }
    QSelection unit{place, place};
    if (m_mouseMode == MouseMode::Lines)
        unit = {{place.line, 0}, {std::min(place.line + 1, m_editor.count() - 1), 0}};
    else if (const QSelection word = m_editor.wordAt(place); word.isValid())
        unit = word;
    if (place < m_mouseAnchor.first())
        m_editor.select({m_mouseAnchor.last(), unit.first()});
    else
        m_editor.select({m_mouseAnchor.first(), std::max(m_mouseAnchor.last(), unit.last())});
}

void CodeEdit::mouseTick()
{
    if (m_mouseMode == MouseMode::Idle || !(QApplication::mouseButtons() & Qt::LeftButton)) {
        m_mouseTimer.stop();
        return;
    }
    if (viewport()->rect().contains(m_mousePoint.toPoint()))
        return;
    extendByMouse(m_mousePoint);
}

void CodeEdit::mouseReleaseEvent(QMouseEvent* event)
{
    if (event->button() != Qt::LeftButton)
        return;
    if (m_dragPending) {
        m_dragPending = false;
        m_editor.setCaretPosition(positionAt(event->position()));
    }
    const bool selected = m_mouseMode != MouseMode::Idle && m_editor.selecting();
    m_mouseMode = MouseMode::Idle;
    m_mouseTimer.stop();
    if (!selected)
        return;
    QClipboard* clipboard = QApplication::clipboard();
    if (clipboard->supportsSelection())
        clipboard->setText(m_editor.selectedText(), QClipboard::Selection);
    if (m_copyOnSelect)
        m_editor.execute(EditCommand::copy);
    if (m_miniToolbar)
        showMiniPalette(event->position().toPoint());
}

void CodeEdit::wheelEvent(QWheelEvent* event)
{
    if (!event->modifiers().testFlag(Qt::ControlModifier)) {
        QAbstractScrollArea::wheelEvent(event);
        return;
    }
    constexpr int notch = 120;
    m_wheelRest += event->angleDelta().y();
    for (; m_wheelRest >= notch; m_wheelRest -= notch)
        changeTextSize(1);
    for (; m_wheelRest <= -notch; m_wheelRest += notch)
        changeTextSize(-1);
    event->accept();
}

void CodeEdit::contextMenuEvent(QContextMenuEvent* event)
{
    const bool byKey = event->reason() == QContextMenuEvent::Keyboard;
    const QPoint at = byKey ? viewport()->mapToGlobal(caretRectangle().bottomLeft().toPoint())
                            : event->globalPos();
    emit contextMenuRequested(at, !byKey && event->pos().x() < marginWidth());
    event->accept();
}

// Drag and drop

void CodeEdit::startDrag()
{
    m_dragPending = false;
    m_mouseMode = MouseMode::Dragging;
    auto* data = new QMimeData;
    data->setText(m_editor.selectedText());
    const QSelection dragged = m_editor.selection();
    const qint64 before = m_editor.sequenceNumber();
    auto* drag = new QDrag(this);
    drag->setMimeData(data);
    const Qt::DropAction done = drag->exec(Qt::CopyAction | Qt::MoveAction, Qt::MoveAction);
    m_mouseMode = MouseMode::Idle;
    // A drop in this editor has moved the text itself.
    const bool elsewhere = m_editor.sequenceNumber() == before;
    if (done == Qt::MoveAction && elsewhere && m_editor.okToModify()) {
        m_editor.beginUpdate(0, CodeEditIcon::Move);
        m_editor.select(dragged);
        m_editor.del();
        m_editor.endUpdate();
    }
}

/// Files are for the window around the editor.
bool CodeEdit::canDrop(const QMimeData& data) const
{
    return data.hasText() && !data.hasUrls() && m_editor.canEdit();
}

void CodeEdit::dragMoveEvent(QDragMoveEvent* event)
{
    if (canDrop(*event->mimeData()))
        event->acceptProposedAction();
    else
        event->ignore();
}

void CodeEdit::dragEnterEvent(QDragEnterEvent* event) { dragMoveEvent(event); }

void CodeEdit::dropEvent(QDropEvent* event)
{
    if (!canDrop(*event->mimeData()) || !m_editor.okToModify()) {
        event->ignore();
        return;
    }
    const Place place = positionAt(event->position());
    if (event->source() == this && event->dropAction() == Qt::MoveAction) {
        m_editor.moveSelection(place);
    } else {
        m_editor.beginUpdate(0, CodeEditIcon::Copy);
        m_editor.dropSelection();
        m_editor.setCaret(place);
        const Place begin = m_editor.caret();
        m_editor.insert(event->mimeData()->text(), CodeEditIcon::Copy);
        m_editor.select({begin, m_editor.caret()});
        m_editor.endUpdate();
    }
    event->acceptProposedAction();
}

// Tips

bool CodeEdit::event(QEvent* event)
{
    // Tab is text here.
    if (event->type() == QEvent::KeyPress) {
        auto* key = static_cast<QKeyEvent*>(event);
        if (key->key() == Qt::Key_Tab || key->key() == Qt::Key_Backtab) {
            keyPressEvent(key);
            if (key->isAccepted())
                return true;
        }
    }
    return QAbstractScrollArea::event(event);
}

bool CodeEdit::viewportEvent(QEvent* event)
{
    if (event->type() == QEvent::ToolTip) {
        const auto* tip = static_cast<QHelpEvent*>(event);
        maybeTip(tip->pos(), tip->globalPos());
        return true;
    }
    return QAbstractScrollArea::viewportEvent(event);
}

void CodeEdit::maybeTip(QPoint point, QPoint globalPoint)
{
    m_clientTips.clear();
    const Place place = positionAt(point);
    if (point.x() < marginWidth())
        emit marginTipRequested(this, place.line);
    else if (const QString word = tipWord(place); !word.isEmpty())
        emit dataTipRequested(this, place.line, word);
    // An empty text takes an earlier tip away.
    QToolTip::showText(globalPoint, m_clientTips.join(u'\n'), viewport());
}

void CodeEdit::appendClientTooltip(const QString& text) { m_clientTips.append(text); }

/// A selection is an expression that someone wants to see: only what separates expressions ends it.
QString CodeEdit::tipWord(QCodeBufferPosition place) const
{
    const QSelection& selection = m_editor.selection();
    const Place first = selection.first();
    const Place last = selection.last();
    if (!selection.isValid() || place < first || place >= last)
        return m_editor.wordUnder(place);
    static constexpr QStringView separators = u";:(){}[]";
    const QStringView text = m_editor.buffer().view(place.line);
    const auto separates = [&](qsizetype column) {
        return text[column].isSpace() || separators.contains(text[column]);
    };
    const qsizetype from = place.line == first.line ? first.column : 0;
    const qsizetype to =
        place.line == last.line ? std::min<qsizetype>(last.column, text.size()) : text.size();
    qsizetype start = std::min<qsizetype>(place.column, to);
    qsizetype end = start;
    while (start > from && !separates(start - 1))
        --start;
    while (end < to && !separates(end))
        ++end;
    return text.mid(start, end - start).toString();
}
