#include "debugger/views/GlobalsVariableView.h"

#include "debugger/interface/SymbolicDebuggerInterface.h"

void GlobalsVariableView::update(Frame* frame)
{
    beginUpdate();
    invalidate();
    debugger().getGlobalVariables(frame, this);
    cleanup();
    triggerUpdate();
}
