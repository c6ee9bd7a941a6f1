#include "EditCases.h"

#include "EditorTest.h"

#include <QDir>
#include <QDirIterator>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr QChar Caret = u'‸';
constexpr QChar Anchor = u'⟦';
constexpr QChar Bookmark = u'§';

EditCase::State parseState(const QStringList& lines)
{
    EditCase::State state;
    QStringList texts;
    QCodeBufferPosition anchor = NoPosition;
    for (int number = 0; number < lines.size(); ++number) {
        QString text = lines[number];
        if (text.startsWith(Bookmark)) {
            state.bookmarks.append(number);
            text.remove(0, 1);
        }
        const qsizetype caret = QString(text).remove(Anchor).indexOf(Caret);
        if (caret >= 0)
            state.caret = {number, static_cast<int>(caret)};
        const qsizetype other = QString(text).remove(Caret).indexOf(Anchor);
        if (other >= 0)
            anchor = {number, static_cast<int>(other)};
        texts.append(text.remove(Caret).remove(Anchor).replace(u'→', u'\t'));
    }
    if (anchor.isValid())
        state.selection = {anchor, state.caret};
    state.text = texts.join(u'\n');
    return state;
}

std::vector<EditCase::Step> parseSteps(const QString& text)
{
    using Kind = EditCase::Step::Kind;
    std::vector<EditCase::Step> steps;
    for (qsizetype at = 0; at < text.size();) {
        if (text[at].isSpace()) {
            ++at;
        } else if (text[at] == u'\'' || text[at] == u'"') {
            const qsizetype end = text.indexOf(text[at], at + 1);
            steps.push_back({Kind::Text, text.mid(at + 1, end - at - 1)});
            at = end + 1;
        } else {
            qsizetype end = at;
            while (end < text.size() && !text[end].isSpace())
                ++end;
            const QString word = text.mid(at, end - at);
            const bool command = word.startsWith(u':');
            steps.push_back({command ? Kind::Command : Kind::Key, command ? word.mid(1) : word});
            at = end;
        }
    }
    return steps;
}

void applySetting(CodeEditSettings& settings, const QString& name, int value)
{
    using S = CodeEditSettings;
    if (name == u"useTabs")
        settings.useTabs = value != 0;
    else if (name == u"tabSize")
        settings.tabSize = value;
    else if (name == u"indentSize")
        settings.indentSize = value;
    else if (name == u"indentMode")
        settings.indentMode = static_cast<S::IndentMode>(value);
    else if (name == u"openBraceIndent")
        settings.openBraceIndent = value != 0;
    else if (name == u"closeBraceIndent")
        settings.closeBraceIndent = value != 0;
    else if (name == u"virtualSpace")
        settings.virtualSpace = value != 0;
    else if (name == u"columnModeTab")
        settings.columnModeTab = value != 0;
    else if (name == u"contextLines")
        settings.contextLines = value;
    else if (name == u"cutAction")
        settings.cutAction = static_cast<S::LineAction>(value);
    else if (name == u"copyAction")
        settings.copyAction = static_cast<S::LineAction>(value);
    else
        ADD_FAILURE() << "no setting " << name.toStdString();
}

std::vector<EditCase> parseFile(const QString& folder, const QString& text)
{
    std::vector<EditCase> cases;
    QHash<QString, QStringList> parts;
    QString part;
    const auto finish = [&] {
        if (cases.empty())
            return;
        cases.back().before = parseState(parts.value(u"before"_s));
        cases.back().steps = parseSteps(parts.value(u"steps"_s).join(u' '));
        cases.back().after = parseState(parts.value(u"after"_s));
        parts.clear();
    };
    for (const QString& line : text.split(u'\n')) {
        if (line.startsWith(u"== ")) {
            finish();
            cases.emplace_back();
            cases.back().name = folder + u": "_s + line.mid(3);
            cases.back().settings.useTabs = false;
            cases.back().settings.mateMatching = CodeEditSettings::MateMatching::Never;
            part.clear();
        } else if (line.startsWith(u"--- ")) {
            part = line.mid(4);
        } else if (!part.isEmpty()) {
            parts[part].append(line);
        } else if (line.startsWith(u"settings ")) {
            for (const QString& pair : line.mid(9).split(u' '))
                applySetting(cases.back().settings, pair.section(u'=', 0, 0),
                             pair.section(u'=', 1).toInt());
        } else if (line.startsWith(u"clipboard ")) {
            cases.back().clipboard = line.mid(10).replace(u"\\n"_s, u"\n"_s);
        }
    }
    // What ends the file isn't part of the last text.
    if (!part.isEmpty() && parts[part].value(parts[part].size() - 1).isEmpty())
        parts[part].removeLast();
    finish();
    return cases;
}

QString withMarks(const QString& text, QCodeBufferPosition caret, const QSelection& selection,
                  const QList<int>& bookmarks)
{
    QStringList lines = text.split(u'\n');
    struct Mark {
        QCodeBufferPosition at;
        QChar mark;
    };
    QList<Mark> marks{{caret, Caret}};
    if (selection.isValid())
        marks.append({selection.begin, Anchor});
    std::sort(marks.begin(), marks.end(), [](const Mark& a, const Mark& b) { return a.at > b.at; });
    for (const Mark& mark : marks) {
        while (lines.size() <= mark.at.line)
            lines.append(QString());
        QString& line = lines[mark.at.line];
        if (line.size() < mark.at.column)
            line += QString(mark.at.column - line.size(), u'·');
        line.insert(mark.at.column, mark.mark);
    }
    for (const int line : bookmarks)
        lines[line].prepend(Bookmark);
    return lines.join(u'\n').replace(u'\t', u'→');
}

} // namespace

std::vector<EditCase> EditCase::all()
{
    std::vector<EditCase> cases;
    QDirIterator files(QStringLiteral(GANTRY_TEST_CASES), {u"*.txt"_s}, QDir::Files,
                       QDirIterator::Subdirectories);
    while (files.hasNext()) {
        const QString path = files.next();
        QString text = QString::fromUtf8(bytesOf(path));
        const std::vector<EditCase> found = parseFile(QFileInfo(path).dir().dirName(), text);
        cases.insert(cases.end(), found.begin(), found.end());
    }
    return cases;
}

void prepare(const EditCase& editCase, CodeEditor& editor)
{
    editor.setSettings(editCase.settings);
    editor.setVisibleSize(10, 80);
    editor.setText(editCase.before.text);
    editor.setCaret(editCase.before.caret, true);
    editor.setSelection(editCase.before.selection);
    for (const int line : editCase.before.bookmarks)
        editor.setBookmark(line);
}

QString marked(const CodeEditor& editor)
{
    return withMarks(textOf(editor), editor.caret(), editor.selection(), editor.bookmarkLines());
}

QString marked(const EditCase::State& state)
{
    return withMarks(state.text, state.caret, state.selection, state.bookmarks);
}
