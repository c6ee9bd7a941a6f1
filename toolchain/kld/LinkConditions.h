#pragma once

#include "objfile/model/TOBFModule.h"

#include <functional>

/// Finds the definition of a name, or null.
using SymbolLookup = std::function<TOBFSymbol*(HString* name)>;

/// Takes out of a module what stands between a LINKIF whose condition is zero and its ENDLINKIF,
/// and the two records themselves. A symbol that isn't defined counts as zero.
void resolveLinkConditions(TOBFModule* module, const SymbolLookup& find);
