#pragma once

#include "objfile/model/TOBFFragment.h"

/// Where two stretches of a fragment's code end alike, and control doesn't leave either at its end
/// otherwise than by the last instruction, the later one jumps into the earlier.
void mergeTails(TOBFFragment* fragment);
