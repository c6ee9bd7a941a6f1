#pragma once

#include "debugger/interface/DebuggerBreakpoint.h"
#include "target/HBreakpoint.h"

#include <memory>
#include <vector>

/// A breakpoint on the target: one record, or a chain of those that must match together. The target
/// holds the head until the breakpoint is removed.
class TOBFBreakpoint final : public DebuggerBreakpoint {
public:
    /// The last record is the head; each is linked with the one before it.
    explicit TOBFBreakpoint(std::vector<std::unique_ptr<HBreakpoint>> chain, bool temporary);

    int getCount() const override { return head().count; }
    QString getDescription() const override;
    QString getAddress() const override;
    int getSize() const override { return static_cast<int>(head().length); }

    HBreakpoint& head() { return *m_chain.back(); }
    const HBreakpoint& head() const { return *m_chain.back(); }
    /// Goes at the next stop.
    bool isTemporary() const { return m_temporary; }

    /// What a step has to leave: met within the range, the breakpoint moves on.
    struct Step {
        bool over;
        unsigned start;
        unsigned length;
    };
    void setStep(const Step& step)
    {
        m_stepping = true;
        m_step = step;
    }
    bool isStepping() const { return m_stepping; }
    const Step& step() const { return m_step; }

private:
    std::vector<std::unique_ptr<HBreakpoint>> m_chain;
    bool m_temporary;
    bool m_stepping = false;
    Step m_step = {};
};
