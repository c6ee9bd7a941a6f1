#include "EditorTest.h"

#include "editor/commands/CodeEditor.h"
#include "editor/commands/TextSearch.h"

#include <QTemporaryDir>

using namespace Qt::Literals::StringLiterals;

namespace {

using enum FindOption;

TEST(TextSearch, FindsMatchesOfALine)
{
    struct Case {
        QString text;
        FindOptions options;
        QString line;
        QList<int> starts;
    };
    const Case cases[] = {
        {u"ab"_s, {}, u"ab Ab xaby"_s, {0, 3, 7}},
        {u"ab"_s, MatchCase, u"ab Ab xaby"_s, {0, 7}},
        {u"ab"_s, WholeWord, u"ab Ab xaby ab"_s, {0, 3, 11}},
        {u"a_b"_s, WholeWord, u"xa_b a_b"_s, {5}},
        {u"a.b"_s, {}, u"axb a.b"_s, {4}},
        {u"a.b"_s, RegularExpression, u"axb a.b"_s, {0, 4}},
        {u"a.*b"_s, RegularExpression, u"axb b"_s, {0}},
        {u"x*"_s, RegularExpression, u"aaa"_s, {}},
        {u"a*?"_s, RegularExpression, u"baab"_s, {1}},
        {u"("_s, RegularExpression, u"(("_s, {}},
        {u"^a"_s, RegularExpression, u"aa"_s, {0}},
        {u""_s, {}, u"abc"_s, {}},
        {u"aa"_s, {}, u"aaaa"_s, {0, 2}},
    };
    for (const Case& c : cases) {
        const TextSearch search(c.text, c.options);
        QList<int> starts;
        for (TextSearch::Match match = search.next(c.line, 0); match.isValid();
             match = search.next(c.line, match.end()))
            starts.append(match.start);
        EXPECT_EQ(starts, c.starts) << c.text.toStdString() << " in " << c.line.toStdString();
        if (!starts.isEmpty()) {
            const TextSearch::Match last = search.previous(c.line, static_cast<int>(c.line.size()));
            EXPECT_GE(last.start, starts.last());
        } else {
            EXPECT_FALSE(search.previous(c.line, static_cast<int>(c.line.size())).isValid());
        }
    }
    // As little as possible, also backwards.
    const TextSearch lazy(u"a.*b"_s, RegularExpression);
    EXPECT_EQ(lazy.next(u"a1b2b", 0).length, 3);
    EXPECT_EQ(lazy.previous(u"a1b a2b", 7).start, 4);
}

TEST(TextSearch, TellsFilesThatCannotMatch)
{
    const auto mayMatch = [](const QString& text, FindOptions options, const char* bytes) {
        return TextSearch(text, options).mayMatch(bytes);
    };
    EXPECT_TRUE(mayMatch(u"led"_s, FindOption::MatchCase, "a led."));
    EXPECT_FALSE(mayMatch(u"led"_s, FindOption::MatchCase, "a LED."));
    EXPECT_TRUE(mayMatch(u"led"_s, {}, "a LED."));
    EXPECT_FALSE(mayMatch(u"led"_s, {}, "a LE D."));
    EXPECT_TRUE(mayMatch(u"led"_s, FindOption::MatchCase, "\xC3\xA4 led"));
    // The sign of Kelvin is a "k" when case doesn't matter, and others are in other encodings.
    EXPECT_TRUE(mayMatch(u"kelvin"_s, {},
                         "\xE2\x84\xAA"
                         "elvin"));
    EXPECT_GE(TextSearch(u"kelvin"_s, {}).next(u"\u212Aelvin", 0).start, 0);
    EXPECT_TRUE(mayMatch(u"\u00E4"_s, FindOption::MatchCase, "a"));
    EXPECT_TRUE(mayMatch(u"a|b"_s, FindOption::RegularExpression, "c"));
}

TEST(TextSearch, ExpandsReplacements)
{
    const TextSearch search(u"(\\w+)=(\\w+)"_s, RegularExpression);
    const QString line = u"x=y"_s;
    const TextSearch::Match match{0, 3};
    EXPECT_EQ(search.expand(u"\\2=\\1 \\0 \\\\ \\t\\n$"_s, line, match), u"y=x x=y \\ \t\n$"_s);
    EXPECT_EQ(TextSearch(u"x"_s, {}).expand(u"\\1"_s, line, match), u"\\1"_s);
}

class FindTest : public testing::Test {
protected:
    FindTest()
    {
        LastSearch().remember();
        for (const auto signal :
             {&CodeDocument::message, &CodeDocument::note, &CodeDocument::error})
            QObject::connect(&m_editor, signal, [this](const QString& text) { m_told << text; });
    }

    CodeEditor m_editor;
    QStringList m_told;
};

TEST_F(FindTest, SearchesTheWholeTextOnce)
{
    m_editor.setText(u"one\ntwo one\nthree"_s);
    EXPECT_TRUE(m_editor.find({1, 5}, u"one"_s, ShowStatus | Wrap));
    EXPECT_EQ(m_editor.selection(), (QSelection{{0, 0}, {0, 3}}));
    EXPECT_EQ(m_told, (QStringList{u"Ready"_s, u"Passed the end of file"_s}));
    m_told.clear();
    EXPECT_TRUE(m_editor.find({0, -1}, u"one"_s, ShowStatus | Wrap | SearchUp));
    EXPECT_EQ(m_editor.selection(), (QSelection{{1, 4}, {1, 7}}));
    EXPECT_EQ(m_told, (QStringList{u"Ready"_s, u"Passed the start of file"_s}));
    m_told.clear();
    EXPECT_FALSE(m_editor.find({1, 5}, u"one"_s, ShowStatus));
    EXPECT_EQ(m_told, (QStringList{u"Ready"_s, u"Can't find 'one'"_s}));
    m_told.clear();
    EXPECT_FALSE(m_editor.find({1, 0}, u"four"_s, ShowStatus | Wrap));
    EXPECT_EQ(m_told,
              (QStringList{u"Ready"_s, u"Passed the end of file"_s, u"Can't find 'four'"_s}));
    m_told.clear();
    EXPECT_FALSE(m_editor.find({1, 0}, u"four"_s, Wrap));
    EXPECT_TRUE(m_told.isEmpty());
    // Ahead of the start, in the line that it began in.
    EXPECT_TRUE(m_editor.find({2, 2}, u"t"_s, Wrap | MatchCase));
    EXPECT_EQ(m_editor.selection().begin, (QCodeBufferPosition{1, 0}));
}

TEST_F(FindTest, ReplacesAllInOneStep)
{
    const QString text = u"a1 a22\nb a333"_s;
    m_editor.setText(text);
    EXPECT_EQ(m_editor.replaceAll(u"a(\\d)"_s, u"<\\1>"_s, RegularExpression, false), 3);
    EXPECT_EQ(textOf(m_editor), u"<1> <2>2\nb <3>33"_s);
    EXPECT_EQ(m_told.last(), u"3 occurrences have been replaced."_s);
    m_editor.undo();
    EXPECT_EQ(textOf(m_editor), text);
    EXPECT_FALSE(m_editor.canUndo());
    EXPECT_EQ(m_editor.replaceAll(u" "_s, u"\\n"_s, RegularExpression, false), 2);
    EXPECT_EQ(textOf(m_editor), u"a1\na22\nb\na333"_s);
    m_editor.undo();
    EXPECT_EQ(textOf(m_editor), text);
    // Within a selection, also where it begins and ends inside of lines.
    m_editor.select({{1, 2}, {0, 3}});
    EXPECT_EQ(m_editor.replaceAll(u"a"_s, u"x"_s, {}, true), 1);
    EXPECT_EQ(textOf(m_editor), u"a1 x22\nb a333"_s);
    EXPECT_EQ(m_told.last(), u"1 occurrence has been replaced."_s);
}

TEST_F(FindTest, ReplacesTheSelectedMatchAndGoesOn)
{
    m_editor.setText(u"ab ab ab"_s);
    EXPECT_TRUE(m_editor.replaceNext(u"ab"_s, u"x"_s, {}));
    EXPECT_EQ(textOf(m_editor), u"ab ab ab"_s);
    EXPECT_TRUE(m_editor.replaceNext(u"ab"_s, u"x"_s, {}));
    EXPECT_EQ(textOf(m_editor), u"x ab ab"_s);
    EXPECT_EQ(m_editor.selection(), (QSelection{{0, 2}, {0, 4}}));
    EXPECT_TRUE(m_editor.replaceNext(u"ab"_s, u"aab"_s, {}));
    EXPECT_EQ(textOf(m_editor), u"x aab ab"_s);
    EXPECT_EQ(m_editor.selection(), (QSelection{{0, 6}, {0, 8}}));
}

TEST_F(FindTest, CountsAndMarksMatches)
{
    m_editor.setText(u"a b a\nc\na"_s);
    EXPECT_EQ(m_editor.countMatches(u"a"_s, {}), 3);
    EXPECT_EQ(m_editor.matchNumber(u"a"_s, {}, {0, 4}), 2);
    EXPECT_EQ(m_editor.matchNumber(u"a"_s, {}, {2, 0}), 3);
    EXPECT_EQ(m_editor.matchNumber(u"a"_s, {}, {1, 0}), 0);
    EXPECT_EQ(m_editor.markAll(u"a"_s, {}, false), 2);
    EXPECT_EQ(m_told.last(), u"2 occurrences have been marked."_s);
    EXPECT_EQ(m_editor.bookmarkLines(), (QList<int>{0, 2}));
}

TEST(Templates, AreExpandedByABlank)
{
    CodeEditor::setCodeTemplates(CodeTemplate::listFrom(
        {u"if"_s, u"if"_s, u"if (|)\n  {\n  }"_s, u"co"_s, u"comment"_s, u"/* | */"_s, u"rest"_s}));
    CodeEditor editor;
    QStringList told;
    QObject::connect(&editor, &CodeDocument::message, [&](const QString& text) { told << text; });
    const auto type = [&](const QString& text) {
        for (const QChar c : text)
            editor.typeText(c);
    };
    CodeEditSettings settings;
    settings.useTabs = false;
    editor.setSettings(settings);
    type(u"  if "_s);
    EXPECT_EQ(textOf(editor), u"  if ()\n    {\n    }"_s);
    EXPECT_EQ(editor.caret(), (QCodeBufferPosition{0, 6}));
    EXPECT_EQ(told.last(), u"Expanded template 'if'"_s);
    editor.undo();
    EXPECT_EQ(textOf(editor), u"  if "_s);
    editor.undo();
    // Only a word that stands alone in its line.
    editor.setText(u"x if"_s);
    editor.setCaretPosition({0, 4});
    type(u" "_s);
    EXPECT_EQ(textOf(editor), u"x if "_s);
    editor.setText(u"x co"_s);
    editor.setCaretPosition({0, 4});
    editor.expandTemplate();
    EXPECT_EQ(textOf(editor), u"x /*  */"_s);
    EXPECT_EQ(editor.caret(), (QCodeBufferPosition{0, 5}));
    editor.setText(u"nothing"_s);
    editor.setCaretPosition({0, 7});
    editor.expandTemplate();
    EXPECT_EQ(told.last(), u"No template found for 'nothing'."_s);
    CodeEditor::setCodeTemplates({});
}

/// Chooses a line and a file.
class ChoosingHost : public CodeEditorHost {
public:
    int askLine(int, int) override { return line; }
    QString fileToInsert() override { return file; }
    int line = 0;
    QString file;
};

TEST(HostCommands, AskForLinesAndFiles)
{
    QTemporaryDir folder;
    ChoosingHost host;
    CodeEditor editor;
    editor.setHost(&host);
    editor.setText(u"a\nb\nc"_s);
    host.line = 3;
    editor.execute(EditCommand::gotoLine);
    EXPECT_EQ(editor.caret().line, 2);
    host.line = 0;
    editor.execute(EditCommand::gotoLine);
    EXPECT_EQ(editor.caret().line, 2);
    host.file = folder.filePath(u"inserted.c"_s);
    editor.execute(EditCommand::insertFile);
    EXPECT_EQ(textOf(editor), u"a\nb\nc"_s);
    writeBytes(host.file, "\xEF\xBB\xBFx\r\ny\r\n");
    editor.execute(EditCommand::insertFile);
    EXPECT_EQ(textOf(editor), u"a\nb\nx\ny\nc"_s);
}

TEST(Dragging, TakesTheSelectionAlong)
{
    struct Case {
        QSelection selection;
        QCodeBufferPosition place;
        QString text;
        QString selected;
    };
    const QString text = u"one two\nthree four\nfive"_s;
    const Case cases[] = {
        {{{0, 0}, {0, 4}}, {0, 7}, u"twoone \nthree four\nfive"_s, u"one "_s},
        {{{0, 4}, {0, 7}}, {0, 0}, u"twoone \nthree four\nfive"_s, u"two"_s},
        {{{0, 4}, {1, 6}}, {1, 10}, u"one fourtwo\nthree \nfive"_s, u"two\nthree "_s},
        {{{1, 6}, {0, 4}}, {2, 2}, u"one four\nfitwo\nthree ve"_s, u"two\nthree "_s},
        {{{1, 0}, {2, 0}}, {0, 0}, u"three four\none two\nfive"_s, u"three four\n"_s},
        {{{0, 0}, {0, 4}}, {0, 2}, text, u"one "_s},
    };
    for (const Case& c : cases) {
        CodeEditor editor;
        editor.setText(text);
        editor.select(c.selection);
        editor.moveSelection(c.place);
        EXPECT_EQ(textOf(editor), c.text);
        EXPECT_EQ(editor.selectedText(), c.selected);
        editor.undoAll();
        EXPECT_EQ(textOf(editor), text);
    }
}

TEST(Fence, KeepsTheCaretFromTheEdges)
{
    CodeEditor editor;
    CodeEditSettings settings;
    settings.marginsEnabled = true;
    editor.setSettings(settings);
    editor.setVisibleSize(20, 80);
    editor.setText(QString(u"x\n"_s).repeated(100));
    // Once it is reached, the text goes on line by line with the caret.
    for (int i = 0; i < 30; ++i) {
        editor.lineDown();
        EXPECT_EQ(editor.topLine(), std::max(0, editor.caret().line - (20 - 5) + 1));
    }
    EXPECT_EQ(editor.caret().line, 30);
    for (int i = 0; i < 20; ++i) {
        const int before = editor.topLine();
        editor.lineUp();
        EXPECT_EQ(editor.topLine(), std::min(before, editor.caret().line - 5 - 1));
    }
    EXPECT_EQ(editor.caret().line, 10);
}

} // namespace
