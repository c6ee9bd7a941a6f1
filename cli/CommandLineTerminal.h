#pragma once

#include "target/TargetIOInterfaces.h"

#include <string>

/// The debug terminal on standard output and a file descriptor for input, which is read only when
/// the program asks for something.
class CommandLineTerminal : public TargetIOServerTerminalInterface {
public:
    /// `path`: the input; empty for standard input. Throws HException if it can't be opened.
    explicit CommandLineTerminal(const std::string& path);
    ~CommandLineTerminal() override;

    void addOutput(QString text) override;
    QString getInputLine() override;
    int inputLines() const override;
    int getInputChar() override;
    bool inputCharAvailable() const override;
    bool atEnd() const override;

    /// Waits until there is a line or the input is at its end.
    void waitForLine();
    /// True once the program has asked for input many times behind its end.
    bool askedTooOften() const { return m_questionsAtEnd > MostQuestions; }

private:
    static constexpr int MostQuestions = 10000;

    bool hasLine() const;
    void readSome() const;
    bool readable() const;

    int m_descriptor = 0;
    mutable std::string m_input;
    mutable bool m_ended = false;
    mutable int m_questionsAtEnd = 0;
};
