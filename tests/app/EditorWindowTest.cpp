#include "app/gantryedit/EditorWindow.h"
#include "app/gantryedit/FilePlace.h"
#include "app/gantryedit/SearchResults.h"
#include "app/gantryedit/SpellingEntries.h"

#include "editor/commands/IndentSettings.h"
#include "editor/parsers/SpellChecker.h"
#include "editor/widget/CodeEdit.h"
#include "editor/widget/CodeEditPreferences.h"
#include "projects/settings/GantryBenchEnvironmentSettings.h"
#include "shell/actions/Actions.h"
#include "shell/actions/GUIBuilder.h"
#include "shell/dialogs/FindFilesDialog.h"
#include "shell/windows/FindWindow.h"
#include "shell/windows/MiniToolbar.h"

#include <QApplication>
#include <QComboBox>
#include <QDropEvent>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QMenuBar>
#include <QMessageBox>
#include <QMimeData>
#include <QPushButton>
#include <QStatusBar>
#include <QTabBar>
#include <QTabWidget>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>
#include <QToolButton>
#include <QTreeWidget>
#include <QUrl>

#include <gtest/gtest.h>

#include <memory>

using namespace Qt::Literals::StringLiterals;

namespace {

class EditorWindowTest : public testing::Test {
protected:
    EditorWindowTest()
    {
        guiBuilder = &m_builder;
        EXPECT_TRUE(m_builder.load(QStringLiteral(GANTRY_BENCH_XML)));
        stringProvider = &m_builder;
        m_settings.init(path(u"maker.xml"_s), path(u"product.xml"_s));
        m_settings.createEntries();
        IndentSettings::createEntries(m_settings);
        EditorWindow::createEntries(m_settings);
        environment = &m_settings;
        CodeEditPreferences::applyToAll(m_settings);
        m_actions = std::make_unique<Actions>();
        actions = m_actions.get();
        m_window = std::make_unique<EditorWindow>();
        m_window->show();
        write(u"one.c"_s, "int one;\n");
        write(u"two.h"_s, "int two;\n");
    }
    ~EditorWindowTest() override
    {
        m_window.reset();
        actions = nullptr;
        environment = nullptr;
        stringProvider = nullptr;
        guiBuilder = nullptr;
    }

    QString path(const QString& name) const { return m_folder.filePath(name); }
    void write(const QString& name, const QByteArray& bytes)
    {
        QFile file(path(name));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(bytes);
    }
    QByteArray read(const QString& name)
    {
        QFile file(path(name));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }
    /// Presses a button of the next message box.
    void answer(const QString& button)
    {
        QTimer::singleShot(0, [button] {
            auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
            ASSERT_TRUE(box);
            for (QAbstractButton* candidate : box->buttons())
                if (candidate->text() == button)
                    candidate->click();
        });
    }
    /// Chooses an entry of a menu that is filled when it is shown.
    void choose(const QString& menuName, const QString& text)
    {
        auto* menu = m_window->findChild<QMenu*>(menuName);
        ASSERT_TRUE(menu) << menuName.toStdString();
        emit menu->aboutToShow();
        for (QAction* entry : menu->actions())
            if (entry->text().remove(u'&') == text)
                entry->trigger();
        emit menu->aboutToHide();
    }
    QString checkedEntry(const QString& menuName) const
    {
        auto* menu = m_window->findChild<QMenu*>(menuName);
        emit menu->aboutToShow();
        QString text;
        for (QAction* entry : menu->actions())
            if (entry->isChecked())
                text = entry->text().remove(u'&');
        emit menu->aboutToHide();
        return text;
    }
    QStringList statusTexts() const
    {
        QStringList texts;
        for (const QLabel* label : m_window->statusBar()->findChildren<QLabel*>())
            texts.append(label->text());
        return texts;
    }

    QTemporaryDir m_folder;
    GUIBuilder m_builder;
    GantryBenchEnvironmentSettings m_settings;
    std::unique_ptr<Actions> m_actions;
    std::unique_ptr<EditorWindow> m_window;
};

TEST_F(EditorWindowTest, OpensEachFileInOneTab)
{
    EXPECT_FALSE(m_actions->fileSave->isEnabled());
    EXPECT_TRUE(m_window->open(Path(path(u"one.c"_s))));
    EXPECT_TRUE(m_window->open(Path(path(u"two.h"_s))));
    EXPECT_TRUE(m_window->open(Path(path(u"one.c"_s))));
    EXPECT_EQ(m_window->tabs()->count(), 2);
    EXPECT_EQ(m_window->tabs()->currentIndex(), 0);
    answer(u"OK"_s);
    EXPECT_FALSE(m_window->open(Path(path(u"missing.c"_s))));
    EXPECT_EQ(m_window->tabs()->count(), 2);
    EXPECT_TRUE(m_actions->fileSave->isEnabled());
    EXPECT_TRUE(statusTexts().contains(u"C/C++"_s));
    EXPECT_TRUE(statusTexts().contains(u"Ln 1 Col 1"_s));
}

TEST_F(EditorWindowTest, MarksSavesAndUndoesChanges)
{
    m_window->open(Path(path(u"one.c"_s)));
    QTest::keyClick(m_window->current(), Qt::Key_X);
    EXPECT_EQ(m_window->tabs()->tabText(0), u"one.c *"_s);
    EXPECT_TRUE(m_window->windowTitle().startsWith(u"one.c *"_s));
    EXPECT_EQ(m_actions->editUndo->text(), u"&Undo Typing"_s);
    EXPECT_TRUE(statusTexts().contains(u"Ln 1 Col 2"_s));
    EXPECT_TRUE(actions->activate(u"FileSave"_s));
    EXPECT_EQ(read(u"one.c"_s), "xint one;\n");
    EXPECT_EQ(m_window->tabs()->tabText(0), u"one.c"_s);
    actions->activate(u"EditUndo"_s);
    EXPECT_EQ(m_window->tabs()->tabText(0), u"one.c *"_s);
    EXPECT_FALSE(m_actions->editUndo->isEnabled());
    EXPECT_TRUE(m_actions->editRedo->isEnabled());
    // By key, as the window has it.
    QTest::keyClick(m_window->current(), Qt::Key_Y, Qt::ControlModifier);
    EXPECT_FALSE(m_window->current()->modified());
}

TEST_F(EditorWindowTest, AsksAboutChangesBeforeItCloses)
{
    m_window->open(Path(path(u"one.c"_s)));
    m_window->open(Path(path(u"two.h"_s)));
    QTest::keyClick(m_window->current(), Qt::Key_X);
    answer(u"Cancel"_s);
    EXPECT_FALSE(m_window->close());
    EXPECT_EQ(m_window->tabs()->count(), 2);
    answer(u"&Yes"_s);
    EXPECT_TRUE(m_window->close());
    EXPECT_EQ(read(u"two.h"_s), "xint two;\n");
}

TEST_F(EditorWindowTest, TellsOfFilesThatOthersWrite)
{
    m_window->open(Path(path(u"one.c"_s)));
    m_window->open(Path(path(u"two.h"_s)));
    write(u"one.c"_s, "int other;\n");
    answer(u"&Yes"_s);
    m_window->tabs()->setCurrentIndex(0);
    EXPECT_EQ(m_window->current()->editor().buffer().text(0), u"int other;"_s);
    EXPECT_FALSE(m_window->current()->modified());
    m_window->tabs()->setCurrentIndex(1);
    QFile::remove(path(u"one.c"_s));
    m_window->tabs()->setCurrentIndex(0);
    EXPECT_EQ(m_window->current()->editor().buffer().text(0), u"int other;"_s);
    EXPECT_TRUE(m_window->statusBar()->currentMessage().contains(u"has been removed"));
    EXPECT_TRUE(m_window->current()->modified()) << "the text is nowhere else";
    EXPECT_TRUE(m_window->current()->save());
    EXPECT_EQ(read(u"one.c"_s), "int other;\n");
    EXPECT_FALSE(m_window->current()->modified());
    // A text that is kept against a newer file isn't the file's.
    m_window->tabs()->setCurrentIndex(1);
    write(u"one.c"_s, "int newer;\n");
    answer(u"&No"_s);
    m_window->tabs()->setCurrentIndex(0);
    EXPECT_EQ(m_window->current()->editor().buffer().text(0), u"int other;"_s);
    EXPECT_TRUE(m_window->current()->modified());
    m_window->current()->editor().resetModified();
}

TEST_F(EditorWindowTest, LeadsFromSearchResultsToLines)
{
    write(u"three.c"_s, "\n\n  int needle;\n");
    m_window->open(Path(path(u"one.c"_s)));
    actions->activate(u"ToolFindInFiles"_s);
    auto* dialog = m_window->findChild<FindFilesDialog*>();
    ASSERT_TRUE(dialog);
    dialog->setText(u"needle"_s);
    QTest::mouseClick(dialog->findChild<QPushButton*>(), Qt::LeftButton);
    auto* results = m_window->findChild<SearchResults*>();
    EXPECT_TRUE(results->windowTitle().endsWith(u"1 occurrence has been found"_s));
    actions->activate(u"EditLocateNext"_s);
    EXPECT_EQ(m_window->current()->fileName(), path(u"three.c"_s));
    EXPECT_EQ(m_window->current()->editor().caret(), (QCodeBufferPosition{2, 6}));
}

TEST_F(EditorWindowTest, SuggestsWhatAMisspelledWordMayBe)
{
    class Checker : public SpellChecker {
    public:
        bool spell(QStringView word) override { return word != u"wrld"; }
        QStringList suggestions(QStringView) override { return {u"world"_s, u"weld"_s}; }
    } checker;
    SpellChecker::setCurrent(&checker);
    write(u"words.c"_s, "// hello 'wrld'\nint wrld;\n");
    m_window->open(Path(path(u"words.c"_s)));
    CodeEdit& edit = *m_window->current();
    const auto entries = [&](QCodeBufferPosition at) {
        edit.editor().setCaretPosition(at);
        auto menu = std::make_unique<QMenu>();
        addSpellingEntries(*menu, edit);
        return menu;
    };
    EXPECT_TRUE(entries({1, 6})->isEmpty()) << "only comments are checked";
    EXPECT_TRUE(entries({0, 4})->isEmpty());
    const auto menu = entries({0, 11});
    ASSERT_EQ(menu->actions().size(), 5);
    EXPECT_EQ(menu->actions()[1]->text(), u"weld"_s);
    menu->actions()[0]->trigger();
    EXPECT_EQ(edit.editor().buffer().text(0), u"// hello 'world'"_s);
    edit.editor().undo();
    entries({0, 11})->actions()[3]->trigger();
    EXPECT_TRUE(entries({0, 11})->isEmpty()) << "it is to be ignored";
    SpellChecker::setCurrent(nullptr);
}

TEST_F(EditorWindowTest, TheFindWindowAwaitsAText)
{
    write(u"word.c"_s, "word\n");
    m_window->open(Path(path(u"word.c"_s)));
    actions->activate(u"ToolReplaceInFiles"_s);
    auto* find = m_window->findChild<FindWindow*>();
    ASSERT_TRUE(find && find->isVisible());
    auto* field = qobject_cast<QComboBox*>(m_window->focusWidget());
    ASSERT_TRUE(field);
    EXPECT_EQ(field->lineEdit()->selectedText(), u"word"_s);
}

TEST_F(EditorWindowTest, SettingsTakeEffectAtOnce)
{
    m_window->open(Path(path(u"one.c"_s)));
    m_settings.findProperty(u"Text Editor/Indent/C and C++/Size"_s)->setPropertyValue(u"7"_s);
    EXPECT_EQ(m_window->current()->editor().settings().indentSize, 7);
    m_settings.colorScheme->setPropertyValue(u"Gantry Dark"_s);
    EXPECT_TRUE(CodeEdit::colorScheme().isDark());
    m_settings.colorScheme->setPropertyValue(u"Gantry Standard"_s);
    EXPECT_FALSE(CodeEdit::colorScheme().isDark());
}

TEST_F(EditorWindowTest, AMiniToolbarFollowsAMouseSelection)
{
    m_window->open(Path(path(u"one.c"_s)));
    CodeEdit& edit = *m_window->current();
    const auto* strip = edit.viewport()->findChild<MiniToolbar*>();
    ASSERT_TRUE(strip);
    const auto drag = [&] {
        edit.editor().dropSelection();
        QTest::mousePress(edit.viewport(), Qt::LeftButton, {}, edit.pointOf({0, 0}).toPoint());
        QTest::mouseMove(edit.viewport(), edit.pointOf({0, 3}).toPoint());
        QTest::mouseRelease(edit.viewport(), Qt::LeftButton, {}, edit.pointOf({0, 3}).toPoint());
        ASSERT_EQ(edit.editor().selectedText(), u"int"_s);
    };
    drag();
    EXPECT_FALSE(strip->isVisible()) << "not wanted";
    m_settings.miniToolbar->setPropertyValue(u"Yes"_s);
    drag();
    ASSERT_TRUE(strip->isVisible());
    EXPECT_TRUE(edit.viewport()->rect().contains(strip->geometry()));
    EXPECT_FALSE(strip->geometry().contains(edit.pointOf({0, 3}).toPoint()));
    const QList<QToolButton*> buttons = strip->findChildren<QToolButton*>();
    ASSERT_FALSE(buttons.isEmpty());
    EXPECT_EQ(buttons.first()->defaultAction(), actions->editCut);
    QTest::mouseClick(buttons.first(), Qt::LeftButton);
    EXPECT_EQ(edit.editor().buffer().text(0), u" one;"_s);
    EXPECT_FALSE(strip->isVisible());
    edit.execute(EditCommand::undo);
    drag();
    QTest::keyClick(&edit, Qt::Key_Right);
    EXPECT_FALSE(strip->isVisible()) << "a key";
    edit.execute(EditCommand::undo);
    edit.editor().resetModified();
}

TEST_F(EditorWindowTest, MenusChooseLanguageEncodingAndLineEnds)
{
    m_window->open(Path(path(u"one.c"_s)));
    EXPECT_EQ(checkedEntry(u"SyntaxHighlightingMenu"_s), u"C/C++"_s);
    choose(u"SyntaxHighlightingMenu"_s, u"Forth"_s);
    EXPECT_TRUE(statusTexts().contains(u"Forth"_s));
    choose(u"SyntaxHighlightingMenu"_s, u"None"_s);
    EXPECT_TRUE(statusTexts().contains(u"Text"_s));
    EXPECT_FALSE(m_window->current()->modified());

    EXPECT_EQ(checkedEntry(u"LineEndingsMenu"_s), u"LF (Unix)"_s);
    choose(u"LineEndingsMenu"_s, u"CR LF (Windows)"_s);
    EXPECT_EQ(m_window->tabs()->tabText(0), u"one.c *"_s) << "the file would be another";
    actions->activate(u"FileSave"_s);
    EXPECT_EQ(read(u"one.c"_s), "int one;\r\n");
    EXPECT_EQ(m_window->tabs()->tabText(0), u"one.c"_s);

    choose(u"SaveEncodingMenu"_s, u"UTF-16"_s);
    EXPECT_TRUE(m_window->current()->modified());
    actions->activate(u"FileSave"_s);
    EXPECT_TRUE(read(u"one.c"_s).startsWith(QByteArray("\xFF\xFEi\0n\0t\0", 8)));
    // The mark tells it again.
    actions->activate(u"FileClose"_s);
    m_window->open(Path(path(u"one.c"_s)));
    EXPECT_EQ(m_window->current()->editor().buffer().text(0), u"int one;"_s);
    EXPECT_EQ(checkedEntry(u"ReloadEncodingMenu"_s), u"UTF-16"_s);

    write(u"latin.c"_s, "\"\xA4\"\n");
    answer(u"OK"_s);
    m_window->open(Path(path(u"latin.c"_s)));
    choose(u"ReloadEncodingMenu"_s, u"ISO-8859-15"_s);
    EXPECT_EQ(m_window->current()->editor().buffer().text(0), u"\"\u20AC\""_s);
    EXPECT_FALSE(m_window->current()->modified());
}

TEST_F(EditorWindowTest, MenusChooseLookAndIndentation)
{
    m_window->open(Path(path(u"one.c"_s)));
    choose(u"ColorSchemeMenu"_s, u"Gantry Dark"_s);
    EXPECT_TRUE(CodeEdit::colorScheme().isDark());
    EXPECT_EQ(checkedEntry(u"ColorSchemeMenu"_s), u"Gantry Dark"_s);
    choose(u"ColorSchemeMenu"_s, u"Gantry Standard"_s);
    choose(u"LineNumbersMenu"_s, u"Off"_s);
    const int narrow = m_window->current()->marginWidth();
    choose(u"LineNumbersMenu"_s, u"All Lines"_s);
    EXPECT_GT(m_window->current()->marginWidth(), narrow);
    choose(u"IndentSizeMenu"_s, u"4"_s);
    choose(u"UseTabsMenu"_s, u"No"_s);
    QTest::keyClick(m_window->current(), Qt::Key_Tab);
    EXPECT_EQ(m_window->current()->editor().buffer().text(0), u"    int one;"_s);
    EXPECT_EQ(m_settings.findProperty(u"Text Editor/Indent/C and C++/Size"_s)->toInt(), 4);
    EXPECT_EQ(m_settings.findProperty(u"Text Editor/Indent/Java/Size"_s)->toInt(), 2);
}

TEST_F(EditorWindowTest, CommandLinesNameLinesAndNewFiles)
{
    write(u"odd:3"_s, "x");
    EXPECT_EQ(FilePlace::from(path(u"odd:3"_s)).line, 0);
    EXPECT_EQ(FilePlace::from(u"a.c:12"_s).line, 12);
    EXPECT_EQ(FilePlace::from(u"a.c:12:7:"_s).column, 7);
    EXPECT_EQ(FilePlace::from(u"a.c:12:7:"_s).path, u"a.c"_s);
    write(u"three.c"_s, "\n\n  int x;\n");
    EXPECT_TRUE(m_window->open(FilePlace::from(path(u"three.c:3:4"_s))));
    EXPECT_EQ(m_window->current()->editor().caret(), (QCodeBufferPosition{2, 3}));

    EXPECT_TRUE(m_window->open(FilePlace::from(path(u"new.c"_s))));
    EXPECT_TRUE(statusTexts().contains(u"C/C++"_s));
    EXPECT_FALSE(m_window->current()->modified());
    EXPECT_FALSE(QFile::exists(path(u"new.c"_s)));
    QTest::keyClick(m_window->current(), Qt::Key_X);
    actions->activate(u"FileSave"_s);
    EXPECT_EQ(read(u"new.c"_s), "x");
    EXPECT_EQ(m_window->tabs()->tabText(1), u"new.c"_s);
}

TEST_F(EditorWindowTest, OpensDroppedAndRecentFiles)
{
    QMimeData data;
    data.setUrls({QUrl::fromLocalFile(path(u"one.c"_s)), QUrl::fromLocalFile(path(u"two.h"_s))});
    QDragEnterEvent enter({5, 5}, Qt::CopyAction, &data, Qt::LeftButton, {});
    QCoreApplication::sendEvent(m_window.get(), &enter);
    QDropEvent drop({5, 5}, Qt::CopyAction, &data, Qt::LeftButton, {});
    QCoreApplication::sendEvent(m_window.get(), &drop);
    EXPECT_EQ(m_window->tabs()->count(), 2);
    // The middle button closes a tab.
    QTabBar* const bar = m_window->tabs()->findChild<QTabBar*>();
    QTest::mouseClick(bar, Qt::MiddleButton, {}, bar->tabRect(0).center());
    ASSERT_EQ(m_window->tabs()->count(), 1);
    EXPECT_EQ(m_window->tabs()->tabText(0), u"two.h"_s);

    auto* recent = m_window->findChild<QMenu*>(u"EditorRecentMenu"_s);
    emit recent->aboutToShow();
    ASSERT_EQ(recent->actions().size(), 4);
    EXPECT_EQ(recent->actions()[0]->text(), u"&1  two.h"_s);
    recent->actions()[1]->trigger();
    EXPECT_EQ(m_window->tabs()->count(), 2);
    actions->activate(u"ClearFileHistory"_s);
    emit recent->aboutToShow();
    EXPECT_FALSE(recent->actions()[0]->isEnabled());
}

} // namespace
