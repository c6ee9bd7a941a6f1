#include "editor/commands/EditCommand.h"

#include <QHash>

#include <iterator>

namespace {

struct Row {
    QStringView name;
    EditCommandKind kind;
};

constexpr Row Rows[] = {
#define COMMAND(name, kind) {u"" #name, EditCommandKind::kind},
#include "editor/commands/EditCommands.inc"
};

static_assert(std::size(Rows) == EditCommandCount);

const Row& row(EditCommand command) { return Rows[static_cast<std::size_t>(command)]; }

} // namespace

EditCommandKind kindOf(EditCommand command) { return row(command).kind; }

QString nameOf(EditCommand command) { return row(command).name.toString(); }

bool commandFromName(QStringView name, EditCommand& command)
{
    static const QHash<QStringView, EditCommand> commands = [] {
        QHash<QStringView, EditCommand> result;
        for (int i = 0; i < EditCommandCount; ++i)
            result.insert(Rows[i].name, static_cast<EditCommand>(i));
        return result;
    }();
    const auto found = commands.find(name);
    if (found == commands.end())
        return false;
    command = *found;
    return true;
}
