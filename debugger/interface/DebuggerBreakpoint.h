#pragma once

#include "target/TargetExceptions.h"

#include <QString>

/// A breakpoint that stands on the target, as the debugger's user sees it. Owned by the debugger.
class DebuggerBreakpoint {
public:
    virtual ~DebuggerBreakpoint() = default;

    /// Arrivals that are still let pass.
    virtual int getCount() const = 0;
    virtual QString getDescription() const = 0;
    /// "0x" and the address in hexadecimal, or "@r" and a register's number.
    virtual QString getAddress() const = 0;
    /// Bytes covered.
    virtual int getSize() const = 0;
    virtual bool isPermanent() const { return false; }
    virtual bool isVisible() const { return m_visible; }
    void setVisible(bool visible) { m_visible = visible; }

private:
    bool m_visible = true;
};
