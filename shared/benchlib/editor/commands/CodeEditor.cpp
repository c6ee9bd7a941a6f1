#include "editor/commands/CodeEditor.h"

#include "editor/commands/MacroRecorder.h"

#include <algorithm>
#include <utility>

using namespace Qt::Literals::StringLiterals;

bool CodeEditor::s_overwriteMode = false;
QList<CodeTemplate> CodeEditor::s_templates;

namespace {

CodeEditorHost& noHost()
{
    static CodeEditorHost host;
    return host;
}

using Operation = void (CodeEditor::*)();

/// Null for a command of the host.
constexpr Operation Operations[] = {
#define COMMAND(name, kind) static_cast<Operation>(&CodeEditor::name),
#define HOST_COMMAND(name, kind) nullptr,
#include "editor/commands/EditCommands.inc"
};

} // namespace

CodeEditor::CodeEditor(QObject* parent) : CodeDocument(parent), m_host(&noHost()) { }

void CodeEditor::setHost(CodeEditorHost* host)
{
    m_host = host ? host : &noHost();
    setPrompts(m_host);
}

void CodeEditor::setSettings(const CodeEditSettings& settings)
{
    m_settings = settings;
    setVirtualSpace(settings.virtualSpace);
    setEditReadOnly(settings.editReadOnly);
    beginUpdate(KeepScroll);
    endUpdate(KeepScroll | Repaint);
}

void CodeEditor::execute(EditCommand command)
{
    macroRecorder().recordCommand(command);
    const EditCommandKind kind = kindOf(command);
    if (kind == EditCommandKind::Edit && !okToModify())
        return;
    const Operation operation = Operations[static_cast<std::size_t>(command)];
    const int times = kind == EditCommandKind::Motion ? argument() : 1;
    m_argument = 0;
    if (!operation) {
        m_host->carryOut(command);
        return;
    }
    for (int i = 0; i < times; ++i)
        (this->*operation)();
}

bool CodeEditor::isAvailable(EditCommand command) const
{
    if (kindOf(command) == EditCommandKind::Edit && !canEdit())
        return false;
    switch (command) {
    case EditCommand::undo:
    case EditCommand::undoAll: return canUndo();
    case EditCommand::redo:
    case EditCommand::redoAll: return canRedo();
    case EditCommand::cut:
        return selecting() || m_settings.cutAction != CodeEditSettings::LineAction::Nothing;
    case EditCommand::copy:
        return selecting() || m_settings.copyAction != CodeEditSettings::LineAction::Nothing;
    case EditCommand::swapAnchors: return selecting();
    case EditCommand::paste:
    case EditCommand::pasteAsString:
    case EditCommand::pasteAsComment:
    case EditCommand::pasteAsHTML: return m_host->hasClipboardText();
    case EditCommand::pasteAll:
    case EditCommand::cycleClipboardRing: return !clipboardRing().texts().isEmpty();
    default: return true;
    }
}

void CodeEditor::playRecording()
{
    MacroRecorder& recorder = macroRecorder();
    if (recorder.recordingState() != MacroRecorder::State::Idle)
        return;
    const std::vector<MacroRecorder::Step> steps = recorder.steps();
    const bool edits = std::any_of(steps.begin(), steps.end(), [](const MacroRecorder::Step& step) {
        return kindOf(step.command) == EditCommandKind::Edit;
    });
    if (edits && !okToModify())
        return;
    m_playing = true;
    beginUpdate(0, CodeEditIcon::None);
    for (const MacroRecorder::Step& step : steps) {
        if (step.command == EditCommand::insertTyped)
            typeText(step.text);
        else
            execute(step.command);
    }
    endUpdate(Repaint);
    m_playing = false;
}

void CodeEditor::setArgument(int count)
{
    m_argument = std::max(0, count);
    if (m_argument > 0)
        emit message(u"Argument: %1"_s.arg(m_argument));
}

#define ARGUMENT(count)                                                                            \
    void CodeEditor::setArgument##count() { setArgument(count); }
ARGUMENT(0)
ARGUMENT(1)
ARGUMENT(2)
ARGUMENT(3)
ARGUMENT(4)
ARGUMENT(5)
ARGUMENT(6)
ARGUMENT(7)
ARGUMENT(8)
ARGUMENT(9)
#undef ARGUMENT

int CodeEditor::argument() { return std::max(1, std::exchange(m_argument, 0)); }

bool CodeEditor::enterArgumentDigit(int digit)
{
    // Nobody means more; a slip of the hand must not keep the editor busy.
    constexpr int largest = 99'999;
    if (m_argument == 0)
        return false;
    setArgument(std::min(largest, m_argument * 10 + digit));
    return true;
}

QString CodeEditor::statusNote() const
{
    return u"Ln %1 Col %2"_s.arg(caret().line + 1).arg(screenColumn(caret()) + 1);
}

void CodeEditor::aboutToSave()
{
    const bool cleanTabs = m_settings.cleanupTabsOnSave != CodeEditSettings::TabCleanup::None;
    if (!m_settings.deleteTrailingSpaceOnSave && !cleanTabs)
        return;
    const int top = m_topLine;
    const Place kept = caret();
    beginUpdate(KeepScroll);
    if (m_settings.deleteTrailingSpaceOnSave)
        deleteTrailingWhitespace();
    if (m_settings.cleanupTabsOnSave == CodeEditSettings::TabCleanup::ToSpaces)
        untabify(0, count() - 1);
    else if (cleanTabs)
        tabify(0, count() - 1);
    setCaret(kept);
    endUpdate(KeepScroll);
    setTopLine(top);
}

// Screen columns

int CodeEditor::screenColumn(QCodeBufferPosition position) const
{
    const QStringView text = buffer().view(position.line);
    const QStringView ahead = text.left(std::min<qsizetype>(position.column, text.size()));
    if (!ahead.contains(u'\t'))
        return position.column;
    int column = 0;
    for (const QChar c : ahead)
        column = c == u'\t' ? (column / m_settings.tabSize + 1) * m_settings.tabSize : column + 1;
    return column + position.column - static_cast<int>(ahead.size());
}

QCodeBufferPosition CodeEditor::bufferPositionOf(int line, int screenColumn) const
{
    const QStringView text = buffer().view(line);
    if (!text.contains(u'\t'))
        return {line, screenColumn};
    int column = 0;
    int at = 0;
    for (; at < text.size() && column < screenColumn; ++at)
        column =
            text[at] == u'\t' ? (column / m_settings.tabSize + 1) * m_settings.tabSize : column + 1;
    return {line, at + std::max(0, screenColumn - column)};
}

QSelection CodeEditor::wordAt(QCodeBufferPosition position) const
{
    const QStringView text = buffer().view(position.line);
    int begin = std::clamp(position.column, 0, static_cast<int>(text.size()));
    int end = begin;
    while (begin > 0 && isWordChar(text[begin - 1]))
        --begin;
    while (end < text.size() && isWordChar(text[end]))
        ++end;
    if (begin == end)
        return {};
    return {{position.line, begin}, {position.line, end}};
}

QString CodeEditor::wordUnder(QCodeBufferPosition position) const
{
    const QSelection word = wordAt(position);
    return word.isValid() ? buffer().text(word) : QString();
}
