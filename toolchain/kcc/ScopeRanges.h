#pragma once

#include "toolchain/kcc/VariableLocations.h"

#include <string>
#include <vector>

/// A variable that is in different places at different times.
struct MovingVariable {
    TOBFScope* scope = nullptr; ///< the one it is declared in
    TOBFSymbol* symbol = nullptr;
    std::vector<RangedLocation> locations;
};

/// A scope of a function and the code it covers; `parent` is an index into the list, the function's
/// own scope being the first.
struct FunctionScope {
    TOBFScope* scope = nullptr;
    DwarfRange range;
    std::size_t parent = 0;
};

/// A symbol of the object model has one location. Where a variable moves, the innermost scope is
/// divided: each stretch of code in which no variable moves gets a block of its own, with symbols
/// for the moving variables that have a place there.
void divideScopes(ObjectConverter& converter, const std::vector<FunctionScope>& scopes,
                  const std::vector<MovingVariable>& variables);
