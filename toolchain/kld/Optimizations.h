#pragma once

#include "toolchain/kld/LinkImage.h"

/// Carries out what -O asks for, before addresses are given out:
///
/// - peepholes: a branch to an address becomes a jump, and turns back into a branch where it
/// doesn't
///   reach
/// - jump threading: a jump to an unconditional jump goes to that one's target
/// - tail merging: of two functions' equal ends one is kept, and the other jumps there
void optimize(LinkImage& image);
