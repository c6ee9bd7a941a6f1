#pragma once

#include "editor/commands/CodeEditor.h"

#include <QString>
#include <QStringList>

#include <vector>

/// A case of editing: what a text is before, what is done, and what it is afterwards.
///
/// The caret is "‸"; the other end of the selection, "⟦". A line that begins with "§" is
/// bookmarked. Steps are separated by blanks: a key such as Ctrl+Left, a command as :uppercase, or
/// text to be typed in quotes. A file holds many cases:
///
///     == the case's name
///     settings indentMode=2 tabSize=4
///     clipboard a\nb
///     --- before
///     --- steps
///     --- after
struct EditCase {
    struct State {
        QString text;
        QCodeBufferPosition caret;
        QSelection selection;
        QList<int> bookmarks;
    };
    struct Step {
        enum class Kind { Key, Command, Text };
        Kind kind;
        QString text;
    };

    QString name; ///< with its folder
    CodeEditSettings settings;
    QString clipboard;
    State before;
    std::vector<Step> steps;
    State after;

    /// Of all files of the folders in `cases`.
    static std::vector<EditCase> all();
};

void prepare(const EditCase& editCase, CodeEditor& editor);
/// The editor's text with the marks of a case.
QString marked(const CodeEditor& editor);
QString marked(const EditCase::State& state);
