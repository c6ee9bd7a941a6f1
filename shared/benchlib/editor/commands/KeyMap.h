#pragma once

#include "editor/commands/EditCommand.h"

#include <QHash>
#include <QList>
#include <Qt>

#include <optional>

/// Which key is which command in the editor, where no action of the program takes the key first.
///
/// A key code is Qt's key with a bit for each modifier.
class KeyMap {
public:
    static constexpr int Shift = 0x200000;
    static constexpr int Ctrl = 0x400000;
    static constexpr int Alt = 0x800000;

    /// The keys that editors come with.
    KeyMap();

    static int code(int key, Qt::KeyboardModifiers modifiers);
    std::optional<EditCommand> command(int code) const;
    /// Of a key of the numeric keypad, where those are for editing.
    static std::optional<EditCommand> keypadCommand(int key);
    /// Any other command of that key goes.
    void set(int code, EditCommand command) { m_commands.insert(code, command); }
    void remove(int code) { m_commands.remove(code); }
    QList<int> codes() const { return m_commands.keys(); }

private:
    QHash<int, EditCommand> m_commands;
};
