#pragma once

#include "editor/commands/CodeEditor.h"

#include <QList>

/// What of a text is seen, as far as the drawing of each line depends on it: by comparing it with
/// what was seen before, only lines that look different are drawn again.
class ShownLines {
public:
    ShownLines() = default;
    /// Of the lines that are looked at, and the one that is seen in part.
    explicit ShownLines(CodeEditor& editor);

    /// Whether lines stand in the same places and are drawn in the same way.
    bool isComparable(const ShownLines& other) const;
    /// The numbers of the lines that differ from those of a comparable view.
    QList<int> changedSince(const ShownLines& before) const;

private:
    struct Line {
        bool exists = false;
        bool hasCaret = false;
        int state = 0;
        unsigned flags = 0;
        size_t text = 0;
        /// Columns of the selection, and of a pair of delimiters; -1 for none.
        int selectedFrom = -1;
        int selectedTo = -1;
        int firstMate = -1;
        int secondMate = -1;
        bool operator==(const Line&) const = default;
    };

    static Line lineOf(const CodeEditor& editor, int number);

    const CodeEditParser* m_parser = nullptr;
    CodeEditSettings m_settings;
    qsizetype m_ignoredWords = 0; ///< of the spell checker
    int m_topLine = -1;
    int m_leftColumn = 0;
    QList<Line> m_lines;
};
