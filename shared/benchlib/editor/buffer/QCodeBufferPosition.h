#pragma once

#include <algorithm>
#include <compare>

/// A place in a text: line and column from 0. The column counts the line's 16-bit units, so a tab
/// counts 1. -1 in either marks the absence of a place.
struct QCodeBufferPosition {
    int line = 0;
    int column = 0;

    bool isValid() const { return line >= 0 && column >= 0; }
    auto operator<=>(const QCodeBufferPosition&) const = default;
};

inline constexpr QCodeBufferPosition NoPosition{-1, -1};

/// Two places in the order in which they were set: the end is where the caret went, which may be
/// ahead of the beginning.
struct QSelection {
    QCodeBufferPosition begin = NoPosition;
    QCodeBufferPosition end = NoPosition;

    bool isValid() const { return begin.isValid() && end.isValid(); }
    QCodeBufferPosition first() const { return std::min(begin, end); }
    QCodeBufferPosition last() const { return std::max(begin, end); }
    bool operator==(const QSelection&) const = default;
};
