#pragma once

#include "base/Path.h"

struct Frame;

/// In what scope an expression is read: that of a frame, seen from a line of source.
struct ExpressionContext {
    Frame* frame = nullptr;
    Path file;
    int line = -1; ///< from 1; -1 for none
};
