#include "debugger/views/LocalsVariableView.h"

#include "debugger/interface/SymbolicDebuggerInterface.h"
#include "debugger/views/ViewSettings.h"

void LocalsVariableView::update(Frame* frame)
{
    beginUpdate();
    invalidate();
    debugger().getLocalVariables(frame, this);
    if (ViewSettings::localsDisplayRegisters())
        debugger().getRegisters(frame, this);
    cleanup();
    triggerUpdate();
}
