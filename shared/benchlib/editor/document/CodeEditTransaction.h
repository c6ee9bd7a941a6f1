#pragma once

#include "editor/document/CodeEditAction.h"

#include <memory>
#include <vector>

/// What kind of change a transaction is; the numbers are those of the undo menu's icons.
enum class CodeEditIcon {
    None = 0,
    Cut = 1,
    Paste = 2,
    Delete = 3,
    Move = 4,
    Copy = 5,
    Indent = 6,
    Outdent = 7,
    Edit = 8,
    Typing = 9, ///< only these are ever merged
    Uppercase = 10,
    Lowercase = 11,
    Switchcase = 12,
    Comment = 13,
    Uncomment = 14,
    SortAscending = 15,
    SortDescending = 16,
    TransposeLines = 17,
    TransposeWords = 18,
    Template = 19,
    Tabify = 20,
    Untabify = 21,
    Align = 22,
    Surround = 23,
};

/// Changes that are undone and redone together.
class CodeEditTransaction {
public:
    using Actions = std::vector<std::unique_ptr<CodeEditAction>>;

    CodeEditTransaction(CodeEditIcon icon, QCodeBufferPosition caretBegin)
        : m_icon(icon),
          m_caretBegin(caretBegin),
          m_caretEnd(caretBegin)
    {
    }

    const Actions& actions() const { return m_actions; }
    CodeEditIcon icon() const { return m_icon; }
    QCodeBufferPosition caretBegin() const { return m_caretBegin; }
    QCodeBufferPosition caretEnd() const { return m_caretEnd; }
    void setCaretBegin(QCodeBufferPosition position) { m_caretBegin = position; }
    void setCaretEnd(QCodeBufferPosition position) { m_caretEnd = position; }
    bool isEmpty() const { return m_actions.empty(); }
    void append(std::unique_ptr<CodeEditAction> action) { m_actions.push_back(std::move(action)); }
    void append(Actions&& actions);
    Actions takeActions() && { return std::move(m_actions); }

    /// What menus show, such as "Typing".
    QString description() const;

    /// Tells the text that this transaction leads to from all others; see CodeDocument::modified.
    qint64 revision() const { return m_revision; }
    void setRevision(qint64 revision) { m_revision = revision; }

private:
    CodeEditIcon m_icon;
    QCodeBufferPosition m_caretBegin;
    QCodeBufferPosition m_caretEnd;
    Actions m_actions;
    qint64 m_revision = 0;
};
