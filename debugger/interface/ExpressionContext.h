#pragma once

#include "base/Path.h"

struct Frame;

/// In what scope an expression is read: a frame, and the place in the source that it stands at.
struct ExpressionContext {
    Frame* frame = nullptr;
    Path file;
    int line = 0; ///< 1-based; 0 for none
};
