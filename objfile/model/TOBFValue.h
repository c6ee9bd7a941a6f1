#pragma once

#include <cstdint>
#include <string>

class TOBFSection;

/// What an expression evaluates to. Failures travel in it; nothing is thrown.
struct TOBFValue {
    bool failed = false;
    std::int64_t value = 0;
    std::int32_t codelet = -1;
    bool patchable = false;
    bool patched = false;
    /// Why it failed, or empty.
    std::string message;
    /// What the value is relative to; null for an absolute value.
    TOBFSection* section = nullptr;

    static TOBFValue failure(std::string message)
    {
        TOBFValue result;
        result.failed = true;
        result.message = std::move(message);
        return result;
    }
};
