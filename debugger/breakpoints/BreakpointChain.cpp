#include "debugger/breakpoints/BreakpointChain.h"

#include "objfile/model/TOBFSection.h"
#include "target/HBreakpoint.h"
#include "target/HMonitor.h"

namespace {

constexpr int AnyHardware = -1;

/// Where a name stands among those of a monitor; `otherwise` if it doesn't.
int indexOf(const QString& name, int count, const std::function<const char*(int)>& nameOf,
            int otherwise)
{
    if (!name.isEmpty())
        for (int i = 0; i < count; ++i)
            if (name == QString::fromLatin1(nameOf(i)))
                return i;
    return otherwise;
}

int actionOf(const BreakpointRequest& request, HMonitor& monitor)
{
    return indexOf(
        request.action, monitor.numActions(), [&](int i) { return monitor.getAction(i); },
        monitor.getStopActionNumber());
}

bool holdsCode(const TOBFSection* section)
{
    return section != nullptr
        && (section->sectionKind() == SectionKind::Unspecified
            || section->sectionKind() == SectionKind::Code);
}

bool holdsData(const TOBFSection* section)
{
    return section != nullptr
        && (section->sectionKind() == SectionKind::Data
            || section->sectionKind() == SectionKind::Zeroed
            || section->sectionKind() == SectionKind::Const);
}

/// Sets the trigger; on code a term is one address long.
void setTrigger(HBreakpoint& breakpoint, const BreakpointRequest& request, HMonitor& monitor,
                const SectionOf& sectionOf)
{
    constexpr int None = -1;
    const int named = indexOf(
        request.trigger, monitor.numTriggers(), [&](int i) { return monitor.getTrigger(i); }, None);
    int trigger = named;
    if (named == None && breakpoint.isRegister) {
        trigger = monitor.getWriteTriggerNumber();
    } else if (named == None) {
        const TOBFSection* section = sectionOf(breakpoint.address);
        trigger = holdsData(section) ? monitor.getWriteTriggerNumber()
                                     : monitor.getExecuteTriggerNumber();
        if (holdsCode(section))
            breakpoint.length = 1;
    }
    breakpoint.trigger = static_cast<std::uint32_t>(trigger);
}

} // namespace

int hardwareIndex(const BreakpointRequest& request)
{
    bool isNumber = false;
    const int index = request.hardwareIndex.toInt(&isNumber);
    return request.hardware && isNumber ? index : AnyHardware;
}

BreakpointChain makeBreakpointChain(const std::list<BreakpointExpression>& terms,
                                    const BreakpointRequest& request, HMonitor& monitor,
                                    const SectionOf& sectionOf)
{
    BreakpointChain chain;
    for (const BreakpointExpression& term : terms) {
        auto breakpoint = std::make_unique<HBreakpoint>();
        term.applyTo(*breakpoint);
        setTrigger(*breakpoint, request, monitor, sectionOf);
        breakpoint->action = static_cast<std::uint32_t>(actionOf(request, monitor));
        breakpoint->count = request.count;
        breakpoint->hardware = request.hardware;
        breakpoint->hardwareIndex = hardwareIndex(request);
        breakpoint->next = chain.empty() ? nullptr : chain.back().get();
        chain.push_back(std::move(breakpoint));
    }
    return chain;
}
