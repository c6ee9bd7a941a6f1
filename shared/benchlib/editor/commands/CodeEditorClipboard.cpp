// The clipboard, its ring, and bookmarks, by which lines are cut and copied too.

#include "editor/commands/CodeEditor.h"

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

QString CodeEditor::clipText(Clip what) const
{
    if (what == Clip::Selection)
        return selectedText();
    QStringList lines;
    if (what == Clip::Lines) {
        const auto [first, last] = affectedLines();
        lines = linesBetween(first, last);
    } else {
        for (const int line : bookmarkLines())
            lines.append(buffer().text(line));
    }
    return lines.isEmpty() ? QString() : lines.join(u'\n') + u'\n';
}

void CodeEditor::copyClip(Clip what, bool append)
{
    const QString text = clipText(what);
    if (text.isEmpty())
        return;
    const QString whole = append ? m_host->clipboardText() + text : text;
    m_host->setClipboardText(whole);
    clipboardRing().add(whole);
    emit textCopied(text);
    report(append ? u"Selection appended to clipboard"_s : u"Selection copied to clipboard"_s);
}

void CodeEditor::cutClip(Clip what, bool append)
{
    const QString text = clipText(what);
    if (text.isEmpty())
        return;
    copyClip(what, append);
    beginUpdate(0, CodeEditIcon::Cut);
    if (what == Clip::Selection) {
        deleteSelection();
    } else {
        const auto [first, last] = affectedLines();
        QList<int> lines = bookmarkLines();
        if (what == Clip::Lines) {
            lines.clear();
            for (int line = first; line <= last; ++line)
                lines.append(line);
        }
        Place kept = caret();
        kept.line -= static_cast<int>(
            std::count_if(lines.begin(), lines.end(), [&](int line) { return line < kept.line; }));
        // Whole lines go back to where a line begins.
        if (what == Clip::Lines)
            kept = {first, 0};
        dropSelection();
        for (auto line = lines.rbegin(); line != lines.rend(); ++line) {
            setCaret({*line, 0});
            deleteLine();
        }
        setCaret(kept);
    }
    endUpdate(Repaint);
    emit textCut(text);
}

void CodeEditor::cut()
{
    using enum CodeEditSettings::LineAction;
    if (!selecting() && m_settings.cutAction == Line) {
        cutLines();
        return;
    }
    if (!selecting() && m_settings.cutAction == Word)
        selectWord();
    cutClip(Clip::Selection, false);
}

void CodeEditor::copy()
{
    using enum CodeEditSettings::LineAction;
    if (!selecting() && m_settings.copyAction == Line) {
        copyLines();
        return;
    }
    if (!selecting() && m_settings.copyAction == Word)
        selectWord();
    copyClip(Clip::Selection, false);
}

void CodeEditor::cutAppend() { cutClip(Clip::Selection, true); }
void CodeEditor::cutLines() { cutClip(Clip::Lines, false); }
void CodeEditor::cutLinesAppend() { cutClip(Clip::Lines, true); }
void CodeEditor::cutMarked() { cutClip(Clip::Marked, false); }
void CodeEditor::cutMarkedAppend() { cutClip(Clip::Marked, true); }
void CodeEditor::copyAppend() { copyClip(Clip::Selection, true); }
void CodeEditor::copyLines() { copyClip(Clip::Lines, false); }
void CodeEditor::copyLinesAppend() { copyClip(Clip::Lines, true); }
void CodeEditor::copyMarked() { copyClip(Clip::Marked, false); }
void CodeEditor::copyMarkedAppend() { copyClip(Clip::Marked, true); }

void CodeEditor::pasteText(const QString& text)
{
    if (text.isEmpty())
        return;
    beginUpdate(0, CodeEditIcon::Paste);
    deleteSelection();
    insert(text);
    endUpdate();
    report(u"Inserted from the clipboard"_s);
}

void CodeEditor::paste() { pasteText(m_host->clipboardText()); }

void CodeEditor::pasteAsString()
{
    QString text = m_host->clipboardText();
    text.replace(u'\\', u"\\\\"_s);
    text.replace(u"\n"_s, u"\\n"_s);
    text.replace(u'"', u"\\\""_s);
    pasteText(u'"' + text + u'"');
}

void CodeEditor::pasteAsComment()
{
    QString text = m_host->clipboardText();
    text.replace(u"*/"_s, u"*\\/"_s);
    pasteText(u"/* "_s + text + u" */"_s);
}

void CodeEditor::pasteAsHTML() { pasteText(m_host->clipboardText().toHtmlEscaped()); }

void CodeEditor::pasteAll() { pasteText(clipboardRing().texts().join(QString())); }

void CodeEditor::cycleClipboardRing()
{
    ClipboardRing& ring = clipboardRing();
    if (ring.texts().isEmpty())
        return;
    if (selecting() && selectedText() == ring.current())
        ring.next();
    beginUpdate(0, CodeEditIcon::Paste);
    deleteSelection();
    const Place begin = caret();
    insert(ring.current());
    select({begin, caret()});
    endUpdate();
    report(u"Inserted from the clipboard ring"_s);
}

// Bookmarks

void CodeEditor::setBookmark(int line)
{
    buffer().setData(line, buffer().data(line) | QCodeLine::Bookmarked);
    emit bookmarksChanged();
}

void CodeEditor::clearBookmark(int line)
{
    buffer().setData(line, buffer().data(line) & ~unsigned(QCodeLine::Bookmarked));
    emit bookmarksChanged();
}

QList<int> CodeEditor::bookmarkLines() const
{
    QList<int> lines;
    for (int line = 0; line < count(); ++line)
        if ((buffer().data(line) & QCodeLine::Bookmarked) != 0)
            lines.append(line);
    return lines;
}

void CodeEditor::bookmarkToggle()
{
    const int line = caret().line;
    beginUpdate(KeepScroll);
    if ((buffer().data(line) & QCodeLine::Bookmarked) != 0)
        clearBookmark(line);
    else
        setBookmark(line);
    endUpdate(KeepScroll | Repaint);
}

void CodeEditor::gotoBookmark(int line)
{
    if (line >= 0)
        setCaretPosition({line, 0});
}

/// From the last one on to the first again.
void CodeEditor::bookmarkNext()
{
    const QList<int> lines = bookmarkLines();
    const auto next = std::upper_bound(lines.begin(), lines.end(), caret().line);
    gotoBookmark(next != lines.end() ? *next : lines.value(0, -1));
}

void CodeEditor::bookmarkPrev()
{
    const QList<int> lines = bookmarkLines();
    const auto here = std::lower_bound(lines.begin(), lines.end(), caret().line);
    gotoBookmark(here != lines.begin() ? *(here - 1) : lines.value(lines.size() - 1, -1));
}

void CodeEditor::bookmarkFirst() { gotoBookmark(bookmarkLines().value(0, -1)); }

void CodeEditor::bookmarkLast()
{
    const QList<int> lines = bookmarkLines();
    gotoBookmark(lines.value(lines.size() - 1, -1));
}

void CodeEditor::bookmarkClearAll()
{
    beginUpdate(KeepScroll);
    for (const int line : bookmarkLines())
        clearBookmark(line);
    endUpdate(KeepScroll | Repaint);
}
