#pragma once

#include "TestFolder.h"
#include "debugger/msp430/MSP430Debugger.h"
#include "target/TargetIOServer.h"
#include "target/msp430/MSP430Monitor.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

/// Builds sources of programs/ with these options of the compiler, and gives the executable's path.
std::string buildProgram(const TestFolder& folder, const std::vector<std::string>& sources,
                         const std::string& options);

/// A C program that the real tools have built, on the simulator, under the debugger.
class Session : public DebuggerHelperFunctions,
                public TargetIOServerHelperFunctions,
                public TargetIOServerTerminalInterface {
public:
    /// Builds and loads it.
    Session(const std::vector<std::string>& sources, const std::string& options);
    ~Session() override;

    const std::string& program() const { return m_program; }
    /// Where a mark stands.
    std::pair<Path, int> placeOf(const std::string& mark) const;
    MSP430Debugger& debugger() { return m_debugger; }
    MSP430Monitor& monitor() { return m_monitor; }

    /// Starts at the reset vector and runs to the mark.
    void startTo(const std::string& mark);
    DebuggerBreakpoint* breakAt(const std::string& mark);
    DebuggerBreakpoint* breakOn(const std::string& expression, const std::string& trigger = {});
    void go();
    void stepInto();
    void stepOver();
    void stepOut();
    /// Steps by instruction.
    void stepInstruction();
    void waitForStop();

    /// "function:mark or line" of a frame.
    std::string where(int frame = 0);
    /// All frames of functions with source, innermost first, separated by blanks.
    std::string callStack();
    /// The value of an expression in a frame, or the message of its failure.
    std::string value(const std::string& expression, int frame = 0);
    std::string locals(int frame = 0);

    std::string output;
    std::vector<std::string> errors;
    int exitCode = -1;

private:
    struct Mark {
        std::string name;
        Path file;
        int line;
    };

    void findMarks(const std::string& source);
    const Mark& mark(const std::string& name) const;

    void displayError(const QString& text) override { errors.push_back(text.toStdString()); }
    QString getDebugSourceText(const Path& path, int line) override;

    void errorOccurred(const char* text) override { errors.emplace_back(text); }
    void debugBreakOccurred() override { m_debugger.stop(); }
    void inputRequested() override { }
    void outputUpdated() override { }
    void exitOccurred(int code) override
    {
        exitCode = code;
        m_debugger.stop();
    }
    void loadSymbols(const char*, unsigned) override { }
    void addOutput(QString text) override { output += text.toStdString(); }
    QString getInputLine() override { return {}; }
    int inputLines() const override { return 0; }
    int getInputChar() override { return -1; }
    bool inputCharAvailable() const override { return false; }

    TestFolder m_folder;
    std::string m_program;
    std::vector<Mark> m_marks;
    MSP430Monitor m_monitor;
    MSP430Debugger m_debugger;
};
