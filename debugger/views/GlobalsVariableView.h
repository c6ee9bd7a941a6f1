#pragma once

#include "debugger/views/VariableView.h"

/// The public variables of the program.
class GlobalsVariableView : public VariableView {
public:
    using VariableView::VariableView;
    void update(Frame* frame) override;
};
