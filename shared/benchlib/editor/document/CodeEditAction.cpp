#include "editor/document/CodeEditAction.h"

#include "editor/document/CodeDocument.h"

using namespace Qt::Literals::StringLiterals;

namespace {

QString describe(QStringView verb, const QString& text)
{
    constexpr qsizetype shown = 10;
    const QString shortened = text.size() > shown ? text.left(shown) + u"..."_s : text;
    return verb.toString() + u" \""_s + shortened + u'"';
}

} // namespace

void CodeEditTextAction::insert(CodeDocument& document) const
{
    document.insertText(m_begin, m_text, false);
    document.setCaret(m_end, true);
}

void CodeEditTextAction::remove(CodeDocument& document) const
{
    document.deleteText(m_begin, m_end, false);
    document.setCaret(m_begin, true);
}

QString CodeEditInsertAction::description() const { return describe(u"Insert", m_text); }

QString CodeEditDeleteAction::description() const { return describe(u"Delete", m_text); }

void CodeEditReplaceAction::undo(CodeDocument& document) const
{
    document.replaceText(m_position, m_newText, m_oldText, false);
}

void CodeEditReplaceAction::redo(CodeDocument& document) const
{
    document.replaceText(m_position, m_oldText, m_newText, false);
}

QString CodeEditReplaceAction::description() const { return describe(u"Replace", m_newText); }
