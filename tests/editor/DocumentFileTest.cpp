#include "EditorTest.h"

#include "editor/document/CodeEditLineIterator.h"

#include <QFileInfo>
#include <QTemporaryDir>

#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::Literals::StringLiterals;

namespace {

class DocumentFileTest : public testing::Test {
protected:
    DocumentFileTest() { m_document.setPrompts(&m_user); }
    ~DocumentFileTest() override { CodeDocument::setBackupFileDepth(0); }

    QString path(const char* name = "file.c") const
    {
        return m_folder.filePath(QString::fromUtf8(name));
    }
    bool load(const QByteArray& bytes, const QString& encoding = {})
    {
        writeBytes(path(), bytes);
        return m_document.load(Path(path()), encoding);
    }
    /// Loads and saves; true if the file is as it was.
    bool isKept(const QByteArray& bytes, const QString& encoding = {})
    {
        return load(bytes, encoding) && m_document.save() && bytesOf(path()) == bytes;
    }

    QTemporaryDir m_folder;
    ScriptedUser m_user;
    CodeDocument m_document;
};

TEST_F(DocumentFileTest, KeepsEachByteOfAFile)
{
    struct Case {
        QByteArray bytes;
        QString encoding;
        QString readAs;
        QString text;
    };
    const Case cases[] = {
        {"", {}, u"Default"_s, u""_s},
        {"a\nb\n", {}, u"Default"_s, u"a\nb\n"_s},
        {"a\r\nb\r\n", {}, u"Default"_s, u"a\nb\n"_s},
        {"a\rb", {}, u"Default"_s, u"a\nb"_s},
        {"\xEF\xBB\xBF\xC3\xA4\n", {}, u"utf8"_s, u"\u00e4\n"_s},
        {"\xFF\xFE\xE4\x00\x0A\x00"_ba, {}, u"ISO-10646-UCS-2"_s, u"\u00e4\n"_s},
        {"\xFE\xFF\x00\xE4\x00\x0D\x00\x0A"_ba, {}, u"ISO-10646-UCS-2"_s, u"\u00e4\n"_s},
        {"\xE4\xFF\x80", u"ISO-8859-1"_s, u"ISO-8859-1"_s, u"\u00e4\u00ff\u0080"_s},
        {"\xE4", u"IBM850"_s, u"IBM850"_s, u"\u00f5"_s},
        {"\xF0\x9F\x98\x80", u"UTF-8"_s, u"UTF-8"_s, u"\U0001F600"_s},
    };
    for (const Case& c : cases) {
        EXPECT_TRUE(isKept(c.bytes, c.encoding)) << c.bytes.toHex().toStdString();
        EXPECT_EQ(m_document.encoding(), c.readAs);
        EXPECT_EQ(textOf(m_document), c.text);
        EXPECT_FALSE(m_document.modified());
    }
    EXPECT_TRUE(m_user.questions.isEmpty());
    EXPECT_TRUE(m_user.warnings.isEmpty());
}

TEST_F(DocumentFileTest, TellsOfMixedLineEndings)
{
    ASSERT_TRUE(load("a\r\nb\nc"));
    EXPECT_EQ(textOf(m_document), u"a\nb\nc"_s);
    EXPECT_EQ(m_document.lineEnding(), CodeDocument::LineEnding::LF);
    EXPECT_EQ(m_user.questions,
              QStringList(u"This file %1 has inconsistent line endings; all line endings have been "
                          "changed to native line endings"_s.arg(path())));
    EXPECT_EQ(m_user.lastButtons, QStringList(u"OK"_s));
}

TEST_F(DocumentFileTest, LosesNothingOfWhatIsNotText)
{
    QByteArray invalid = "int a; // \xE4\xF6\xFC\nint b;\n";
    EXPECT_TRUE(isKept(invalid, u"UTF-8"_s));
    EXPECT_EQ(m_document.encoding(), u"ISO-8859-1"_s);
    EXPECT_EQ(m_user.warnings.size(), 1);

    m_user.warnings.clear();
    const QByteArray binary = "text\0more"_ba;
    EXPECT_FALSE(isKept(binary));
    EXPECT_EQ(bytesOf(path()), binary);
    EXPECT_EQ(textOf(m_document), u"text"_s);
    EXPECT_FALSE(m_document.canEdit());
    EXPECT_FALSE(m_document.saveAs(Path(path())));
    EXPECT_EQ(bytesOf(path()), binary);
    EXPECT_EQ(m_user.warnings.size(), 3);
}

TEST_F(DocumentFileTest, SaysWhatCannotBeOpenedAndKeepsTheText)
{
    ASSERT_TRUE(load("kept"));
    QStringList messages;
    QObject::connect(&m_document, &CodeDocument::message,
                     [&](const QString& text) { messages << text; });
    EXPECT_FALSE(m_document.load(Path(path("missing"))));
    EXPECT_FALSE(m_document.load(Path(m_folder.path())));
    EXPECT_EQ(messages.value(0), u"Can't open %1 for reading"_s.arg(path("missing")));
    EXPECT_EQ(m_user.warnings.size(), 2);
    EXPECT_EQ(textOf(m_document), u"kept"_s);
    EXPECT_EQ(m_document.filename(), Path(path()));

    m_document.insertText({0, 0}, u"x"_s);
    EXPECT_FALSE(m_document.saveAs(Path(path("no/such/folder.c"))));
    EXPECT_EQ(messages.last(), u"Can't open %1 for writing"_s.arg(path("no/such/folder.c")));
    EXPECT_TRUE(m_document.modified());
}

TEST_F(DocumentFileTest, AsksBeforeWritingCharactersThatTheEncodingLacks)
{
    ASSERT_TRUE(load("a", u"ISO-8859-1"_s));
    m_document.insertText({0, 1}, u"\u20ac"_s);
    EXPECT_FALSE(m_document.checkEncoding(false));
    EXPECT_TRUE(m_user.questions.isEmpty());
    EXPECT_FALSE(m_document.save());
    EXPECT_EQ(bytesOf(path()), "a");
    EXPECT_EQ(m_user.questions,
              QStringList(u"This document has characters that cannot be represented using the "
                          "encoding 'ISO-8859-1'"_s));
    EXPECT_EQ(m_user.lastButtons, (QStringList{u"Don't save"_s, u"Save anyway"_s}));
    m_user.answers = {1};
    EXPECT_TRUE(m_document.save());
    EXPECT_TRUE(bytesOf(path()).startsWith("a"));
}

TEST_F(DocumentFileTest, KeepsModeAndLinks)
{
    ASSERT_TRUE(load("a"));
    ASSERT_EQ(::chmod(path().toLocal8Bit().constData(), 0751), 0);
    ASSERT_EQ(::symlink("file.c", path("link").toLocal8Bit().constData()), 0);
    ASSERT_EQ(::link(path().toLocal8Bit().constData(), path("hard").toLocal8Bit().constData()), 0);
    ASSERT_TRUE(m_document.load(Path(path("link"))));
    m_document.insertText({0, 1}, u"b"_s);
    ASSERT_TRUE(m_document.save());
    EXPECT_TRUE(QFileInfo(path("link")).isSymLink());
    EXPECT_EQ(bytesOf(path()), "ab");
    EXPECT_EQ(bytesOf(path("hard")), "ab");
    struct stat status = {};
    ASSERT_EQ(::stat(path().toLocal8Bit().constData(), &status), 0);
    EXPECT_EQ(status.st_mode & 07777u, 0751u);
    EXPECT_EQ(QDir(m_folder.path()).entryList(QDir::Files).size(), 3);
}

TEST_F(DocumentFileTest, BacksUpByDepth)
{
    CodeDocument::setBackupFileDepth(2);
    ASSERT_TRUE(load("0"));
    for (const char* text : {"1", "2", "3"}) {
        m_document.replaceText({0, 0}, m_document.buffer().text(0), QString::fromLatin1(text));
        ASSERT_TRUE(m_document.save());
    }
    EXPECT_EQ(bytesOf(path()), "3");
    EXPECT_EQ(bytesOf(path("file.c.bak")), "2");
    EXPECT_EQ(bytesOf(path("file.c.bak.2")), "1");
    EXPECT_FALSE(QFile::exists(path("file.c.bak.3")));
}

TEST_F(DocumentFileTest, AsksWhenTheFileHasChangedOrGone)
{
    ASSERT_TRUE(load("a"));
    EXPECT_FALSE(m_document.changedOnDisk());
    m_document.insertText({0, 1}, u"b"_s);
    writeBytes(path(), "other");
    EXPECT_TRUE(m_document.changedOnDisk());
    EXPECT_FALSE(m_document.save());
    EXPECT_EQ(bytesOf(path()), "other");
    EXPECT_TRUE(m_document.modified());
    m_user.answers = {0};
    m_user.chosenFile = path("elsewhere.c");
    EXPECT_TRUE(m_document.save());
    EXPECT_EQ(bytesOf(path()), "other");
    EXPECT_EQ(bytesOf(path("elsewhere.c")), "ab");
    EXPECT_EQ(m_document.filename(), Path(path("elsewhere.c")));
    // A file that has gone is simply there again.
    QFile::remove(path("elsewhere.c"));
    EXPECT_TRUE(m_document.changedOnDisk());
    m_user.questions.clear();
    EXPECT_TRUE(m_document.save());
    EXPECT_TRUE(m_user.questions.isEmpty());
    EXPECT_EQ(bytesOf(path("elsewhere.c")), "ab");
}

TEST_F(DocumentFileTest, ANewFileDoesNotReplaceOneThatCameMeanwhile)
{
    CodeDocument document;
    document.setPrompts(&m_user);
    document.setFilename(Path(path("new.c")), true);
    document.setText(u"mine"_s);
    EXPECT_FALSE(document.changedOnDisk());
    writeBytes(path("new.c"), "other");
    EXPECT_TRUE(document.changedOnDisk());
    EXPECT_FALSE(document.save());
    EXPECT_EQ(bytesOf(path("new.c")), "other");
    QFile::remove(path("new.c"));
    EXPECT_TRUE(document.save());
    EXPECT_EQ(bytesOf(path("new.c")), "mine");
}

TEST_F(DocumentFileTest, LinesAreGivenToReaders)
{
    const auto linesOf = [](CodeEditLineIterator iterator) {
        QStringList lines;
        for (QString line; iterator.getLine(line);)
            lines.append(line);
        return lines;
    };
    ASSERT_TRUE(load("one\r\ntwo"));
    m_document.insertText({0, 3}, u"!"_s);
    EXPECT_EQ(linesOf(CodeEditLineIterator(&m_document)), (QStringList{u"one!"_s, u"two"_s}));
    EXPECT_EQ(linesOf(CodeEditLineIterator(Path(path()))), (QStringList{u"one"_s, u"two"_s}));
    EXPECT_TRUE(linesOf(CodeEditLineIterator(Path(path("no such")))).isEmpty());
    EXPECT_TRUE(linesOf(CodeEditLineIterator(Path(u"/dev/zero"_s))).isEmpty());
}

TEST_F(DocumentFileTest, ReportsAFullDisk)
{
    ASSERT_TRUE(load("a"));
    m_document.insertText({0, 0}, u"b"_s);
    EXPECT_FALSE(m_document.saveAs(Path(u"/dev/full"_s)));
    EXPECT_EQ(m_user.warnings.size(), 1);
    EXPECT_TRUE(m_document.modified());
    EXPECT_EQ(m_document.filename(), Path(path()));
}

TEST_F(DocumentFileTest, AsksWhatToDoWithChanges)
{
    ASSERT_TRUE(load("a"));
    EXPECT_EQ(m_document.checkSaved(), 1);
    m_document.insertText({0, 0}, u"b"_s);
    m_user.answers = {2, 1, 0};
    EXPECT_EQ(m_document.checkSaved(), -1);
    EXPECT_EQ(m_document.checkSaved(), 0);
    EXPECT_EQ(m_document.checkSaved(), 1);
    EXPECT_EQ(m_user.questions.first(), u"Do you want to save the changes made to file.c?"_s);
    EXPECT_EQ(bytesOf(path()), "ba");
    EXPECT_EQ(m_document.checkSaved(), 1);
}

TEST_F(DocumentFileTest, ACopyChangesNothing)
{
    ASSERT_TRUE(load("a"));
    m_document.insertText({0, 0}, u"b"_s);
    EXPECT_TRUE(m_document.saveCopyAs(Path(path("copy.c"))));
    EXPECT_EQ(bytesOf(path("copy.c")), "ba");
    EXPECT_EQ(m_document.filename(), Path(path()));
    EXPECT_TRUE(m_document.modified());
}

} // namespace
