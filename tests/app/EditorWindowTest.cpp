#include "../../app/gantryedit/EditorWindow.h"
#include "../../app/gantryedit/SearchResults.h"

#include "editor/commands/IndentSettings.h"
#include "editor/widget/CodeEdit.h"
#include "editor/widget/CodeEditPreferences.h"
#include "projects/settings/GantryBenchEnvironmentSettings.h"
#include "shell/actions/Actions.h"
#include "shell/actions/GUIBuilder.h"
#include "shell/dialogs/FindFilesDialog.h"

#include <QApplication>
#include <QFile>
#include <QLabel>
#include <QMenuBar>
#include <QMessageBox>
#include <QPushButton>
#include <QStatusBar>
#include <QTabWidget>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>
#include <QTreeWidget>

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

} // namespace

int main(int argc, char** argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    testing::InitGoogleTest(&argc, argv);
    const QApplication application(argc, argv);
    return RUN_ALL_TESTS();
}
