#include "shell/find/FileSearch.h"
#include "build/log/BuildLogModel.h"
#include "editor/find/HistoryCombo.h"
#include "editor/widget/CodeEdit.h"
#include "projects/settings/EnvironmentSettings.h"
#include "shell/dialogs/FindFilesDialog.h"
#include "shell/windows/FindWindow.h"

#include <QApplication>
#include <QComboBox>
#include <QDir>
#include <QFile>
#include <QFocusEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

#include <gtest/gtest.h>

using namespace Qt::Literals::StringLiterals;

namespace {

class FileSearchTest : public testing::Test {
protected:
    FileSearchTest()
    {
        LastSearch().remember();
        write(u"b.c"_s, "int main(void)\n{\n\treturn main2;\n}\n");
        write(u"a.h"_s, "extern int mainland;\r\n");
        write(u"binary.bin"_s, QByteArray("main\0main", 9));
        write(u"latin.c"_s, "// \xE4 main\n");
        write(u"sub/deep/c.c"_s, "main main\n");
        QFile::link(m_folder.path(), m_folder.filePath(u"sub/loop"_s));
    }
    void write(const QString& name, const QByteArray& bytes)
    {
        const QString path = m_folder.filePath(name);
        QDir().mkpath(QFileInfo(path).path());
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(bytes);
    }
    FileSearch::Request request(const QString& text) const
    {
        FileSearch::Request result;
        result.text = text;
        result.folder = m_folder.path();
        return result;
    }
    QStringList hits()
    {
        QStringList result;
        DiagnosticData data;
        for (bool more = m_log.getFirstDiagnostic(data); more; more = m_log.getNextDiagnostic(data))
            result.append(u"%1:%2:%3 %4"_s.arg(data.path.fileName())
                              .arg(data.line)
                              .arg(data.column)
                              .arg(data.message));
        return result;
    }

    QTemporaryDir m_folder;
    BuildLogModel m_log{BuildLogModel::Kind::Other};
    FileSearch m_search{m_log};
};

TEST_F(FileSearchTest, TellsEachHitOfTheFilesInOrder)
{
    EXPECT_EQ(m_search.run(request(u"main"_s)), FileSearch::Outcome::Done);
    EXPECT_EQ(hits(),
              (QStringList{u"a.h:1:12 extern int mainland;"_s, u"b.c:1:5 int main(void)"_s,
                           u"b.c:3:9 return main2;"_s, u"latin.c:1:6 // \u00e4 main"_s,
                           u"c.c:1:1 main main"_s, u"c.c:1:6 main main"_s}));
    EXPECT_EQ(m_search.summary(), u"6 occurrences have been found"_s);
    EXPECT_EQ(m_log.root()->child(0)->text(), u"Find 'main'"_s);
}

TEST_F(FileSearchTest, KeepsToTypesFoldersAndWords)
{
    FileSearch::Request search = request(u"main"_s);
    search.fileTypes = u"*.h; *.cpp"_s;
    m_search.run(search);
    EXPECT_EQ(m_search.summary(), u"1 occurrence has been found"_s);
    search.fileTypes = u"*.c"_s;
    search.options = FindOption::WholeWord;
    search.subfolders = false;
    m_search.run(search);
    EXPECT_EQ(m_search.found(), 2);
    m_search.run(request(u"nowhere"_s));
    EXPECT_EQ(m_search.summary(), u"Cannot find the string 'nowhere'"_s);
    search.folder = m_folder.filePath(u"missing"_s);
    EXPECT_EQ(m_search.run(search), FileSearch::Outcome::NoSuchFolder);
    EXPECT_EQ(m_search.summary(), u"The folder '%1' doesn't exist"_s.arg(search.folder));
    search = request(u";$"_s);
    search.options = FindOption::RegularExpression;
    m_search.run(search);
    EXPECT_EQ(m_search.found(), 2) << "whatever ends the lines";
    search = request(u"("_s);
    search.options = FindOption::RegularExpression;
    EXPECT_EQ(m_search.run(search), FileSearch::Outcome::BadExpression);
}

TEST_F(FileSearchTest, StopsWhenItIsAskedTo)
{
    write(u"long.txt"_s, QByteArray("main\n").repeated(200'000));
    QTimer::singleShot(0, [&] { m_search.stop(); });
    EXPECT_EQ(m_search.run(request(u"main"_s)), FileSearch::Outcome::Stopped);
    EXPECT_EQ(m_search.summary(), u"Search stopped"_s);
    EXPECT_LT(m_search.found(), 200'000);
}

TEST_F(FileSearchTest, TheDialogRunsASearch)
{
    FindFilesDialog dialog(m_log);
    dialog.show();
    auto* find = dialog.findChild<QPushButton*>();
    ASSERT_TRUE(find);
    EXPECT_EQ(find->text(), u"&Find"_s);
    EXPECT_FALSE(find->isEnabled());
    dialog.setText(u"mainland"_s);
    dialog.setFolder(m_folder.path());
    QString summary;
    QObject::connect(&dialog, &FindFilesDialog::finished,
                     [&](const QString& text) { summary = text; });
    QTest::mouseClick(find, Qt::LeftButton);
    EXPECT_EQ(summary, u"1 occurrence has been found"_s);
    EXPECT_EQ(find->text(), u"&Find"_s);
}

TEST_F(FileSearchTest, TheWindowReplacesInFilesAndInOpenEditors)
{
    CodeEdit edit;
    ASSERT_TRUE(edit.load(Path(m_folder.filePath(u"b.c"_s))));
    FindWindow window(m_log);
    window.setOpenEditors(
        [&](const QString& path) { return path == edit.fileName() ? &edit.editor() : nullptr; });
    window.setMode(FindWindow::Mode::ReplaceInFiles);
    window.setFolder(m_folder.path());
    window.setText(u"main"_s);
    QString summary;
    QObject::connect(&window, &FindWindow::searchFinished,
                     [&](const QString& text) { summary = text; });
    for (QComboBox* combo : window.findChildren<QComboBox*>())
        if (combo->currentText().isEmpty())
            combo->setEditText(u"start"_s);
    QString question;
    const auto answer = [&question](QMessageBox::StandardButton button) {
        QTimer::singleShot(0, [&question, button] {
            auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
            ASSERT_TRUE(box);
            question = box->text();
            box->button(button)->click();
        });
    };
    answer(QMessageBox::No);
    window.replaceAll();
    EXPECT_TRUE(question.startsWith(u"Do you want to replace 6 occurrences in "))
        << question.toStdString();
    EXPECT_EQ(summary, u"6 occurrences have been found"_s);
    answer(QMessageBox::Yes);
    window.replaceAll();
    EXPECT_EQ(summary, u"6 occurrences have been replaced."_s);
    // What is open is changed there, and not yet saved.
    EXPECT_EQ(edit.editor().buffer().text(0), u"int start(void)"_s);
    EXPECT_TRUE(edit.modified());
    const auto bytes = [&](const QString& name) {
        QFile file(m_folder.filePath(name));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    };
    EXPECT_TRUE(bytes(u"b.c"_s).startsWith("int main(void)"));
    EXPECT_EQ(bytes(u"a.h"_s), "extern int startland;\r\n");
    EXPECT_EQ(bytes(u"latin.c"_s), "// \xE4 start\n");
    EXPECT_EQ(bytes(u"binary.bin"_s), QByteArray("main\0main", 9));
}

TEST_F(FileSearchTest, ReplacingChangesNothingElse)
{
    write(u"mixed.c"_s, "main\r\nx\n");
    write(u"mac.c"_s, "x\rmain\r");
    m_search.run(request(u"main"_s));
    const FileReplacing::Result result = FileReplacing::run(m_search, u"start"_s, {});
    EXPECT_EQ(result.replaced, 7);
    EXPECT_EQ(result.failed, QStringList(m_folder.filePath(u"mixed.c"_s)))
        << "its line ends would have changed";
    const auto bytes = [&](const QString& name) {
        QFile file(m_folder.filePath(name));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    };
    EXPECT_EQ(bytes(u"mixed.c"_s), "main\r\nx\n");
    EXPECT_EQ(bytes(u"mac.c"_s), "x\rstart\r");
}

TEST_F(FileSearchTest, FieldsShareTheirHistory)
{
    EnvironmentSettings settings;
    settings.init(m_folder.filePath(u"a.xml"_s), m_folder.filePath(u"b.xml"_s));
    settings.createEntries();
    settings.findHistory->setValue(QStringList{u"mainland"_s});
    HistoryCombo first(settings.findHistory, 10, nullptr);
    HistoryCombo second(settings.findHistory, 10, nullptr);
    first.setEditText({});
    QTest::keyClicks(&first, u"ma"_s);
    EXPECT_EQ(first.currentText(), u"ma"_s) << "no text that began so";
    first.remember();
    second.setEditText(u"being typed"_s);
    second.lineEdit()->setSelection(0, 5);
    QFocusEvent focus(QEvent::FocusIn);
    QApplication::sendEvent(&second, &focus);
    EXPECT_EQ(second.itemText(0), u"ma"_s);
    EXPECT_EQ(second.itemText(1), u"mainland"_s);
    EXPECT_EQ(second.currentText(), u"being typed"_s);
    EXPECT_EQ(second.lineEdit()->selectedText(), u"being"_s);
}

TEST_F(FileSearchTest, TheWindowSearchesTheDocument)
{
    CodeEdit edit;
    edit.editor().setText(u"a b\na"_s);
    FindWindow window(m_log);
    window.setEdit(&edit);
    window.setText(u"a"_s);
    window.findNext();
    EXPECT_EQ(edit.editor().selectedText(), u"a"_s);
    window.setMode(FindWindow::Mode::Replace);
    window.replaceAll();
    EXPECT_EQ(edit.editor().getAllText(), (QStringList{u" b"_s, u""_s}));
}

} // namespace
