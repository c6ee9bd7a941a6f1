#pragma once

#include "base/Path.h"

#include <QString>

/// What the debugger asks of its owner: the window, the command line, a test.
class DebuggerHelperFunctions {
public:
    virtual ~DebuggerHelperFunctions() = default;

    virtual bool debuggerDisassemblyShowAddresses() { return false; }
    virtual bool debuggerDisassemblyShowLabels() { return true; }
    virtual bool debuggerDisassemblyShowSource() { return true; }
    /// Whether a step by instruction is left to the target.
    virtual bool debuggerUseHardwareStep() { return false; }
    virtual void displayError(const QString& text) = 0;
    /// Where a source file of the program lies on this machine.
    virtual Path getDebugSourcePath(const Path& path) { return path; }
    /// A line of a source file, 1-based; empty if there is none.
    virtual QString getDebugSourceText(const Path& path, int line) = 0;
};
