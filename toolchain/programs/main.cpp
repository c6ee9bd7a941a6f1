// The program around one tool; GANTRY_TOOL is its name and that of its function.

#include "toolchain/common/ToolMain.h"

#define TEXT_OF(name) #name
#define TOOL_NAME(name) TEXT_OF(name)

void GANTRY_TOOL(std::span<const std::string> words, Diagnostics& diagnostics);

int main(int argc, char** argv) { return runTool(TOOL_NAME(GANTRY_TOOL), GANTRY_TOOL, argc, argv); }
