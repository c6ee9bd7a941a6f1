#include "editor/commands/CodeEditor.h"

#include "editor/commands/MacroRecorder.h"

#include <QFile>

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

namespace {

/// What a file couldn't hold, or a line.
QString clean(const QString& text) { return TextEncoding::withLineFeeds(text).remove(QChar::Null); }

struct Wrapping {
    QStringView typed;
    QStringView before;
    QStringView after;
};
constexpr Wrapping Wrappings[] = {
    {u"\"", u"\"", u"\""},
    {u"()", u"(", u")"},
    {u"<>", u"<", u">"},
    {u"{}", u"{", u"}"},
};

} // namespace

void CodeEditor::typeText(const QString& typed)
{
    const QString text = clean(typed);
    if (text.isEmpty() || !okToModify())
        return;
    const bool plain = m_playing || macroRecorder().recordingState() != MacroRecorder::State::Idle;
    if (text == u" " && !plain && m_settings.expandTemplates) {
        if (const std::optional<QSelection> word = getTemplateParameters();
            word && expandTemplate(buffer().text(*word), word->begin, word->end))
            return;
    }
    if (selecting() && text.size() == 1 && wrapSelection(text[0]))
        return;

    bool merge = !selecting() && canMergeTyping(text);
    beginUpdate(0, CodeEditIcon::Typing);
    deleteSelection();
    if (s_overwriteMode && caret().column < buffer().length(caret().line)) {
        const Place at = caret();
        deleteText(at, {at.line, clusterAfter(at.line, at.column)});
        merge = false;
    }
    fillVirtualSpace();
    insertText(caret(), text);
    macroRecorder().recordCommand(EditCommand::insertTyped, text);
    checkIndent(false);
    endUpdate();
    if (m_settings.mateMatching == CodeEditSettings::MateMatching::Typing) {
        highlightMate();
        if (m_matchedPair.isValid())
            emit viewChanged(true, caret().line);
    }
    if (merge)
        mergeTyping();
}

/// With a selection, some characters go around it rather than into its place. In a macro it is only
/// the comment key that does so: a recording holds commands and plain text.
bool CodeEditor::wrapSelection(QChar typed)
{
    if (m_playing)
        return false;
    if (typed == u'/') {
        execute(EditCommand::swapCommentSelection);
        return true;
    }
    if (macroRecorder().recordingState() == MacroRecorder::State::Recording)
        return false;
    for (const Wrapping& wrapping : Wrappings) {
        if (!wrapping.typed.contains(typed))
            continue;
        surround(wrapping.before.toString(), wrapping.after.toString());
        return true;
    }
    return false;
}

void CodeEditor::moveSelection(QCodeBufferPosition place)
{
    const Place first = selection().first();
    const Place last = selection().last();
    if (!selecting() || (place >= first && place <= last) || !okToModify())
        return;
    const QString text = selectedText();
    // What goes ahead of the place takes it along.
    if (place > last) {
        if (place.line == last.line)
            place.column += first.column - last.column;
        place.line += first.line - last.line;
    }
    beginUpdate(0, CodeEditIcon::Move);
    deleteSelection();
    setCaret(place);
    const Place begin = caret();
    insert(text, CodeEditIcon::Move);
    select({begin, caret()});
    endUpdate();
}

void CodeEditor::surround(const QString& before, const QString& after)
{
    if (!selecting() || macroRecorder().recordingState() == MacroRecorder::State::Recording
        || !okToModify())
        return;
    const bool downwards = selection().begin <= selection().end;
    Place first = selection().first();
    Place last = selection().last();
    beginUpdate(0, CodeEditIcon::Surround);
    insertText(last, after);
    insertText(first, before);
    const int width = static_cast<int>(before.size());
    if (last.line == first.line)
        last.column += width;
    first.column += width;
    select(downwards ? QSelection{first, last} : QSelection{last, first});
    endUpdate();
}

void CodeEditor::cast(const QString& type)
{
    if (!okToModify())
        return;
    const QSelection word = wordAt(caret());
    const Place at = selecting() ? selection().first() : word.isValid() ? word.begin : caret();
    beginUpdate(Deselect, CodeEditIcon::Surround);
    insertText(at, u'(' + type + u')');
    endUpdate();
}

void CodeEditor::insert(const QString& text, CodeEditIcon icon)
{
    if (!okToModify())
        return;
    beginUpdate(Deselect, icon);
    fillVirtualSpace();
    insertText(caret(), clean(text));
    endUpdate();
}

/// A caret beyond the end of its line gets text to stand behind.
void CodeEditor::fillVirtualSpace()
{
    const Place at = caret();
    const int length = buffer().length(at.line);
    if (at.column <= length && at.line < std::max(1, count()))
        return;
    // Without virtual space it was indentation that put the caret there.
    if (virtualSpace() || length > 0) {
        sync(at);
        setCaret(at);
        return;
    }
    insertText({at.line, 0},
               getWhitespaceString(m_settings.useTabs, m_settings.tabSize, at.column, 0));
}

void CodeEditor::enter()
{
    beginUpdate(0, CodeEditIcon::Edit);
    deleteSelection();
    const int line = caret().line;
    // In a line without text the caret itself stands for the indentation.
    const bool blank = buffer().length(line) == 0;
    const int indent = blank ? screenColumn(caret()) : indentLength(line);
    const bool keepsIndent = m_settings.indentMode == CodeEditSettings::IndentMode::Indent;
    if (s_overwriteMode) {
        const int next = std::min(line + 1, std::max(0, count() - 1));
        setCaret(keepsIndent ? bufferPositionOf(next, indent) : Place{next, 0});
        endUpdate();
        return;
    }
    const int width = std::min(indent, screenColumn(caret()));
    if (caret().column > buffer().length(line))
        setCaret(endOfLine());
    insertText(caret(), u"\n"_s);
    if (keepsIndent) {
        if (buffer().length(line + 1) > 0) {
            insertWhitespace({line + 1, 0}, width);
            setCaret(bufferPositionOf(line + 1, width));
        } else {
            setCaret({line + 1, width}, true);
        }
    }
    checkIndent(true);
    endUpdate();
}

void CodeEditor::breakLine()
{
    const Place at = caret();
    beginUpdate(Deselect, CodeEditIcon::Edit);
    insertText(std::min(at, endOfLine()), u"\n"_s);
    setCaret(at);
    endUpdate(Deselect);
}

void CodeEditor::insertLineAbove()
{
    const int indent = indentLength(caret().line);
    beginUpdate(Deselect, CodeEditIcon::Edit);
    insertText(startOfLine(), u"\n"_s);
    setCaret({caret().line - 1, indent}, true);
    endUpdate(Deselect);
}

void CodeEditor::insertLineBelow()
{
    const int indent = indentLength(caret().line);
    beginUpdate(Deselect, CodeEditIcon::Edit);
    insertText(endOfLine(), u"\n"_s);
    setCaret({caret().line, indent}, true);
    endUpdate(Deselect);
}

void CodeEditor::overwriteToggle()
{
    s_overwriteMode = !s_overwriteMode;
    beginUpdate(KeepScroll);
    endUpdate(KeepScroll | Repaint);
}

void CodeEditor::insertFile()
{
    const QString path = m_host->fileToInsert();
    if (path.isEmpty())
        return;
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        const QString text = u"Can't open %1 for reading"_s.arg(path);
        emit message(text);
        prompts().warn(text);
        return;
    }
    insert(TextEncoding::textOf(file.readAll()));
}

// Templates

std::optional<QSelection> CodeEditor::getTemplateParameters() const
{
    const Place at = caret();
    const QStringView text = buffer().view(at.line);
    if (at.column > text.size())
        return {};
    qsizetype start = at.column;
    while (start > 0 && isWordChar(text[start - 1]))
        --start;
    const bool alone =
        text.left(start).trimmed().isEmpty() && text.mid(at.column).trimmed().isEmpty();
    if (start == at.column || !alone)
        return {};
    return QSelection{{at.line, static_cast<int>(start)}, at};
}

void CodeEditor::expandTemplate()
{
    const Place at = std::min(caret(), endOfLine());
    const QStringView text = buffer().view(at.line);
    int start = at.column;
    while (start > 0 && isWordChar(text[start - 1]))
        --start;
    const QString word = text.mid(start, at.column - start).toString();
    if (!expandTemplate(word, {at.line, start}, at))
        emit message(u"No template found for '%1'."_s.arg(word));
}

bool CodeEditor::expandTemplate(const QString& word, QCodeBufferPosition start,
                                QCodeBufferPosition end)
{
    const auto found = std::find_if(s_templates.begin(), s_templates.end(),
                                    [&](const CodeTemplate& row) { return row.keyword == word; });
    if (word.isEmpty() || found == s_templates.end() || !okToModify())
        return false;
    // The blank is a step of its own, so that undoing once leaves what was typed.
    setCaretPosition(end);
    beginUpdate(0, CodeEditIcon::Typing);
    insertText(end, u" "_s);
    endUpdate();

    beginUpdate(0, CodeEditIcon::Template);
    deleteBack();
    deleteText(start, end);
    setCaret(start);
    QString expansion = found->expansion;
    const qsizetype mark = expansion.indexOf(u'|');
    const QStringView ahead = QStringView(expansion).left(std::max<qsizetype>(0, mark));
    const auto line = static_cast<int>(ahead.count(u'\n'));
    const auto column = static_cast<int>(ahead.size() - ahead.lastIndexOf(u'\n') - 1);
    expansion.remove(u'|');
    expansion.replace(u"\n"_s, u'\n' + QString(start.column, u' '));
    insertText(start, expansion);
    if (mark > 0)
        setCaret({start.line + line, start.column + column});
    endUpdate();
    report(u"Expanded template '%1'"_s.arg(found->description));
    return true;
}
