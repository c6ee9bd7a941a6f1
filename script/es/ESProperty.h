#pragma once

#include "script/es/ESString.h"
#include "script/es/ESValue.h"

/// A named value of an object, or the template of a variable.
struct ESProperty {
    enum Flag : std::uint32_t {
        ReadOnly = 1,
        DontEnum = 2,
        DontDelete = 4,
        Parameter = 8 ///< of templates only
    };

    ESString* name = nullptr; ///< null for a deleted entry
    std::uint32_t flags = 0;
    ESValue value;
};
