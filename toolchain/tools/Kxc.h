#pragma once

#include "toolchain/common/Diagnostics.h"

#include <span>
#include <string>

/// `kxc [options] FILE…`: merges load files into one, cuts out a range, fills gaps, prints
/// checksums and compares.
void kxc(std::span<const std::string> words, Diagnostics& diagnostics);
