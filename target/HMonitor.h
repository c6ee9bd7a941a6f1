#pragma once

#include "target/HBreakpoint.h"
#include "target/TOBFTargetInterface.h"

/// A target that can be watched: breakpoints, triggers, actions, trace and execution counts. The
/// defaults are those of a monitor that can do none of it.
class HMonitor : public TOBFTargetInterface {
public:
    using TOBFTargetInterface::TOBFTargetInterface;

    virtual int numErrors() { return 0; }
    virtual const char* getError(int) { return nullptr; }
    virtual bool errorEnabled(const char*) { return false; }
    virtual void setErrorEnabled(const char*, bool) { }
    /// The text of the error that stopped the last run and its address; null if none did.
    virtual const char* lastError(unsigned&) { return nullptr; }
    virtual bool setBreakpoint(HBreakpoint*) { return false; }
    virtual bool removeBreakpoint(HBreakpoint*) { return false; }
    /// The breakpoint that caused the last stop, or null.
    virtual HBreakpoint* matched() { return nullptr; }
    virtual bool canChain() { return false; }
    virtual int numTriggers() { return 0; }
    virtual const char* getTrigger(int) { return nullptr; }
    virtual int getExecuteTriggerNumber() { return 0; }
    virtual int getWriteTriggerNumber() { return 0; }
    virtual int numActions() { return 1; }
    virtual const char* getAction(int) { return "Stop"; }
    virtual int getStopActionNumber() { return 0; }
    virtual int numHardwareBreakpoints() { return 0; }
    virtual bool hardwareBreakpointInUse(int) { return false; }
    virtual void setTraceEnabled(bool) { }
    virtual bool getTraceEnabled() { return false; }
    virtual void resetTrace() { }
    /// Positions at the oldest entry.
    virtual void iterateTrace() { }
    /// True while entries remain.
    virtual bool getNextTrace(unsigned& /*address*/, unsigned& /*data*/, unsigned& /*cycles*/)
    {
        return false;
    }
    virtual void setExecutionCountEnabled(bool) { }
    virtual bool getExecutionCountEnabled() { return false; }
    virtual void resetExecutionCount() { }
    virtual void iterateExecutionCount() { }
    /// Only addresses with a count above 0 are returned.
    virtual bool getNextExecutionCount(unsigned& /*address*/, unsigned& /*count*/,
                                       unsigned& /*extra*/)
    {
        return false;
    }
};
