#pragma once

#include "debugger/breakpoints/BreakpointExpression.h"

#include <QString>

#include <functional>
#include <list>
#include <memory>
#include <vector>

class HMonitor;
class TOBFSection;
struct HBreakpoint;

/// What a breakpoint is to do at its place.
struct BreakpointRequest {
    int count = 0; ///< arrivals to pass over
    bool hardware = false;
    QString hardwareIndex; ///< decimal; empty for any
    QString trigger;       ///< by name; empty for the one that goes with the place
    QString action;        ///< by name; empty for a stop
};

/// The records of a breakpoint's terms, each of which names the one ahead of it as its next. The
/// last one is the head, which a monitor is given.
using BreakpointChain = std::vector<std::unique_ptr<HBreakpoint>>;

/// The section that an address lies in, or null.
using SectionOf = std::function<TOBFSection*(unsigned address)>;

/// Without a trigger's name code stops when it is executed, data and registers when they are
/// written. Names that the monitor doesn't know count as empty.
BreakpointChain makeBreakpointChain(const std::list<BreakpointExpression>& terms,
                                    const BreakpointRequest& request, HMonitor& monitor,
                                    const SectionOf& sectionOf);

/// The number in the text of a hardware index; -1 for any.
int hardwareIndex(const BreakpointRequest& request);
