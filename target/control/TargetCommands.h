#pragma once

/// Which commands on targets are enabled.
namespace TargetCommands {

enum Command : unsigned {
    ConnectSelected,
    DisconnectSelected,
    ReconnectSelected,
    DisconnectConnected,
    ReconnectConnected,
    ResetSelected,
    ResetConnected,
    EraseAll,
    EraseRange,
    LockAll,
    LockRange,
    UnlockAll,
    UnlockRange,
    Explore,
    Program,
    Upload,
};

/// The state that the commands depend on. The selected row's target is the one of the list; it may
/// be the connected one.
struct State {
    bool busy = false; ///< debugging or running
    bool rowSelected = false;
    bool rowConnected = false;
    unsigned rowCapabilities = 0;
    bool rowHasMemories = false;
    bool rowIsJTAG = false; ///< has a scan chain to explore
    bool connected = false; ///< any target
    unsigned connectedCapabilities = 0;
};

bool isEnabled(Command command, const State& state);

} // namespace TargetCommands
