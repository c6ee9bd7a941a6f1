// Searching and replacing in one text.

#include "editor/commands/CodeEditor.h"
#include "editor/commands/TextSearch.h"

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

namespace {

QString counted(int count, QStringView done)
{
    return count == 1 ? u"1 occurrence has been %1."_s.arg(done)
                      : u"%1 occurrences have been %2."_s.arg(count).arg(done);
}

} // namespace

void CodeEditor::selectMatch(int line, int column, int length)
{
    select({{line, column}, {line, column + length}});
}

bool CodeEditor::find(QCodeBufferPosition position, const QString& text, FindOptions options)
{
    const bool tells = options.testFlag(FindOption::ShowStatus);
    const bool up = options.testFlag(FindOption::SearchUp);
    if (tells)
        emit message(u"Ready"_s);
    const TextSearch search(text, options);
    const int lines = count();
    // Once around, and the first line once more for what stands ahead of the start.
    int line = std::clamp(position.line, 0, std::max(0, lines - 1));
    int from = position.column;
    bool wrapped = false;
    for (int visited = 0; search.isValid() && visited <= lines; ++visited) {
        const QStringView view = buffer().view(line);
        const TextSearch::Match match = up ? search.previous(view, from) : search.next(view, from);
        if (match.isValid()) {
            selectMatch(line, match.start, match.length);
            return true;
        }
        line += up ? -1 : 1;
        if (line < 0 || line >= lines) {
            if (!options.testFlag(FindOption::Wrap) || wrapped)
                break;
            wrapped = true;
            if (tells)
                emit note(up ? u"Passed the start of file"_s : u"Passed the end of file"_s);
            line = up ? lines - 1 : 0;
        }
        from = up ? buffer().length(line) : 0;
    }
    if (tells) {
        const bool bad = !search.isValid() && !text.isEmpty();
        emit error(bad ? u"'%1' isn't a regular expression: %2"_s.arg(text, search.errorText())
                       : u"Can't find '%1'"_s.arg(text));
    }
    return false;
}

bool CodeEditor::findAgain()
{
    const LastSearch last = LastSearch::get();
    const FindOptions options = last.options | FindOption::ShowStatus | FindOption::Wrap;
    // The match that is selected isn't found once more.
    if (options.testFlag(FindOption::SearchUp)) {
        const Place from = selecting() ? selection().first() : caret();
        return find({from.line, from.column - 1}, last.text, options);
    }
    return find(selecting() ? selection().last() : caret(), last.text, options);
}

void CodeEditor::findNext()
{
    LastSearch last = LastSearch::get();
    last.options.setFlag(FindOption::SearchUp, false);
    find(selecting() ? selection().last() : caret(), last.text,
         last.options | FindOption::ShowStatus | FindOption::Wrap);
}

void CodeEditor::findPrev()
{
    const LastSearch last = LastSearch::get();
    const Place from = selecting() ? selection().first() : caret();
    const FindOptions options =
        last.options | FindOption::ShowStatus | FindOption::Wrap | FindOption::SearchUp;
    // Ahead of column 0 stands the line above.
    find({from.line, from.column - 1}, last.text, options);
}

bool CodeEditor::findSelected(bool up)
{
    const QString text = selecting() && selection().begin.line == selection().end.line
        ? selectedText()
        : wordUnder(caret());
    if (text.isEmpty())
        return false;
    LastSearch last = LastSearch::get();
    last.text = text;
    last.options.setFlag(FindOption::RegularExpression, false);
    last.remember();
    // The word that the caret stands in counts as found.
    if (!selecting() && !up)
        setCaret(wordAt(caret()).end);
    else if (!selecting())
        setCaret(wordAt(caret()).begin);
    if (up)
        findPrev();
    else
        findNext();
    return true;
}

void CodeEditor::findNextSelected() { findSelected(false); }
void CodeEditor::findPrevSelected() { findSelected(true); }

bool CodeEditor::replaceNext(const QString& text, const QString& replacement, FindOptions options)
{
    const TextSearch search(text, options);
    if (selecting() && selection().begin.line == selection().end.line && okToModify()) {
        const Place at = selection().first();
        const QStringView line = buffer().view(at.line);
        const TextSearch::Match match = search.next(line, at.column);
        if (match.isValid() && match.start == at.column
            && match.end() == selection().last().column) {
            const QString old = selectedText();
            const QString replaced = search.expand(replacement, line, match);
            beginUpdate(Deselect, CodeEditIcon::Edit);
            deleteText(at, {at.line, at.column + static_cast<int>(old.size())});
            insertText(at, replaced);
            endUpdate(Deselect);
            if (options.testFlag(FindOption::SearchUp))
                setCaret(at);
        }
    }
    const bool up = options.testFlag(FindOption::SearchUp);
    const Place from = !selecting() ? caret() : up ? selection().first() : selection().last();
    return find(up ? Place{from.line, from.column - 1} : from, text,
                options | FindOption::ShowStatus | FindOption::Wrap);
}

void CodeEditor::replaceNext()
{
    const LastSearch last = LastSearch::get();
    replaceNext(last.text, last.replacement, last.options);
}

int CodeEditor::replaceAll(const QString& text, const QString& replacement, FindOptions options,
                           bool inSelection)
{
    const TextSearch search(text, options);
    if (!search.isValid() || !okToModify())
        return 0;
    const QSelection scope = inSelection && selecting()
        ? QSelection{selection().first(), selection().last()}
        : QSelection{{0, 0}, endOfDocument()};
    int replaced = 0;
    beginUpdate(Deselect, CodeEditIcon::Edit);
    // From the last line up: what is replaced may add lines.
    for (int line = scope.end.line; line >= scope.begin.line; --line) {
        const QStringView view = buffer().view(line);
        const int first = line == scope.begin.line ? scope.begin.column : 0;
        const int end = line == scope.end.line ? scope.end.column : static_cast<int>(view.size());
        int from = -1;
        int to = first;
        QString changed;
        for (TextSearch::Match match = search.next(view, first);
             match.isValid() && match.end() <= end; match = search.next(view, to)) {
            if (from < 0)
                from = match.start;
            else
                changed += view.mid(to, match.start - to);
            changed += search.expand(replacement, view, match);
            to = match.end();
            ++replaced;
        }
        if (from < 0)
            continue;
        // One change a line, however many matches it has.
        if (changed.contains(u'\n')) {
            deleteText(Place{line, from}, Place{line, to});
            insertText({line, from}, changed);
        } else {
            replaceText({line, from}, view.mid(from, to - from).toString(), changed);
        }
    }
    endUpdate(Deselect | Repaint);
    report(counted(replaced, u"replaced"));
    return replaced;
}

void CodeEditor::replaceAll()
{
    const LastSearch last = LastSearch::get();
    replaceAll(last.text, last.replacement, last.options, false);
}

int CodeEditor::markAll(const QString& text, FindOptions options, bool inSelection)
{
    const TextSearch search(text, options);
    const QSelection scope = inSelection && selecting()
        ? QSelection{selection().first(), selection().last()}
        : QSelection{{0, 0}, endOfDocument()};
    int marked = 0;
    beginUpdate(KeepScroll);
    for (int line = scope.begin.line; search.isValid() && line <= scope.end.line; ++line) {
        const QStringView view = buffer().view(line);
        const int end = line == scope.end.line ? scope.end.column : static_cast<int>(view.size());
        const TextSearch::Match match =
            search.next(view, line == scope.begin.line ? scope.begin.column : 0);
        if (!match.isValid() || match.end() > end)
            continue;
        setBookmark(line);
        ++marked;
    }
    endUpdate(KeepScroll | Repaint);
    report(counted(marked, u"marked"));
    return marked;
}

int CodeEditor::countMatches(const QString& text, FindOptions options) const
{
    const TextSearch search(text, options);
    int matches = 0;
    for (int line = 0; search.isValid() && line < count(); ++line) {
        const QStringView view = buffer().view(line);
        for (TextSearch::Match match = search.next(view, 0); match.isValid();
             match = search.next(view, match.end()))
            ++matches;
    }
    return matches;
}

int CodeEditor::matchNumber(const QString& text, FindOptions options,
                            QCodeBufferPosition position) const
{
    const TextSearch search(text, options);
    int number = 0;
    for (int line = 0; search.isValid() && line <= position.line; ++line) {
        const QStringView view = buffer().view(line);
        for (TextSearch::Match match = search.next(view, 0);
             match.isValid() && Place{line, match.start} <= position;
             match = search.next(view, match.end())) {
            ++number;
            if (Place{line, match.start} == position)
                return number;
        }
    }
    return 0;
}
