#include "editor/commands/KeyMap.h"

namespace {

struct Row {
    int code;
    EditCommand command;
};

constexpr int Shift = KeyMap::Shift;
constexpr int Ctrl = KeyMap::Ctrl;
constexpr int Alt = KeyMap::Alt;

using enum EditCommand;

constexpr Row Defaults[] = {
    {Qt::Key_Left, charLeft},
    {Shift + Qt::Key_Left, charLeftExtend},
    {Ctrl + Qt::Key_Left, wordLeft},
    {Shift + Ctrl + Qt::Key_Left, wordLeftExtend},
    {Qt::Key_Right, charRight},
    {Shift + Qt::Key_Right, charRightExtend},
    {Ctrl + Qt::Key_Right, wordRight},
    {Shift + Ctrl + Qt::Key_Right, wordRightExtend},
    {Qt::Key_Up, lineUp},
    {Shift + Qt::Key_Up, lineUpExtend},
    {Ctrl + Qt::Key_Up, scrollDown},
    {Alt + Qt::Key_Up, lineUpChunk},
    {Qt::Key_Down, lineDown},
    {Shift + Qt::Key_Down, lineDownExtend},
    {Ctrl + Qt::Key_Down, scrollUp},
    {Alt + Qt::Key_Down, lineDownChunk},
    {Qt::Key_Home, lineStartToggle},
    {Shift + Qt::Key_Home, lineStartToggleExtend},
    {Ctrl + Qt::Key_Home, documentStart},
    {Shift + Ctrl + Qt::Key_Home, documentStartExtend},
    {Qt::Key_End, lineEnd},
    {Shift + Qt::Key_End, lineEndExtend},
    {Ctrl + Qt::Key_End, documentEnd},
    {Shift + Ctrl + Qt::Key_End, documentEndExtend},
    {Qt::Key_PageUp, pageUp},
    {Shift + Qt::Key_PageUp, pageUpExtend},
    {Alt + Qt::Key_PageUp, topOfWindow},
    {Shift + Alt + Qt::Key_PageUp, topOfWindowExtend},
    {Qt::Key_PageDown, pageDown},
    {Shift + Qt::Key_PageDown, pageDownExtend},
    {Alt + Qt::Key_PageDown, bottomOfWindow},
    {Shift + Alt + Qt::Key_PageDown, bottomOfWindowExtend},
    {Qt::Key_Return, enter},
    {Qt::Key_Enter, enter},
    {Ctrl + Qt::Key_Return, breakLine},
    {Ctrl + Qt::Key_Enter, breakLine},
    {Shift + Ctrl + Qt::Key_Return, insertLineAbove},
    {Shift + Ctrl + Qt::Key_Enter, insertLineAbove},
    {Shift + Qt::Key_Return, insertLineBelow},
    {Shift + Qt::Key_Enter, insertLineBelow},
    {Ctrl + Qt::Key_A, selectAll},
    {Ctrl + Qt::Key_F8, selectLine},
    {Qt::Key_Insert, overwriteToggle},
    {Qt::Key_Backspace, deleteBack},
    {Shift + Qt::Key_Backspace, deleteBack},
    {Qt::Key_Delete, deleteForward},
    {Ctrl + Qt::Key_Backspace, deleteWordLeft},
    {Ctrl + Qt::Key_Delete, deleteWordRight},
    {Shift + Alt + Qt::Key_Right, lineIndent},
    {Shift + Alt + Qt::Key_Left, lineOutdent},
    {Qt::Key_Tab, tab},
    {Qt::Key_Backtab, backtab},
    {Shift + Qt::Key_Tab, backtab},
    {Shift + Qt::Key_Backtab, backtab},
    {Ctrl + Qt::Key_B, selectBlock},
    {Qt::Key_F3, findNext},
    {Shift + Qt::Key_F3, findPrev},
    {Ctrl + Qt::Key_F3, findNextSelected},
    {Shift + Ctrl + Qt::Key_F3, findPrevSelected},
    {Ctrl + Qt::Key_G, gotoLine},
    {Ctrl + Qt::Key_I, findIncremental},
    {Ctrl + Qt::Key_PageDown, findNextFunction},
    {Ctrl + Qt::Key_PageUp, findPrevFunction},
    {Ctrl + Qt::Key_BracketRight, matchDelimiter},
    {Shift + Ctrl + Qt::Key_BracketRight, matchDelimiterExtend},
    // What keyboards send for that one with Shift.
    {Shift + Ctrl + Qt::Key_BraceRight, matchDelimiterExtend},
    {Ctrl + Qt::Key_Insert, copy},
    {Ctrl + Qt::Key_C, copy},
    {Shift + Qt::Key_Delete, cut},
    {Ctrl + Qt::Key_X, cut},
    {Shift + Qt::Key_Insert, paste},
    {Ctrl + Qt::Key_V, paste},
    {Shift + Ctrl + Qt::Key_X, cutAppend},
    {Ctrl + Qt::Key_Z, undo},
    {Ctrl + Qt::Key_Y, redo},
    {Shift + Ctrl + Qt::Key_Delete, cutMarked},
    {Shift + Ctrl + Qt::Key_Semicolon, columnize},
    {Shift + Ctrl + Qt::Key_Colon, columnize},
};

constexpr Row Keypad[] = {
    {Qt::Key_Plus, copy},
    {Qt::Key_Minus, cut},
    {Qt::Key_Asterisk, undo},
    {Qt::Key_Slash, redo},
};

} // namespace

KeyMap::KeyMap()
{
    for (const Row& row : Defaults)
        set(row.code, row.command);
}

int KeyMap::code(int key, Qt::KeyboardModifiers modifiers)
{
    return key + (modifiers.testFlag(Qt::ShiftModifier) ? Shift : 0)
        + (modifiers.testFlag(Qt::ControlModifier) ? Ctrl : 0)
        + (modifiers.testFlag(Qt::AltModifier) ? Alt : 0);
}

std::optional<EditCommand> KeyMap::command(int code) const
{
    const auto found = m_commands.find(code);
    if (found == m_commands.end())
        return {};
    return *found;
}

std::optional<EditCommand> KeyMap::keypadCommand(int key)
{
    for (const Row& row : Keypad)
        if (row.code == key)
            return row.command;
    return {};
}
