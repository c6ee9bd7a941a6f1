#pragma once

#include "debugger/views/VariableView.h"

/// The variables of a frame's function and, if the user wants them, the registers.
class LocalsVariableView : public VariableView {
public:
    using VariableView::VariableView;
    void update(Frame* frame) override;
};
