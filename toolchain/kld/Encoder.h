#pragma once

#include "toolchain/kld/LinkImage.h"

/// Computes the bytes of every item. Values that don't fit where they are to stand are errors.
void encodeImage(LinkImage& image);
