#pragma once

#include <QString>

/// The commands of the editor by number.
enum class EditCommand {
#define COMMAND(name, kind) name,
#include "editor/commands/EditCommands.inc"
};

inline constexpr int EditCommandCount = 0
#define COMMAND(name, kind) +1
#include "editor/commands/EditCommands.inc"
    ;

static_assert(static_cast<int>(EditCommand::insertTyped) == 120);

enum class EditCommandKind {
    Motion, ///< repeated by the argument
    Edit,   ///< needs a document that can be edited
    View,
};

EditCommandKind kindOf(EditCommand command);
QString nameOf(EditCommand command);
/// False, with `command` as it was, for a name that isn't one.
bool commandFromName(QStringView name, EditCommand& command);
