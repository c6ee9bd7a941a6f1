#pragma once

class SymbolicDebug;
class TargetRegisterInterface;

/// One function of the call stack.
struct Frame {
    /// That of the executable which holds its PC; null if no executable is loaded.
    SymbolicDebug* symbols = nullptr;
    /// The registers as they will be when the functions it has called have returned. Those of the
    /// innermost frame are the target's own.
    TargetRegisterInterface* registers = nullptr;
    /// The innermost frame, whose registers may be set.
    bool live = false;
};
