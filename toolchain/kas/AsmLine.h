#pragma once

#include "base/HString.h"
#include "toolchain/common/Diagnostics.h"

#include <memory>
#include <string>
#include <string_view>
#include <vector>

/// What is wrong with a statement; becomes a diagnostic at the statement's place.
struct AsmError {
    std::string text;
};

/// One statement's text, without comments, and where it was written.
struct AsmLine {
    std::string text;
    HString* file;
    int line; ///< from 1

    SourceLocation where() const { return {file->str(), line}; }
};

using AsmLines = std::vector<AsmLine>;
using AsmLinesPtr = std::shared_ptr<const AsmLines>;

/// Splits a source text into statements: one a line, or several with "{" between them. Comments are
/// those behind ";" and "//", those between "/*" and "*/", and lines that begin with "#"; of these,
/// `# LINE "FILE"` sets the place of what follows. Files so named are added to `files`.
AsmLinesPtr splitAssembly(std::string_view text, const std::string& fileName,
                          std::vector<std::string>* files = nullptr);
