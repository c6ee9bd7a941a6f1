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

class CodeEditInsertAction : public CodeEditAction {
public:
    /// `end` is where the caret went.
    CodeEditInsertAction(const QString& text, QCodeBufferPosition begin, QCodeBufferPosition end)
        : m_text(text),
          m_begin(begin),
          m_end(end)
    {
    }
    void undo(CodeDocument& document) const override;
    void redo(CodeDocument& document) const override;
    QString description() const override;

private:
    QString m_text;
    QCodeBufferPosition m_begin;
    QCodeBufferPosition m_end;
};

class CodeEditDeleteAction : public CodeEditAction {
public:
    CodeEditDeleteAction(const QString& text, QCodeBufferPosition begin, QCodeBufferPosition end)
        : m_text(text),
          m_begin(begin),
          m_end(end)
    {
    }
    void undo(CodeDocument& document) const override;
    void redo(CodeDocument& document) const override;
    QString description() const override;

private:
    QString m_text;
    QCodeBufferPosition m_begin;
    QCodeBufferPosition m_end;
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
