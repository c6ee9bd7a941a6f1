#pragma once

#include "script/forth/X.h"

/// A running DO loop, over numbers or over addresses of one segment.
class Loop {
public:
    Loop(const X& limit, const X& start)
        : m_segment(start.is_data_addr() ? start.segment() : nullptr),
          m_index(bits(start)),
          m_limit(bits(limit))
    {
        static_cast<void>(limit < start); // throws unless one can follow the other
    }

    X index() const
    {
        return m_segment ? X(m_index, m_segment) : X(static_cast<long long>(m_index));
    }
    /// Makes the step. False at the loop's end.
    bool step() { return ++m_index != m_limit; }
    /// The same by `n`: it ends when the index crosses from below the limit to it, or back.
    bool step(qint64 n)
    {
        const auto distance = static_cast<qint64>(m_index - m_limit);
        m_index += static_cast<quint64>(n);
        const auto moved = static_cast<qint64>(m_index - m_limit);
        return ((distance ^ moved) & (distance ^ n)) >= 0;
    }

private:
    static quint64 bits(const X& x)
    {
        return static_cast<quint64>(x.is_data_addr() ? x.offset() : x.lit());
    }

    PMemory* m_segment;
    quint64 m_index;
    quint64 m_limit;
};
