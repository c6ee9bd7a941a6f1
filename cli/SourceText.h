#pragma once

#include "base/Path.h"

/// A line of a source file, 1-based, without the blanks around it; empty if there is none.
QString sourceText(const Path& path, int line);
