#pragma once

#include "editor/buffer/QCodeBufferPosition.h"

#include <QString>

class CodeDocument;

/// One recorded change of a text, which can be taken back and made again.
class CodeEditAction {
public:
    virtual void undo(CodeDocument& document) const = 0;
    virtual void redo(CodeDocument& document) const = 0;
    /// Such as: Insert "int main(v..."
    virtual QString description() const = 0;
    virtual ~CodeEditAction() = default;
};

/// A text that comes or goes as a whole.
class CodeEditTextAction : public CodeEditAction {
public:
    /// `end` is the place behind the text; where the caret goes when it comes.
    CodeEditTextAction(const QString& text, QCodeBufferPosition begin, QCodeBufferPosition end)
        : m_text(text),
          m_begin(begin),
          m_end(end)
    {
    }

protected:
    void insert(CodeDocument& document) const;
    void remove(CodeDocument& document) const;

    QString m_text;

private:
    QCodeBufferPosition m_begin;
    QCodeBufferPosition m_end;
};

class CodeEditInsertAction : public CodeEditTextAction {
public:
    using CodeEditTextAction::CodeEditTextAction;
    void undo(CodeDocument& document) const override { remove(document); }
    void redo(CodeDocument& document) const override { insert(document); }
    QString description() const override;
};

class CodeEditDeleteAction : public CodeEditTextAction {
public:
    using CodeEditTextAction::CodeEditTextAction;
    void undo(CodeDocument& document) const override { insert(document); }
    void redo(CodeDocument& document) const override { remove(document); }
    QString description() const override;
};

/// Both texts lie within one line.
class CodeEditReplaceAction : public CodeEditAction {
public:
    CodeEditReplaceAction(const QString& oldText, const QString& newText,
                          QCodeBufferPosition position)
        : m_oldText(oldText),
          m_newText(newText),
          m_position(position)
    {
    }
    void undo(CodeDocument& document) const override;
    void redo(CodeDocument& document) const override;
    QString description() const override;

private:
    QString m_oldText;
    QString m_newText;
    QCodeBufferPosition m_position;
};
