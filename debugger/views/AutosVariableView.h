#pragma once

#include "debugger/views/VariableView.h"

/// What an editor tells of the line that the user is at.
class AutosSource {
public:
    virtual ~AutosSource() = default;

    /// The text of the current line; empty if there is none.
    virtual QString currentLine() = 0;
    /// Whether a word is a keyword or a control word of the language.
    virtual bool isKeyword(const QString& word) = 0;
};

/// The variables of the current line, which come and go with it.
class AutosVariableView : public VariableView {
public:
    AutosVariableView(SymbolicDebuggerInterface& debugger, VariableViewHost& host,
                      AutosSource& source);

    void update(Frame* frame) override;
    void refresh() override;
    /// The next update doesn't come from a new stop: rows stay for a line more.
    void sameAutos() { m_sameAutos = true; }

private:
    void addAutos();
    void watch(const QString& text);
    void evaluate(VariableViewItem* known, const QString& expression);

    AutosSource& m_source;
    Frame* m_frame = nullptr;
    bool m_sameAutos = false;
};

/// Whether a word is a keyword of C.
bool isCKeyword(const QString& word);
