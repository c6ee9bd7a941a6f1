#include "cli/Command.h"
#include "cli/ConvertCommand.h"

#include <vector>

std::span<const Command> commands()
{
    static const std::vector<Command> all = {
        {"convert", "IN OUT [--from ID] [--to ID] [--address A] [--fill BYTE]", convertCommand},
    };
    return all;
}
