#pragma once

#include "toolchain/kld/LinkImage.h"

/// Adds the images of initialised data, and the table from which start-up code copies them and
/// clears zeroed data, to the constants. An entry is three words: the address to fill, that of the
/// image or 0 to clear, and the size in bytes. Nothing is added if the program doesn't refer to the
/// table.
void addInitTable(LinkImage& image);
