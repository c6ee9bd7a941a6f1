#pragma once

#include "script/forth/X.h"

#include <array>

/// A stack of 512 cells.
class Stack {
public:
    static constexpr int Capacity = 512;

    /// What is thrown when it runs out of cells, or of room.
    Stack(ForthError underflow, ForthError overflow) : m_underflow(underflow), m_overflow(overflow)
    {
    }

    void push(X value)
    {
        if (m_depth == Capacity)
            throw ForthException(m_overflow);
        m_cells[static_cast<std::size_t>(m_depth++)] = std::move(value);
    }
    X pop()
    {
        demand(1);
        return std::move(m_cells[static_cast<std::size_t>(--m_depth)]);
    }
    /// The cell below `n` others, without taking it. May be changed in place.
    X& pick(qint64 n)
    {
        if (n < 0 || n >= m_depth)
            throw ForthException(m_underflow);
        return m_cells[static_cast<std::size_t>(m_depth - 1 - n)];
    }
    /// Throws if fewer than `count` cells are there.
    void demand(int count) const
    {
        if (m_depth < count)
            throw ForthException(m_underflow);
    }
    int depth() const { return m_depth; }
    /// Drops cells, or brings back places whose values mean nothing any more.
    void set_depth(int depth)
    {
        while (m_depth > depth)
            pop();
        m_depth = depth;
    }

private:
    std::array<X, Capacity> m_cells;
    int m_depth = 0;
    ForthError m_underflow;
    ForthError m_overflow;
};
