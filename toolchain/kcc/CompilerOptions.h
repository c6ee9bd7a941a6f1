#pragma once

#include "toolchain/common/Clang.h"
#include "toolchain/common/Options.h"
#include "toolchain/kcc/ObjectConverter.h"

#include <string>
#include <vector>

/// What a call of kcc asks for.
struct CompilerOptions {
    bool preprocessOnly = false;
    bool verbose = false;
    bool debugInformation = false;
    bool enforceAnsi = false;
    bool keepLocalsInMemory = false;
    std::string optimization = "-Os";
    std::string output;
    PreprocessorOptions preprocessor;
    SectionNames sections;
};

/// The command line as options of the tool; they write to `options`, which must outlive them.
std::vector<ToolOption> compilerOptionTable(CompilerOptions& options);
