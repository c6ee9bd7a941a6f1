#pragma once

#include "target/TargetExceptions.h"

#include <QString>

/// What a line of source or a breakpoint of the list shows.
enum class BreakpointState {
    NotApplicable = 0,
    None = 1, ///< as a request: delete the breakpoint
    Enabled = 2,
    Disabled = 3,
    Invalid = 4, ///< wanted, but it couldn't be placed
};

/// A breakpoint that is placed in this session; the debugger owns it.
class DebuggerBreakpoint {
public:
    virtual ~DebuggerBreakpoint() = default;

    /// How many more arrivals are passed over.
    virtual int getCount() = 0;
    /// Its address, or the range.
    virtual QString getDescription() = 0;
    virtual QString getAddress() = 0;
    /// Bytes.
    virtual int getSize() = 0;
    virtual bool isPermanent() const { return false; }
    virtual bool isVisible() const { return m_visible; }
    void setVisible(bool visible) { m_visible = visible; }

private:
    bool m_visible = true;
};
