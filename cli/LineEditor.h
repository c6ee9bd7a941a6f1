#pragma once

#include <QString>

#include <memory>

/// Reads lines from a terminal, with editing, and the history of earlier sessions. One at a time.
class LineEditor {
public:
    /// The history is kept in a file of that name in the user's folder.
    explicit LineEditor(const QString& historyName);
    ~LineEditor();
    LineEditor(const LineEditor&) = delete;
    LineEditor& operator=(const LineEditor&) = delete;

    enum class Input { Line, Interrupted, End };
    /// Reads a line, without its end.
    Input readLine(const QString& prompt, QString& line);

    /// Whether standard input and output are a terminal.
    static bool isTerminal();

private:
    struct State;
    std::unique_ptr<State> m_state;
};
