#pragma once

#include "target/TargetIOArguments.h"

#include <functional>
#include <string>

/// Where scanf reads from: one character of look-ahead over a line or a file.
class TargetIOScanSource {
public:
    static constexpr int End = -1;

    /// `read` gives the next character or End.
    explicit TargetIOScanSource(std::function<int()> read) : m_read(std::move(read)) { }
    int peek()
    {
        if (m_ahead == Nothing)
            m_ahead = m_read();
        return m_ahead;
    }
    int take()
    {
        const int c = peek();
        m_ahead = Nothing;
        ++m_taken;
        return c;
    }
    std::size_t taken() const { return m_taken; }
    /// The character that was looked at and not taken, or End: to be given back to a file.
    int left() const { return m_ahead == Nothing ? End : m_ahead; }

private:
    static constexpr int Nothing = -2;
    std::function<int()> m_read;
    int m_ahead = Nothing;
    std::size_t m_taken = 0;
};

/// Reads as scanf does, with the pointers among the arguments in target memory. Returns the number
/// of items stored, or -1 if the input ends before the first.
int scanTargetFormat(const std::string& format, TargetIOScanSource& source,
                     TargetIOArguments& arguments);
