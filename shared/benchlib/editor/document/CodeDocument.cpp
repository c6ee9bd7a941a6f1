#include "editor/document/CodeDocument.h"

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

CodeDocument::UndoMode CodeDocument::s_undoMode = CodeDocument::UndoMode::Words;
int CodeDocument::s_backupFileDepth = 0;

namespace {

DocumentPrompts& noUser()
{
    static DocumentPrompts prompts;
    return prompts;
}

} // namespace

CodeDocument::CodeDocument(QObject* parent)
    : QObject(parent),
      m_prompts(&noUser()),
      m_encodingName(TextEncoding::Default.toString())
{
    m_encoding = TextEncoding::forFile(m_encodingName, {});
    m_savedState = state();
}

CodeDocument::~CodeDocument() = default;

void CodeDocument::setPrompts(DocumentPrompts* prompts)
{
    m_prompts = prompts ? prompts : &noUser();
}

void CodeDocument::setParser(CodeEditParser* parser)
{
    m_buffer.setParser(parser);
    m_buffer.invalidateHighlighting();
    beginUpdate(KeepScroll);
    endUpdate(KeepScroll | Repaint);
}

void CodeDocument::report(const QString& text)
{
    if (m_updateDepth == 0)
        emit message(text);
}

// Caret and selection

void CodeDocument::setCaret(QCodeBufferPosition position, bool force)
{
    position.line = std::clamp(position.line, 0, std::max(0, count() + linesBelowText()));
    position.column = std::max(0, position.column);
    m_wantedCaret = position;
    if (!m_virtualSpace && !force) {
        position.line = std::min(position.line, std::max(0, count() - 1));
        position.column = std::min(position.column, m_buffer.length(position.line));
    }
    m_caret = position;
}

void CodeDocument::setSelection(const QSelection& selection) { m_selection = selection; }

QString CodeDocument::selectedText() const
{
    return selecting() ? m_buffer.text(m_selection) : QString();
}

// Updates

void CodeDocument::beginUpdate(unsigned flags, CodeEditIcon icon)
{
    if (m_updateDepth++ == 0) {
        m_transaction = std::make_unique<CodeEditTransaction>(icon, m_caret);
        m_updateCaret = m_caret;
        m_updateFlags = 0;
    }
    m_updateFlags |= flags;
    if ((flags & Extend) != 0 && !selecting())
        setSelection({m_caret, m_caret});
    if ((flags & Deselect) != 0 && selecting())
        dropSelection();
}

void CodeDocument::endUpdate(unsigned flags)
{
    m_updateFlags |= flags;
    // At each level: a macro selects within its own update.
    if ((flags & Extend) != 0)
        setSelection(m_selection.begin == m_caret ? QSelection{}
                                                  : QSelection{m_selection.begin, m_caret});
    if ((flags & Deselect) != 0 && selecting())
        dropSelection();
    if (m_updateDepth > 1) {
        --m_updateDepth;
        return;
    }
    updateFinished(m_updateFlags, m_updateCaret);
    m_updateDepth = 0;
    const std::unique_ptr<CodeEditTransaction> transaction = std::move(m_transaction);
    if (!transaction->isEmpty()) {
        m_redo.clear();
        transaction->setCaretEnd(m_caret);
        transaction->setRevision(++m_lastRevision);
        m_undo.push(std::make_unique<CodeEditTransaction>(std::move(*transaction)));
    }
    if ((m_updateFlags & Quiet) == 0)
        emit finished();
}

void CodeDocument::updateFinished(unsigned, QCodeBufferPosition) { }

void CodeDocument::record(std::unique_ptr<CodeEditAction> action)
{
    m_transaction->append(std::move(action));
    m_needsParsing = true;
}

// Changes

void CodeDocument::insertText(QCodeBufferPosition position, const QString& text, bool record)
{
    if (!okToModify())
        return;
    beginUpdate();
    sync(position);
    ++m_sequenceNumber;
    const int before = count();
    const QCodeBufferPosition end = m_buffer.insertText(position, text);
    if (count() > before)
        emit numberOfLinesChanged(position.line + 1, count() - before);
    emit textReplaced(position, QString(), text);
    setCaret(end, true);
    if (record)
        this->record(std::make_unique<CodeEditInsertAction>(text, position, end));
    endUpdate(Repaint | LinesChanged);
}

void CodeDocument::deleteText(QCodeBufferPosition begin, QCodeBufferPosition end, bool record)
{
    if (!okToModify())
        return;
    beginUpdate();
    sync(begin);
    ++m_sequenceNumber;
    const QString text = m_buffer.text(begin, end);
    const int before = count();
    m_buffer.deleteText(begin, end);
    if (count() < before)
        emit numberOfLinesChanged(begin.line + (begin.column == 0 ? 1 : 2), count() - before);
    emit textReplaced(begin, text, QString());
    if (record)
        this->record(std::make_unique<CodeEditDeleteAction>(text, begin, end));
    endUpdate(Repaint | LinesChanged);
}

void CodeDocument::deleteText(const QSelection& selection)
{
    deleteText(selection.first(), selection.last(), true);
}

void CodeDocument::replaceText(QCodeBufferPosition position, const QString& oldText,
                               const QString& newText, bool record)
{
    if (!okToModify())
        return;
    beginUpdate();
    sync(position);
    ++m_sequenceNumber;
    const int before = count();
    const int length = static_cast<int>(oldText.size());
    m_buffer.deleteText(position, {position.line, position.column + length});
    const QCodeBufferPosition end = m_buffer.insertText(position, newText);
    if (count() != before)
        emit numberOfLinesChanged(position.line + 1, count() - before);
    emit textReplaced(position, oldText, newText);
    setCaret(end, true);
    if (record)
        this->record(std::make_unique<CodeEditReplaceAction>(oldText, newText, position));
    endUpdate(Repaint | LinesChanged);
}

void CodeDocument::sync(QCodeBufferPosition position)
{
    const int missingLines = position.line - count();
    const int missingColumns = position.column - m_buffer.length(position.line);
    if (missingLines <= 0 && missingColumns <= 0)
        return;
    beginUpdate();
    // Ahead of the first text there isn't even a line to put a line break behind.
    if (position.line > std::max(0, count() - 1)) {
        const int last = std::max(0, count() - 1);
        insertText({last, m_buffer.length(last)}, QString(position.line - last, u'\n'), true);
    }
    const int length = m_buffer.length(position.line);
    if (position.column > length)
        insertText({position.line, length}, QString(position.column - length, u' '), true);
    endUpdate();
}

void CodeDocument::setText(const QStringList& lines) { setText(lines.join(u'\n')); }

void CodeDocument::setText(const QString& text)
{
    ++m_sequenceNumber;
    m_buffer.adopt(text);
    dropSelection();
    setCaret({0, 0});
    linesChanged();
    beginUpdate();
    endUpdate(Repaint | LinesChanged);
}

QStringList CodeDocument::getAllText() const
{
    QStringList lines;
    lines.reserve(count());
    for (int line = 0; line < count(); ++line)
        lines.append(m_buffer.text(line));
    return lines;
}

void CodeDocument::clear()
{
    ++m_sequenceNumber;
    m_buffer.clear();
    dropSelection();
    setCaret({0, 0});
    clearUndoRedoList();
    m_savedState = state();
    linesChanged();
}

// Undo

CodeDocument::State CodeDocument::state() const
{
    return {m_undo.isEmpty() ? 0 : m_undo.head()->revision(), m_lineEnding, m_encodingName};
}

void CodeDocument::undo()
{
    if (!okToModify() || m_undo.isEmpty())
        return;
    const QString description = m_undo.head()->description();
    beginUpdate(0, CodeEditIcon::None);
    replay(m_undo, m_redo, true);
    endUpdate(Deselect | Repaint);
    report(description);
}

void CodeDocument::redo()
{
    if (!okToModify() || m_redo.isEmpty())
        return;
    const QString description = m_redo.head()->description();
    beginUpdate(0, CodeEditIcon::None);
    replay(m_redo, m_undo, false);
    endUpdate(Deselect | Repaint);
    report(description);
}

void CodeDocument::undoAll() { replayAll(m_undo, m_redo, true, u"Undone %1 actions"_s); }

void CodeDocument::redoAll() { replayAll(m_redo, m_undo, false, u"Redone %1 actions"_s); }

void CodeDocument::replayAll(UndoStack& from, UndoStack& to, bool undo, const QString& text)
{
    if (!okToModify() || from.isEmpty())
        return;
    int replayed = 0;
    beginUpdate(0, CodeEditIcon::None);
    for (; !from.isEmpty(); ++replayed)
        replay(from, to, undo);
    endUpdate(Deselect | Repaint);
    report(text.arg(replayed));
}

void CodeDocument::replay(UndoStack& from, UndoStack& to, bool undo)
{
    to.push(from.pop());
    const CodeEditTransaction::Actions& actions = to.head()->actions();
    if (undo) {
        for (auto action = actions.rbegin(); action != actions.rend(); ++action)
            (*action)->undo(*this);
    } else {
        for (const auto& action : actions)
            action->redo(*this);
    }
    m_needsParsing = true;
}

void CodeDocument::clearUndoRedoList()
{
    m_undo.clear();
    m_redo.clear();
}

void CodeDocument::resetModified()
{
    m_savedState = state();
    emit modStateChanged();
}

bool CodeDocument::canMergeTyping(QStringView text) const
{
    const bool modeAllows =
        s_undoMode == UndoMode::Insertion || (s_undoMode == UndoMode::Words && text != u" ");
    return modeAllows && m_redo.isEmpty() && !m_undo.isEmpty()
        && m_undo.head()->icon() == CodeEditIcon::Typing && m_undo.head()->caretEnd() == m_caret;
}

void CodeDocument::mergeTyping()
{
    std::unique_ptr<CodeEditTransaction> newer = m_undo.pop();
    CodeEditTransaction& older = *m_undo.head();
    older.setCaretEnd(newer->caretEnd());
    // A text that was saved with the older transaction at the head is no longer the same.
    older.setRevision(newer->revision());
    older.append(std::move(*newer).takeActions());
}

// State

void CodeDocument::setFilename(const Path& path, bool named)
{
    m_filename = path;
    m_named = named;
}

void CodeDocument::setModState(ModState state, bool force)
{
    if ((m_modState == ModState::Locked && !force) || m_modState == state)
        return;
    m_modState = state;
    emit modStateChanged();
}

bool CodeDocument::canEdit() const
{
    return m_modState == ModState::Writable || (m_modState == ModState::ReadOnly && m_editReadOnly);
}

bool CodeDocument::okToModify()
{
    if (m_modState == ModState::ReadOnly && m_updateDepth == 0)
        emit readOnlyFileEdit();
    return canEdit();
}
