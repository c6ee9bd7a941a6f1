#pragma once

#include "toolchain/kld/Layout.h"

#include <string>

/// Writes what was placed where: memory, sections with their items, and symbols by name and by
/// address. Throws HException if the file can't be written.
void writeMap(LinkImage& image, const Layout& layout, const std::string& path);
