#pragma once

#include "editor/buffer/LineText.h"

/// One line of a buffer.
struct QCodeLine {
    enum Flag : unsigned { Bookmarked = 1 };
    static constexpr int UnknownState = -1;
    static constexpr int UnknownAddress = -1;

    LineText text;
    unsigned flags = 0;
    /// The parser's state at the start of the line. A negative one means that the line must be
    /// looked at again: its text or the state may have changed.
    int state = UnknownState;
    /// The address of the line's code, once someone has asked for it.
    int address = UnknownAddress;
};
