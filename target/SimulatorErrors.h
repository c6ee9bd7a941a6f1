#pragma once

#include <cstdint>

/// The faults of a simulated program: which of them stop a run, and the last that did.
class SimulatorErrors {
public:
    enum Number {
        UnsupportedOpcode = 0, ///< its address is the instruction word
        ReadOutside = 1,
        WriteOutside = 2,
        FetchOutside = 3,
        UninitialisedRead = 4,
        Misc = 5,
        UnalignedRead = 6,
        UnalignedWrite = 7,
        None = 8,
    };

    /// "Invalid Error" for a number that isn't one.
    static const char* text(int number);
    /// A text that isn't in the table counts as Misc.
    static Number numberOf(const char* text);

    void setEnabled(Number number, bool on);
    bool enabled(Number number) const { return (m_enabled >> number & 1) != 0; }
    void disableAll()
    {
        m_enabled = 0;
        m_mustStop = false;
    }

    /// A fault of the running instruction; the last one of a run counts.
    void raise(Number number, std::uint32_t address);
    void clearCurrent()
    {
        m_current = None;
        m_mustStop = false;
    }
    /// True if the current fault has to stop the run.
    bool mustStop() const { return m_mustStop; }
    /// Makes the current fault the one that stopped the run.
    void stopWithCurrent();

    /// Null while there is none.
    const char* lastText() const { return m_last == None ? nullptr : text(m_last); }
    std::uint32_t lastAddress() const { return m_lastAddress; }
    void clearLast() { m_last = None; }

private:
    std::uint32_t m_enabled = 0; ///< one bit a number; None is never set
    bool m_mustStop = false; ///< the current fault is an enabled one; asked after every instruction
    Number m_current = None;
    std::uint32_t m_currentAddress = 0;
    Number m_last = None;
    std::uint32_t m_lastAddress = 0;
};
