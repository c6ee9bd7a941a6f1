#pragma once

#include "base/HException.h"

#include <functional>
#include <string>

/// The message with which the work fails; empty if it doesn't.
inline std::string messageOf(const std::function<void()>& work)
{
    try {
        work();
    } catch (const HException& failure) {
        return failure.message();
    }
    return {};
}
