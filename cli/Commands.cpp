#include "cli/BuildCommand.h"
#include "cli/CheckCommand.h"
#include "cli/Command.h"
#include "cli/ConvertCommand.h"
#include "cli/DumpCommand.h"
#include "cli/ForthCommand.h"
#include "cli/PackCommand.h"
#include "cli/RunCommand.h"
#include "cli/ScriptCommand.h"
#include "cli/TargetCommand.h"

#include <vector>

std::span<const Command> commands()
{
    static const std::vector<Command> all = {
        {"build",
         "SOLUTION [--configuration NAME]... [--project NAME] [--batch] [--rebuild|--clean] "
         "[--command-lines] [--export] [--set NAME=VALUE]...",
         buildCommand},
        {"check", "FILE...", checkCommand},
        {"convert", "IN OUT [--from ID] [--to ID] [--address A] [--fill BYTE]", convertCommand},
        {"dump", "FILE [--sections] [--symbols] [--types] [--lines] [--listing] [--disassembly]",
         dumpCommand},
        {"forth", "[--program PROGRAM [--device NAME]] [FILE...]", forthCommand},
        {"pack", "SOLUTION OUT", packCommand},
        {"run",
         "PROGRAM [--device NAME] [--type ID] [--address A] [--fill BYTE] [--pc A] [--steps N] "
         "[--max-cycles N] "
         "[--break EXPR]... [--stdin FILE] [--peripherals FILE] [--trace N] [--counts] "
         "[--registers] [--stats] "
         "[-- ARG...]",
         runCommand},
        {"script",
         "[FILE] [--program PROGRAM [--device NAME] | --solution SOLUTION [--project NAME] "
         "[--configuration NAME] [--target NAME]] [-- ARG...]",
         scriptCommand},
        {"target",
         "list | program FILE [--erase-all] [--no-verify] | verify FILE | erase|lock|unlock [FILE] "
         "| "
         "upload OUT  [--address A] [--size N] [--type ID] [--target NAME] [--device NAME] "
         "[--memory NAME]  [then ACTION...]",
         targetCommand},
    };
    return all;
}
