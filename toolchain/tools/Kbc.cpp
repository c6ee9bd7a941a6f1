#include "toolchain/tools/Kbc.h"

#include "toolchain/common/ToolMain.h"

namespace {

constexpr ToolDescription Description = {
    "kbc", "[options] FILE -o OBJECT",
    "There is no Basic compiler in this toolchain. A program that takes these arguments can be put "
    "in\n"
    "its place; it has to write the native object file that -o names."};

} // namespace

void kbc(std::span<const std::string> words, Diagnostics& diagnostics)
{
    if (!answerToolHelp(Description, {}, words))
        diagnostics.fatal("no Basic compiler is installed");
}
