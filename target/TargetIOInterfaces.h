#pragma once

#include <QString>

/// What the debug I/O server asks of its host.
class TargetIOServerHelperFunctions {
public:
    virtual ~TargetIOServerHelperFunctions() = default;
    virtual void errorOccurred(const char* text) = 0;
    virtual void debugBreakOccurred() = 0;
    /// A request waits for a line or a character that the terminal doesn't have.
    virtual void inputRequested() = 0;
    virtual void outputUpdated() = 0;
    virtual void exitOccurred(int code) = 0;
    virtual void loadSymbols(const char* name, unsigned address) = 0;
};

/// The terminal of the running program. Characters are bytes, in QString as Latin-1.
class TargetIOServerTerminalInterface {
public:
    virtual ~TargetIOServerTerminalInterface() = default;
    virtual void addOutput(QString text) = 0;
    /// Takes the first complete line, without its end.
    virtual QString getInputLine() = 0;
    /// The number of complete lines.
    virtual int inputLines() const = 0;
    /// Takes the first character.
    virtual int getInputChar() = 0;
    virtual bool inputCharAvailable() const = 0;
    /// True if no more input will ever come, so that waiting for it makes no sense.
    virtual bool atEnd() const { return false; }
};
