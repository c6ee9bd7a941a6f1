#pragma once

#include "editor/commands/CodeEditorHost.h"

class CodeEdit;

/// The user in front of a window: message boxes, file dialogs, the clipboard of the desktop.
class CodeEditHost : public CodeEditorHost {
public:
    explicit CodeEditHost(CodeEdit& edit) : m_edit(edit) { }

    void warn(const QString& text) override;
    int ask(const QString& text, const QStringList& buttons, int escape) override;
    QString fileToSave(const QString& suggestion) override;
    QString fileToInsert() override;
    QString clipboardText() override;
    bool hasClipboardText() override;
    void setClipboardText(const QString& text) override;
    int askLine(int current, int count) override;
    void carryOut(EditCommand command) override;

private:
    CodeEdit& m_edit;
};
