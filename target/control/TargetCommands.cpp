#include "target/control/TargetCommands.h"

#include "target/TargetInterface.h"

namespace TargetCommands {

bool isEnabled(Command command, const State& state)
{
    using namespace TargetCapability;
    const bool idleRow = !state.busy && state.rowConnected;
    const auto row = [&](unsigned capabilities) {
        return idleRow && (state.rowCapabilities & capabilities) != 0;
    };
    switch (command) {
    case ConnectSelected: return state.rowSelected && !state.rowConnected;
    case DisconnectSelected:
    case ReconnectSelected: return state.rowConnected;
    case DisconnectConnected:
    case ReconnectConnected: return state.connected;
    case ResetSelected: return state.rowConnected && (state.rowCapabilities & Reset) != 0;
    case ResetConnected:
        return !state.busy && state.connected && (state.connectedCapabilities & Reset) != 0;
    case Command::EraseAll: return row(Erase | EraseAllOnly);
    case EraseRange: return row(Erase);
    case Command::LockAll: return row(Lock | LockAllOnly);
    case LockRange: return row(Lock);
    case Command::UnlockAll: return row(Unlock | UnlockAllOnly);
    case UnlockRange: return row(Unlock);
    case Explore: return !state.busy && state.rowSelected && !state.rowConnected && state.rowIsJTAG;
    case Program:
    case Upload: return idleRow && state.rowHasMemories;
    }
    return false;
}

} // namespace TargetCommands
