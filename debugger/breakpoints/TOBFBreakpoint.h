#pragma once

#include "debugger/breakpoints/BreakpointChain.h"
#include "debugger/breakpoints/DebuggerBreakpoint.h"
#include "target/HBreakpoint.h"

#include <memory>
#include <utility>

/// A breakpoint of a monitor, which has the record from when it is set until it is removed.
class TOBFBreakpoint final : public DebuggerBreakpoint {
public:
    /// What a step that ends here goes over: the bytes of its statement.
    struct Stepping {
        unsigned start;
        unsigned length;
        bool over;
    };

    explicit TOBFBreakpoint(std::unique_ptr<HBreakpoint> breakpoint)
    {
        m_chain.push_back(std::move(breakpoint));
    }
    /// Of one term or more.
    explicit TOBFBreakpoint(BreakpointChain chain) : m_chain(std::move(chain)) { }

    int getCount() override { return breakpoint()->count; }
    QString getDescription() override;
    QString getAddress() override;
    int getSize() override { return static_cast<int>(breakpoint()->length); }

    /// The head of the chain.
    HBreakpoint* breakpoint() const { return m_chain.back().get(); }
    bool isTemporary() const { return m_temporary; }
    void setTemporary(bool temporary) { m_temporary = temporary; }
    bool isStepping() const { return m_isStepping; }
    /// Of a breakpoint that ends a step.
    const Stepping& stepping() const { return m_stepping; }
    void setStepping(const Stepping& stepping)
    {
        m_isStepping = true;
        m_stepping = stepping;
    }

private:
    BreakpointChain m_chain;
    bool m_temporary = false;
    bool m_isStepping = false;
    Stepping m_stepping{};
};
