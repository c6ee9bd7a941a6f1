#include "../editor/EditCases.h"
#include "../editor/EditorTest.h"

#include "base/DiagnosticData.h"
#include "editor/commands/IndentSettings.h"
#include "editor/commands/MacroRecorder.h"
#include "editor/find/CodeEditFindDialog.h"
#include "editor/parsers/LanguageRegistry.h"
#include "editor/widget/CodeEdit.h"
#include "editor/widget/CodeEditFindIncrementalDialog.h"
#include "editor/widget/CodeEditPreferences.h"
#include "editor/widget/DiagnosticPopup.h"
#include "projects/settings/EnvironmentSettings.h"

#include <QAccessible>
#include <QApplication>
#include <QClipboard>
#include <QComboBox>
#include <QDropEvent>
#include <QFontDatabase>
#include <QFontMetricsF>
#include <QGraphicsOpacityEffect>
#include <QHelpEvent>
#include <QImage>
#include <QLineEdit>
#include <QMimeData>
#include <QPainter>
#include <QPushButton>
#include <QRandomGenerator>
#include <QScreen>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <QToolTip>
#include <QUrl>

using namespace Qt::Literals::StringLiterals;

namespace {

class CodeEditTest : public testing::Test {
protected:
    CodeEditTest()
    {
        CodeEditor::setOverwriteMode(false);
        CodeEdit::setHighlightFind({});
        LastSearch().remember();
        m_edit.resize(700, 400);
        m_edit.show();
        EXPECT_TRUE(QTest::qWaitForWindowExposed(&m_edit));
        m_edit.setFocus();
    }

    CodeEditor& editor() { return m_edit.editor(); }
    void key(int key, Qt::KeyboardModifiers modifiers = {})
    {
        QTest::keyClick(&m_edit, static_cast<Qt::Key>(key), modifiers);
    }
    void type(const QString& text)
    {
        for (const QChar c : text) {
            if (c == u'\n')
                key(Qt::Key_Return);
            else
                QTest::sendKeyEvent(QTest::Click, &m_edit,
                                    static_cast<Qt::Key>(c.toUpper().unicode()), QString(c), {});
        }
    }
    void click(QCodeBufferPosition place, Qt::KeyboardModifiers modifiers = {})
    {
        QTest::mouseClick(m_edit.viewport(), Qt::LeftButton, modifiers, pointOf(place));
    }
    QPoint pointOf(QCodeBufferPosition place)
    {
        return (m_edit.pointOf(place) + QPointF(1, m_edit.fonts().lineHeight() / 2.0)).toPoint();
    }

    CodeEdit m_edit;
};

TEST_F(CodeEditTest, KeysDoWhatTheCasesSay)
{
    int run = 0;
    for (const EditCase& editCase : EditCase::all()) {
        clipboardRing().clear();
        LastSearch().remember();
        editor().clear();
        QApplication::clipboard()->setText(editCase.clipboard);
        prepare(editCase, editor());
        editor().setTopLine(0);
        for (const EditCase::Step& step : editCase.steps) {
            EditCommand command = EditCommand::charLeft;
            if (step.kind == EditCase::Step::Kind::Text) {
                type(step.text);
            } else if (step.kind == EditCase::Step::Kind::Command) {
                ASSERT_TRUE(commandFromName(step.text, command));
                m_edit.execute(command);
            } else {
                const QKeyCombination keys = QKeySequence::fromString(step.text)[0];
                key(keys.key(), keys.keyboardModifiers());
            }
        }
        EXPECT_EQ(marked(editor()), marked(editCase.after)) << editCase.name.toStdString();
        ++run;
    }
    EXPECT_GT(run, 100);
}

// A whole file typed from an empty document; undo back and redo forth again at every 50th step.
TEST_F(CodeEditTest, TypesAWholeFile)
{
    const QString text = QString::fromUtf8(bytesOf(QStringLiteral(GANTRY_TYPED_FILE)));
    ASSERT_GT(text.size(), 1000);
    CodeEditSettings settings;
    settings.indentMode = CodeEditSettings::IndentMode::None;
    settings.expandTemplates = false;
    editor().setSettings(settings);
    editor().setParser(languages().parserForExtension(u"c"_s));
    for (qsizetype typed = 0; typed < text.size(); ++typed) {
        type(text.mid(typed, 1));
        if (typed % 50 != 49)
            continue;
        const QString before = textOf(editor());
        ASSERT_EQ(before, text.left(typed + 1));
        editor().undoAll();
        ASSERT_EQ(textOf(editor()), u""_s);
        editor().redoAll();
        ASSERT_EQ(textOf(editor()), before);
    }
    QTemporaryDir folder;
    const QString path = folder.filePath(u"typed.c"_s);
    ASSERT_TRUE(editor().saveAs(Path(path)));
    EXPECT_EQ(bytesOf(path), bytesOf(QStringLiteral(GANTRY_TYPED_FILE)));
}

TEST_F(CodeEditTest, MouseSelectsCharactersWordsAndLines)
{
    editor().setText(u"one two\nthree four\nfive"_s);
    click({0, 5});
    EXPECT_EQ(editor().caret(), (QCodeBufferPosition{0, 5}));
    click({1, 2}, Qt::ShiftModifier);
    EXPECT_EQ(editor().selectedText(), u"wo\nth"_s);
    QTest::mouseDClick(m_edit.viewport(), Qt::LeftButton, {}, pointOf({1, 7}));
    EXPECT_EQ(editor().selectedText(), u"four"_s);
    QTest::mouseRelease(m_edit.viewport(), Qt::LeftButton, {}, pointOf({1, 7}));
    QTest::mouseDClick(m_edit.viewport(), Qt::LeftButton, {}, pointOf({0, 20}));
    EXPECT_EQ(editor().selectedText(), u"one two\n"_s);
    QTest::mouseRelease(m_edit.viewport(), Qt::LeftButton, {}, pointOf({0, 20}));
    QTest::mouseDClick(m_edit.viewport(), Qt::LeftButton, {}, pointOf({1, 7}));
    QTest::mouseRelease(m_edit.viewport(), Qt::LeftButton, {}, pointOf({1, 7}));
    click({1, 7});
    EXPECT_EQ(editor().selectedText(), u"three four\n"_s) << "a third click";
    click({1, 7});
    EXPECT_FALSE(editor().selecting());
    // Dragging with the button down.
    QTest::mousePress(m_edit.viewport(), Qt::LeftButton, {}, pointOf({2, 1}));
    QTest::mouseMove(m_edit.viewport(), pointOf({2, 3}));
    QTest::mouseRelease(m_edit.viewport(), Qt::LeftButton, {}, pointOf({2, 3}));
    EXPECT_EQ(editor().selectedText(), u"iv"_s);
    // The right button leaves the selection that it is over.
    QTest::mouseClick(m_edit.viewport(), Qt::RightButton, {}, pointOf({2, 2}));
    EXPECT_EQ(editor().selectedText(), u"iv"_s);
    // What isn't a word is a run of its own, beside a word as well.
    editor().setText(u"x=a->b;"_s);
    for (const int column : {3, 4}) {
        const QPoint inside = pointOf({0, column}) + QPoint(2, 0);
        QTest::mouseDClick(m_edit.viewport(), Qt::LeftButton, {}, inside);
        EXPECT_EQ(editor().selectedText(), u"->"_s) << column;
        QTest::mouseRelease(m_edit.viewport(), Qt::LeftButton, {}, inside);
    }
}

TEST_F(CodeEditTest, PlacesAndPointsAgree)
{
    CodeEditSettings settings;
    settings.tabSize = 4;
    editor().setSettings(settings);
    const QStringList lines{u"plain text"_s,
                            u"\ta\tb"_s,
                            u"wide \u6f22\u5b57 \U0001F600 x"_s,
                            u"\u05d0\u05d1\u05d2 abc \u05d3\u05d4"_s,
                            u"e\u0301e\u0301"_s,
                            u""_s};
    editor().setText(lines);
    for (int line = 0; line < lines.size(); ++line) {
        for (int column = 0; column <= lines[line].size(); ++column) {
            const QPointF point = m_edit.pointOf({line, column});
            const QCodeBufferPosition back = m_edit.positionAt(point + QPointF(0.25, 3));
            EXPECT_EQ(back.line, line);
            EXPECT_NEAR(m_edit.pointOf(back).x(), point.x(), 0.6) << line << ' ' << column;
        }
    }
}

TEST_F(CodeEditTest, PlacesFitAProportionalFontToo)
{
    m_edit.setFonts(QFontDatabase::systemFont(QFontDatabase::GeneralFont));
    if (m_edit.fonts().isFixedPitch())
        GTEST_SKIP() << "there is no such font";
    const QString text = u"iiiWWW...mmm"_s;
    editor().setText(text);
    const QFontMetricsF metrics(m_edit.fonts().base());
    const double start = m_edit.pointOf({0, 0}).x();
    for (int column = 0; column <= text.size(); ++column) {
        EXPECT_NEAR(m_edit.pointOf({0, column}).x() - start,
                    metrics.horizontalAdvance(text.left(column)), 1.5);
        EXPECT_EQ(m_edit.positionAt(m_edit.pointOf({0, column})).column, column);
    }
}

TEST_F(CodeEditTest, DropsTextWhereThePointerIs)
{
    const auto drop = [&](QCodeBufferPosition at, Qt::DropAction action, const QString& text) {
        QMimeData data;
        data.setText(text);
        QDragEnterEvent enter(pointOf(at), action, &data, Qt::LeftButton, {});
        QCoreApplication::sendEvent(m_edit.viewport(), &enter);
        QDropEvent event(pointOf(at), action, &data, Qt::LeftButton, {});
        QCoreApplication::sendEvent(m_edit.viewport(), &event);
    };
    editor().setText(u"one two three"_s);
    drop({0, 3}, Qt::CopyAction, u"-x"_s);
    EXPECT_EQ(textOf(editor()), u"one-x two three"_s);
    EXPECT_EQ(editor().selectedText(), u"-x"_s);
    editor().undo();
    EXPECT_EQ(textOf(editor()), u"one two three"_s);
    // A file is for the window around the editor.
    QMimeData file;
    file.setUrls({QUrl::fromLocalFile(u"/tmp/file.c"_s)});
    QDragEnterEvent enter(pointOf({0, 0}), Qt::CopyAction, &file, Qt::LeftButton, {});
    QCoreApplication::sendEvent(m_edit.viewport(), &enter);
    EXPECT_FALSE(enter.isAccepted());
}

TEST_F(CodeEditTest, AsksForTipsOfWordsExpressionsAndMargins)
{
    editor().setText(u"x = list->next[size + 1];\nlast"_s);
    QStringList words;
    QObject::connect(&m_edit, &CodeEdit::dataTipRequested, &m_edit,
                     [&](CodeEdit* edit, int line, const QString& word) {
                         words.append(QString::number(line) + u' ' + word);
                         edit->appendClientTooltip(word + u" is 1"_s);
                     });
    QSignalSpy margins(&m_edit, &CodeEdit::marginTipRequested);
    const auto rest = [&](QPoint point) {
        QHelpEvent event(QEvent::ToolTip, point, m_edit.viewport()->mapToGlobal(point));
        QCoreApplication::sendEvent(m_edit.viewport(), &event);
    };
    rest(pointOf({0, 5}));
    EXPECT_EQ(QToolTip::text(), u"list is 1"_s);
    rest(pointOf({1, 1}));
    editor().select({{0, 4}, {0, 24}});
    rest(pointOf({0, 5}));
    rest(pointOf({0, 16}));
    EXPECT_EQ(words, (QStringList{u"0 list"_s, u"1 last"_s, u"0 list->next"_s, u"0 size"_s}));
    rest({3, pointOf({1, 0}).y()});
    ASSERT_EQ(margins.size(), 1);
    EXPECT_EQ(margins[0][1].toInt(), 1);
    EXPECT_TRUE(QTest::qWaitFor([] { return !QToolTip::isVisible(); }));
}

TEST_F(CodeEditTest, ASavedDocumentGetsTheLanguageOfItsName)
{
    QTemporaryDir folder;
    editor().setText(u"int x;"_s);
    EXPECT_EQ(editor().parser(), nullptr);
    ASSERT_TRUE(editor().saveAs(Path(folder.filePath(u"new.c"_s))));
    EXPECT_EQ(editor().parser(), languages().parserForExtension(u"c"_s));
    ASSERT_TRUE(editor().saveAs(Path(folder.filePath(u"new.xml"_s))));
    EXPECT_TRUE(m_edit.canCheckSyntax());
}

TEST_F(CodeEditTest, InputMethodsComposeAndCommit)
{
    editor().setText(u"ab"_s);
    editor().setCaretPosition({0, 1});
    QInputMethodEvent composing(u"\u304b"_s, {});
    QCoreApplication::sendEvent(&m_edit, &composing);
    EXPECT_EQ(textOf(editor()), u"ab"_s);
    m_edit.grab();
    QInputMethodEvent commit;
    commit.setCommitString(u"\u6f22\u5b57"_s);
    QCoreApplication::sendEvent(&m_edit, &commit);
    EXPECT_EQ(textOf(editor()), u"a\u6f22\u5b57b"_s);
    QInputMethodQueryEvent query(Qt::ImSurroundingText | Qt::ImCursorPosition);
    QCoreApplication::sendEvent(&m_edit, &query);
    EXPECT_EQ(query.value(Qt::ImSurroundingText).toString(), u"a\u6f22\u5b57b"_s);
    EXPECT_EQ(query.value(Qt::ImCursorPosition).toInt(), 3);
    editor().undo();
    EXPECT_EQ(textOf(editor()), u"ab"_s);
}

TEST_F(CodeEditTest, KeysOfNoUseGoOn)
{
    editor().setText(u"a"_s);
    QKeyEvent menu(QEvent::KeyPress, Qt::Key_F9, {});
    menu.setAccepted(true);
    QCoreApplication::sendEvent(&m_edit, &menu);
    EXPECT_FALSE(menu.isAccepted());
    QTest::sendKeyEvent(QTest::Click, &m_edit, Qt::Key_X, u"x"_s, Qt::AltModifier);
    EXPECT_EQ(textOf(editor()), u"a"_s);
    // AltGr on keyboards that send it as two keys.
    QTest::sendKeyEvent(QTest::Click, &m_edit, Qt::Key_At, u"@"_s,
                        Qt::AltModifier | Qt::ControlModifier);
    key(Qt::Key_Space, Qt::ShiftModifier | Qt::ControlModifier);
    EXPECT_EQ(textOf(editor()), u"@\u00b7a"_s);
    QSignalSpy help(&m_edit, &CodeEdit::help);
    editor().setText(u"one two"_s);
    editor().setCaretPosition({0, 5});
    key(Qt::Key_F1);
    ASSERT_EQ(help.size(), 1);
    EXPECT_EQ(help[0][0].toString(), u"two"_s);
}

TEST_F(CodeEditTest, KeypadOperatorsAreCommandsWhereWanted)
{
    const auto press = [this](Qt::Key key) { QTest::keyClick(&m_edit, key, Qt::KeypadModifier); };
    editor().setText(u"one"_s);
    press(Qt::Key_Plus);
    EXPECT_EQ(editor().getAllText(), QStringList(u"+one"_s));
    m_edit.setKeypadEdits(true);
    editor().selectAll();
    press(Qt::Key_Minus);
    EXPECT_EQ(editor().getAllText(), QStringList(QString()));
    EXPECT_EQ(QApplication::clipboard()->text(), u"+one"_s);
    press(Qt::Key_Asterisk);
    EXPECT_EQ(editor().getAllText(), QStringList(u"+one"_s));
    press(Qt::Key_Slash);
    press(Qt::Key_7);
    EXPECT_EQ(editor().getAllText(), QStringList(u"7"_s));
    QTest::keyClick(&m_edit, Qt::Key_Minus);
    EXPECT_EQ(editor().getAllText(), QStringList(u"7-"_s)) << "not on the keypad";
}

TEST_F(CodeEditTest, AnArgumentRepeatsTheNextMotion)
{
    editor().setText(QString(u'x').repeated(40));
    QSignalSpy messages(&m_edit, &CodeEdit::message);
    editor().setArgument(1);
    type(u"2"_s);
    EXPECT_EQ(messages.last().first().toString(), u"Argument: 12"_s);
    key(Qt::Key_Right);
    EXPECT_EQ(editor().caret().column, 12);
    key(Qt::Key_Right);
    EXPECT_EQ(editor().caret().column, 13);
}

TEST_F(CodeEditTest, RecordsAndPlaysAMacro)
{
    MacroRecorder& recorder = macroRecorder();
    editor().setText(u"a\nb\nc"_s);
    recorder.startRecording();
    type(u"x "_s);
    key(Qt::Key_Down);
    key(Qt::Key_Home);
    recorder.pauseRecording();
    key(Qt::Key_Right);
    key(Qt::Key_Left);
    recorder.resumeRecording();
    recorder.stopRecording();
    editor().playRecording();
    EXPECT_EQ(textOf(editor()), u"x a\nx b\nc"_s);
    editor().undo();
    EXPECT_EQ(textOf(editor()), u"x a\nb\nc"_s);
    recorder.cancelRecording();
    editor().playRecording();
    EXPECT_EQ(textOf(editor()), u"x a\nb\nc"_s);
}

TEST_F(CodeEditTest, AMacroHoldsCommandsAndPlainText)
{
    MacroRecorder& recorder = macroRecorder();
    editor().setText(u"ab\nab"_s);
    recorder.startRecording();
    key(Qt::Key_End, Qt::ShiftModifier);
    type(u"("_s);
    EXPECT_EQ(textOf(editor()), u"(\nab"_s);
    key(Qt::Key_Down);
    key(Qt::Key_Home);
    key(Qt::Key_End, Qt::ShiftModifier);
    type(u"/"_s);
    recorder.stopRecording();
    EXPECT_EQ(textOf(editor()), u"(\n//ab"_s);
    editor().setText(u"cd\ncd"_s);
    editor().playRecording();
    EXPECT_EQ(textOf(editor()), u"(\n//cd"_s);
    recorder.cancelRecording();
}

TEST_F(CodeEditTest, MatesAreFoundFarAwayAndShownNearBy)
{
    editor().setParser(languages().parserForExtension(u"c"_s));
    editor().setText(u"{\n"_s + QString(u"x;\n"_s).repeated(5000) + u"}"_s);
    editor().setCaretPosition({0, 0});
    EXPECT_FALSE(editor().matchedPair().isValid());
    m_edit.execute(EditCommand::matchDelimiter);
    EXPECT_EQ(editor().caret(), (QCodeBufferPosition{5001, 0}));
    editor().setText(u"f(a[1], \")\")"_s);
    editor().setCaretPosition({0, 1});
    EXPECT_EQ(editor().matchedPair(), (QSelection{{0, 1}, {0, 9}}));
    editor().setCaretPosition({0, 0});
    EXPECT_FALSE(editor().matchedPair().isValid());
}

TEST_F(CodeEditTest, SearchesWhileOneTypes)
{
    editor().setText(u"one two\none three one\nlast"_s);
    editor().setCaretPosition({0, 2});
    key(Qt::Key_I, Qt::ControlModifier);
    auto* bar = m_edit.findChild<CodeEditFindIncrementalDialog*>();
    ASSERT_TRUE(bar && bar->isVisible());
    auto* text = bar->findChild<QLineEdit*>();
    QTest::keyClicks(text, u"on"_s);
    EXPECT_EQ(bar->status(), u"2 of 3"_s);
    EXPECT_EQ(editor().caret(), (QCodeBufferPosition{1, 2}));
    QTest::keyClick(text, Qt::Key_F3);
    EXPECT_EQ(bar->status(), u"3 of 3"_s);
    QTest::keyClick(text, Qt::Key_F3);
    EXPECT_EQ(bar->status(), u"1 of 3"_s);
    QTest::keyClick(text, Qt::Key_F3, Qt::ShiftModifier);
    EXPECT_EQ(bar->status(), u"3 of 3"_s);
    QTest::keyClicks(text, u"zzz"_s);
    EXPECT_EQ(bar->status(), u"0 of 0"_s);
    EXPECT_EQ(editor().caret(), (QCodeBufferPosition{0, 2}));
    text->clear();
    EXPECT_EQ(bar->status(), u""_s);
    QTest::keyClicks(text, u"three"_s);
    QTest::keyClick(text, Qt::Key_Escape);
    EXPECT_FALSE(bar->isVisible());
    EXPECT_EQ(editor().caret(), (QCodeBufferPosition{0, 2}));
    // Keys that the bar has no use for belong to the editor, which goes on at the hit.
    key(Qt::Key_I, Qt::ControlModifier);
    text->clear();
    QTest::keyClicks(text, u"three"_s);
    QTest::keyClick(text, Qt::Key_Left);
    EXPECT_TRUE(bar->isVisible());
    QTest::keyClick(text, Qt::Key_Down, Qt::AltModifier);
    EXPECT_FALSE(bar->isVisible());
    EXPECT_EQ(editor().caret().line, 2);
}

TEST_F(CodeEditTest, NoHitIsBelowTheFindBar)
{
    editor().setText(QString(u"x\n"_s).repeated(editor().visibleLines() - 1) + u"hit\nx\nx"_s);
    const int room = m_edit.viewport()->height();
    key(Qt::Key_I, Qt::ControlModifier);
    auto* bar = m_edit.findChild<CodeEditFindIncrementalDialog*>();
    ASSERT_TRUE(bar);
    QTest::keyClicks(bar->findChild<QLineEdit*>(), u"hit"_s);
    ASSERT_EQ(editor().selectedText(), u"hit"_s);
    const QPoint bottom = m_edit.pointOf({editor().caret().line + 1, 0}).toPoint();
    EXPECT_LE(m_edit.viewport()->mapTo(&m_edit, bottom).y(), bar->y());
    QTest::keyClick(bar->findChild<QLineEdit*>(), Qt::Key_Escape);
    EXPECT_EQ(m_edit.viewport()->height(), room);
}

TEST_F(CodeEditTest, TheMarginWidensWithTheNumberOfLines)
{
    m_edit.setLineNumberMode(CodeEdit::LineNumberMode::AllLines);
    editor().setText(QString(u"\n"_s).repeated(900));
    const int small = m_edit.marginWidth();
    editor().setText(QString(u"\n"_s).repeated(10'000));
    const int digits = static_cast<int>(m_edit.fonts().characterWidth() * 2);
    EXPECT_NEAR(m_edit.marginWidth() - small, digits, 2);
    m_edit.setLineNumberMode(CodeEdit::LineNumberMode::Off);
    EXPECT_LT(m_edit.marginWidth(), small);
}

// What is on the screen after each command, against the same drawn as a whole.
TEST_F(CodeEditTest, DrawsAllThatChanges)
{
    m_edit.setCaretStyles(CodeEdit::VerticalCaret, CodeEdit::BlockCaret);
    m_edit.setHighlightCaretLine(true);
    m_edit.setLineNumberMode(CodeEdit::LineNumberMode::CurrentLine);
    editor().setParser(languages().parserForExtension(u"c"_s));
    CodeEditSettings settings;
    settings.columnGuides = {20};
    editor().setSettings(settings);
    editor().setText(QString(u"int f(int a)\n{\n\treturn a /* b */;\n}\n"_s).repeated(20));
    const QString typed = u"x{(\"*/ \n"_s;
    const EditCommand commands[] = {EditCommand::charLeft,
                                    EditCommand::lineDown,
                                    EditCommand::lineUpExtend,
                                    EditCommand::wordRightExtend,
                                    EditCommand::deleteBack,
                                    EditCommand::deleteLine,
                                    EditCommand::undo,
                                    EditCommand::redo,
                                    EditCommand::bookmarkToggle,
                                    EditCommand::pageDown,
                                    EditCommand::documentStart,
                                    EditCommand::selectBlock,
                                    EditCommand::insertLineBelow,
                                    EditCommand::overwriteToggle};
    QRandomGenerator random(3);
    const auto screenImage = [this] {
        return m_edit.screen()
            ->grabWindow(m_edit.winId())
            .toImage()
            .convertToFormat(QImage::Format_RGB32);
    };
    for (int round = 0; round < 400; ++round) {
        if (random.bounded(2) == 0)
            type(typed.mid(random.bounded(typed.size()), 1));
        else
            m_edit.execute(commands[random.bounded(int(std::size(commands)))]);
        QCoreApplication::processEvents();
        ASSERT_EQ(screenImage(), m_edit.grab().toImage().convertToFormat(QImage::Format_RGB32))
            << round;
    }
    CodeEditor::setOverwriteMode(false);
}

TEST_F(CodeEditTest, ScrollBarsAndTheViewAgree)
{
    editor().setText(u"one\ntwo"_s);
    EXPECT_EQ(m_edit.verticalScrollBar()->maximum(), 0) << "there is nothing to scroll to";
    editor().setText(QString(u"line\n"_s).repeated(500) + QString(u'x').repeated(400));
    key(Qt::Key_End, Qt::ControlModifier);
    EXPECT_EQ(m_edit.verticalScrollBar()->value(), editor().topLine());
    EXPECT_GT(editor().leftColumn(), 200);
    EXPECT_TRUE(m_edit.viewport()->rect().contains(m_edit.caretRectangle().center().toPoint()));
    m_edit.verticalScrollBar()->setValue(10);
    EXPECT_EQ(editor().topLine(), 10);
    EXPECT_EQ(editor().caret().line, 500);
    key(Qt::Key_Home, Qt::ControlModifier);
    EXPECT_EQ(m_edit.verticalScrollBar()->value(), 0);
    EXPECT_EQ(m_edit.horizontalScrollBar()->value(), 0);
}

TEST_F(CodeEditTest, TheDialogSearchesAndReplaces)
{
    editor().setText(u"one two one"_s);
    CodeEditFindDialog dialog(&m_edit, false);
    dialog.show();
    const auto button = [&](const QString& text) {
        for (QPushButton* candidate : dialog.findChildren<QPushButton*>())
            if (candidate->text() == text)
                return candidate;
        return static_cast<QPushButton*>(nullptr);
    };
    const QList<QComboBox*> combos = dialog.findChildren<QComboBox*>();
    ASSERT_EQ(combos.size(), 2);
    EXPECT_FALSE(button(u"&Find Next"_s)->isEnabled());
    combos[0]->setEditText(u"one"_s);
    EXPECT_TRUE(button(u"&Find Next"_s)->isEnabled());
    QTest::mouseClick(button(u"&Find Next"_s), Qt::LeftButton);
    EXPECT_EQ(editor().selection(), (QSelection{{0, 0}, {0, 3}}));
    EXPECT_FALSE(combos[1]->isVisible());
    QTest::mouseClick(button(u"&Replace  >>"_s), Qt::LeftButton);
    EXPECT_TRUE(combos[1]->isVisible());
    combos[1]->setEditText(u"1"_s);
    QTest::mouseClick(button(u"&Replace"_s), Qt::LeftButton);
    EXPECT_EQ(textOf(editor()), u"1 two one"_s);
    QTest::mouseClick(button(u"Replace &All"_s), Qt::LeftButton);
    EXPECT_EQ(textOf(editor()), u"1 two 1"_s);
    combos[0]->setEditText(u"1"_s);
    QTest::mouseClick(button(u"&Mark All"_s), Qt::LeftButton);
    EXPECT_EQ(editor().bookmarkLines(), QList<int>{0});
}

TEST_F(CodeEditTest, ScreenReadersReadAndEditTheText)
{
    editor().setText(u"one\ntwo three"_s);
    QAccessibleInterface* accessible = QAccessible::queryAccessibleInterface(&m_edit);
    ASSERT_TRUE(accessible && accessible->textInterface());
    QAccessibleTextInterface& text = *accessible->textInterface();
    EXPECT_EQ(text.characterCount(), 13);
    EXPECT_EQ(text.text(2, 6), u"e\ntw"_s);
    text.setCursorPosition(6);
    EXPECT_EQ(editor().caret(), (QCodeBufferPosition{1, 2}));
    EXPECT_EQ(text.cursorPosition(), 6);
    text.setSelection(0, 4, 7);
    EXPECT_EQ(editor().selectedText(), u"two"_s);
    int start = 0;
    int end = 0;
    text.selection(0, &start, &end);
    EXPECT_EQ(start, 4);
    EXPECT_EQ(end, 7);
    const QRect rectangle = text.characterRect(4);
    EXPECT_EQ(text.offsetAtPoint(rectangle.topLeft() + QPoint(1, 2)), 4);
    accessible->editableTextInterface()->replaceText(0, 3, u"1"_s);
    EXPECT_EQ(textOf(editor()), u"1\ntwo three"_s);
}

TEST_F(CodeEditTest, PrintsEveryLine)
{
    editor().setText(QString(u"line\n"_s).repeated(99) + u"last"_s);
    PrintParameters parameters{600, 400, nullptr};
    m_edit.initParameters(parameters);
    m_edit.beginPrinting(parameters);
    const int pages = m_edit.totalPages();
    EXPECT_GT(pages, 1);
    QImage image(600, 400, QImage::Format_RGB32);
    for (int page = 0; page < pages; ++page) {
        image.fill(Qt::white);
        QPainter painter(&image);
        m_edit.render(page, painter);
        painter.end();
        EXPECT_NE(image, QImage(600, 400, QImage::Format_RGB32));
    }
    m_edit.endPrinting();
}

TEST_F(CodeEditTest, DiagnosticsPopUpAtTheirLine)
{
    editor().setText(QString(u"line\n"_s).repeated(200));
    DiagnosticData diagnostic;
    diagnostic.line = 150;
    diagnostic.column = 2;
    diagnostic.message = u"no such thing"_s;
    diagnostic.level = DiagnosticData::Find;
    m_edit.showDiagnostic(diagnostic);
    EXPECT_EQ(m_edit.findChild<DiagnosticPopup*>(), nullptr);
    diagnostic.level = DiagnosticData::Error;
    m_edit.showDiagnostic(diagnostic);
    auto* popup = m_edit.findChild<DiagnosticPopup*>(u"DiagnosticPopup"_s);
    ASSERT_TRUE(popup && popup->isVisible());
    EXPECT_EQ(editor().caret(), (QCodeBufferPosition{149, 1}));
    const double line = m_edit.pointOf({149, 0}).y();
    EXPECT_TRUE(popup->y() >= line + m_edit.fonts().lineHeight()
                || popup->geometry().bottom() < line);
    // Ctrl lets the text below be read.
    auto* effect = qobject_cast<QGraphicsOpacityEffect*>(popup->graphicsEffect());
    QTest::keyPress(&m_edit, Qt::Key_Control);
    EXPECT_DOUBLE_EQ(effect->opacity(), 0.15);
    QTest::keyRelease(&m_edit, Qt::Key_Control);
    EXPECT_DOUBLE_EQ(effect->opacity(), 1.0);
    key(Qt::Key_Right);
    EXPECT_FALSE(popup->isVisible());
}

TEST_F(CodeEditTest, SettingsTakeEffect)
{
    QTemporaryDir folder;
    EnvironmentSettings settings;
    settings.init(folder.filePath(u"a.xml"_s), folder.filePath(u"b.xml"_s));
    settings.createEntries();
    IndentSettings::createEntries(settings);
    const auto set = [&](const QString& key, const QString& value) {
        settings.findProperty(key)->setPropertyValue(value);
    };
    set(u"Text Editor/Indent/C and C++/Size"_s, u"4"_s);
    set(u"Text Editor/Indent/C and C++/Use Tabs"_s, u"No"_s);
    set(u"Text Editor/Indent/C and C++/Column Guides"_s, u"80; 100,x:-3"_s);
    set(u"Text Editor/Indent/Default/Size"_s, u"3"_s);
    set(u"Text Editor/Undo Mode"_s, u"Individual Characters"_s);
    const QString path = folder.filePath(u"x.cpp"_s);
    writeBytes(path, "a\n");
    ASSERT_TRUE(m_edit.load(Path(path)));
    CodeEditPreferences::applyToAll(settings);
    CodeEditPreferences::apply(settings, m_edit);
    EXPECT_EQ(editor().settings().indentSize, 4);
    EXPECT_EQ(editor().settings().tabSize, 8);
    EXPECT_FALSE(editor().settings().useTabs);
    EXPECT_EQ(editor().settings().columnGuides, (QList<int>{80, 100}));
    EXPECT_EQ(CodeDocument::undoMode(), CodeDocument::UndoMode::Characters);
    EXPECT_EQ(CodeEditor::codeTemplates().size(), 24);
    ASSERT_TRUE(editor().saveAs(Path(folder.filePath(u"x.txt"_s))));
    CodeEditPreferences::apply(settings, m_edit);
    EXPECT_EQ(editor().settings().indentSize, 3);
    m_edit.grab();
    CodeDocument::setUndoMode(CodeDocument::UndoMode::Words);
    CodeEditor::setCodeTemplates({});

    // The clipboard ring stays for the next session only if the user wants it.
    clipboardRing().setTexts({u"a;b"_s, u"two\nlines"_s, QString(200'000, u'x')});
    CodeEditPreferences::keepClipboardRing(settings);
    EXPECT_EQ(settings.clipboardRingContents->toStringList(), QStringList());
    set(u"Environment/Clipboard Ring/Save"_s, u"Yes"_s);
    CodeEditPreferences::keepClipboardRing(settings);
    clipboardRing().clear();
    CodeEditPreferences::restoreClipboardRing(settings);
    EXPECT_EQ(clipboardRing().texts(), (QStringList{u"a;b"_s, u"two\nlines"_s}));
    clipboardRing().clear();
}

TEST(CaretStyle, IsReadFromItsText)
{
    EXPECT_EQ(CodeEdit::decodeCaretStyle(u"Blinking Vertical Bar"_s), 6);
    EXPECT_EQ(CodeEdit::decodeCaretStyle(u"Steady Block"_s), 1);
    EXPECT_EQ(CodeEdit::decodeCaretStyle(u"Blinking Underline"_s), 4);
}

} // namespace
