#pragma once

#include <cstdint>

/// One breakpoint as a monitor sees it. The debugger fills and owns the record; the monitor keeps a
/// pointer to it from `setBreakpoint` to `removeBreakpoint`.
struct HBreakpoint {
    enum Comparison : std::uint32_t {
        Equal = 0,
        GreaterOrEqual = 1,
        LessOrEqual = 2,
        NotEqual = 3
    };

    bool enabled = true;
    std::uint32_t address = 0; ///< or the register number
    bool isRegister = false;
    std::uint32_t length = 1;  ///< bytes covered
    std::uint32_t trigger = 0; ///< index into the monitor's triggers; 0 is execute
    std::int32_t count = 0;    ///< the debugger's; no monitor reads it
    bool inverse = false;      ///< matches outside the range
    bool valued = false;       ///< compares data as well
    bool hardware = false;     ///< needs a hardware comparator
    std::int32_t hardwareIndex = -1;
    bool flag = false;
    std::uint32_t mask = 0xFFFFFFFF;
    std::uint32_t value = 0;
    HBreakpoint* next = nullptr;      ///< next term of a chain, all of which must match
    HBreakpoint* enabledBy = nullptr; ///< when that one matches, this one is armed instead
    std::uint32_t action = 0;         ///< index into the monitor's actions; 0 stops
    std::uint32_t comparison = Equal;
};
