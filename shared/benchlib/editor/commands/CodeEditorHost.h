#pragma once

#include "editor/commands/EditCommand.h"
#include "editor/document/DocumentPrompts.h"

/// What an editor asks of its surroundings. This one is enough for an editor without a window.
class CodeEditorHost : public DocumentPrompts {
public:
    virtual QString clipboardText() { return m_clipboard; }
    /// Asked at each change: must not wait for another program.
    virtual bool hasClipboardText() { return !m_clipboard.isEmpty(); }
    virtual void setClipboardText(const QString& text) { m_clipboard = text; }
    /// A line from 1 on; 0 for none.
    virtual int askLine(int current, int count)
    {
        Q_UNUSED(current)
        Q_UNUSED(count)
        return 0;
    }
    /// A command that needs a window, the debugger or knowledge of the language.
    virtual void carryOut(EditCommand command) { Q_UNUSED(command) }

private:
    QString m_clipboard;
};
