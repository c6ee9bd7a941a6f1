#include "shell/find/FileSearch.h"
#include "build/log/BuildLogModel.h"
#include "shell/dialogs/FindFilesDialog.h"

#include <QDir>
#include <QFile>
#include <QLabel>
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

} // namespace
