#include "EditorTest.h"

#include <QRandomGenerator>

using namespace Qt::Literals::StringLiterals;

namespace {

/// As a key press does it.
void type(CodeDocument& document, const QString& text)
{
    for (const QChar c : text) {
        const bool merge = document.canMergeTyping(QStringView(&c, 1));
        document.beginUpdate(0, CodeEditIcon::Typing);
        document.insertText(document.caret(), c);
        document.endUpdate();
        if (merge)
            document.mergeTyping();
    }
}

class UndoTest : public testing::Test {
protected:
    ~UndoTest() override { CodeDocument::setUndoMode(CodeDocument::UndoMode::Words); }

    CodeDocument m_document;
};

TEST_F(UndoTest, MergesTypingByTheMode)
{
    struct Case {
        CodeDocument::UndoMode mode;
        QStringList steps;
    };
    const Case cases[] = {
        {CodeDocument::UndoMode::Characters,
         {u"one two"_s, u"one tw"_s, u"one t"_s, u"one "_s, u"one"_s, u"on"_s, u"o"_s}},
        {CodeDocument::UndoMode::Words, {u"one two"_s, u"one"_s}},
        {CodeDocument::UndoMode::Insertion, {u"one two"_s}},
    };
    for (const Case& c : cases) {
        CodeDocument document;
        CodeDocument::setUndoMode(c.mode);
        type(document, u"one two"_s);
        for (const QString& text : c.steps) {
            EXPECT_EQ(textOf(document), text);
            document.undo();
        }
        EXPECT_EQ(textOf(document), u""_s);
        EXPECT_FALSE(document.canUndo());
        for (auto text = c.steps.rbegin(); text != c.steps.rend(); ++text) {
            document.redo();
            EXPECT_EQ(textOf(document), *text);
        }
        EXPECT_FALSE(document.canRedo());
    }
}

TEST_F(UndoTest, NothingMergesAcrossMovesAndUndo)
{
    type(m_document, u"ab"_s);
    m_document.setCaret({0, 1});
    type(m_document, u"x"_s);
    EXPECT_EQ(m_document.undoActions().size(), 2u);
    m_document.undo();
    type(m_document, u"y"_s);
    EXPECT_EQ(textOf(m_document), u"ayb"_s);
    m_document.undoAll();
    EXPECT_EQ(textOf(m_document), u""_s);
}

TEST_F(UndoTest, KnowsTheSavedText)
{
    EXPECT_FALSE(m_document.modified());
    type(m_document, u"ab cd"_s);
    EXPECT_TRUE(m_document.modified());
    m_document.resetModified();
    EXPECT_FALSE(m_document.modified());
    // Letters that join the word which was just saved.
    type(m_document, u"e"_s);
    EXPECT_TRUE(m_document.modified());
    m_document.undo();
    EXPECT_TRUE(m_document.modified());
    m_document.undo();
    m_document.resetModified();
    m_document.redo();
    EXPECT_TRUE(m_document.modified());
    m_document.undo();
    EXPECT_FALSE(m_document.modified());
    // As many steps as before, but others.
    type(m_document, u"ab cd"_s);
    EXPECT_TRUE(m_document.modified());
}

TEST_F(UndoTest, RedoLivesUntilAnEdit)
{
    type(m_document, u"one two"_s);
    m_document.undo();
    m_document.beginUpdate(CodeDocument::Extend);
    m_document.setCaret({0, 0});
    m_document.endUpdate();
    EXPECT_TRUE(m_document.selecting());
    EXPECT_TRUE(m_document.canRedo());
    m_document.insertText({0, 0}, u"x"_s);
    EXPECT_FALSE(m_document.canRedo());
}

TEST_F(UndoTest, MakesThePlaceOfAnInsertion)
{
    m_document.setText(u"ab"_s);
    m_document.beginUpdate();
    m_document.insertText({3, 2}, u"x"_s);
    m_document.endUpdate();
    EXPECT_EQ(textOf(m_document), u"ab\n\n\n  x"_s);
    m_document.undo();
    EXPECT_EQ(textOf(m_document), u"ab"_s);
    m_document.redo();
    EXPECT_EQ(textOf(m_document), u"ab\n\n\n  x"_s);
}

TEST_F(UndoTest, ReportsLinesThatComeAndGo)
{
    m_document.setText(u"0\n1\n2\n3\n4"_s);
    QStringList reports;
    QObject::connect(&m_document, &CodeDocument::numberOfLinesChanged,
                     [&](int line, int delta) { reports << u"%1 %2"_s.arg(line).arg(delta); });
    m_document.insertText({1, 1}, u"a\nb\nc"_s);
    m_document.deleteText({1, 0}, {3, 0});
    m_document.deleteText({0, 1}, {1, 0});
    m_document.insertText({0, 0}, u"no new line"_s);
    m_document.undo();
    m_document.undo();
    EXPECT_EQ(reports, (QStringList{u"2 2"_s, u"2 -2"_s, u"2 -1"_s, u"1 1"_s}));
}

TEST_F(UndoTest, DescribesActionsAndTransactions)
{
    EXPECT_EQ(CodeEditInsertAction(u"0123456789"_s, {}, {}).description(),
              u"Insert \"0123456789\""_s);
    EXPECT_EQ(CodeEditDeleteAction(u"0123456789a"_s, {}, {}).description(),
              u"Delete \"0123456789...\""_s);
    EXPECT_EQ(CodeEditReplaceAction(u"a"_s, u"b"_s, {}).description(), u"Replace \"b\""_s);
    m_document.setText(u"abc"_s);
    m_document.beginUpdate(0, CodeEditIcon::SortDescending);
    m_document.replaceText({0, 0}, u"abc"_s, u"x"_s);
    m_document.endUpdate();
    EXPECT_EQ(m_document.undoActions().head()->description(), u"Sort Descending"_s);
}

TEST_F(UndoTest, CountsWhatIsUndoneAtOnce)
{
    QStringList messages;
    QObject::connect(&m_document, &CodeDocument::message,
                     [&](const QString& text) { messages << text; });
    type(m_document, u"a b c"_s);
    m_document.undo();
    m_document.undoAll();
    m_document.undoAll();
    m_document.redoAll();
    EXPECT_EQ(messages, (QStringList{u"Typing"_s, u"Undone 2 actions"_s, u"Redone 3 actions"_s}));
}

TEST_F(UndoTest, ReadOnlyTextsRefuseUnlessTheHostHelps)
{
    m_document.setText(u"abc"_s);
    m_document.setModState(CodeDocument::ModState::ReadOnly);
    m_document.insertText({0, 0}, u"x"_s);
    EXPECT_EQ(textOf(m_document), u"abc"_s);
    const auto help = QObject::connect(&m_document, &CodeDocument::readOnlyFileEdit, [&] {
        m_document.setModState(CodeDocument::ModState::Writable);
    });
    m_document.insertText({0, 0}, u"x"_s);
    EXPECT_EQ(textOf(m_document), u"xabc"_s);
    QObject::disconnect(help);
    m_document.setModState(CodeDocument::ModState::ReadOnly);
    m_document.setEditReadOnly(true);
    m_document.undo();
    EXPECT_EQ(textOf(m_document), u"abc"_s);
    m_document.setModState(CodeDocument::ModState::Locked);
    m_document.setModState(CodeDocument::ModState::Writable);
    m_document.insertText({0, 0}, u"x"_s);
    EXPECT_EQ(textOf(m_document), u"abc"_s);
}

// Random changes, taken back and made again, at every step the text that was there.
TEST_F(UndoTest, LeadsThroughTheSameTextsBackAndForth)
{
    QRandomGenerator random(11);
    m_document.setText(u"first\nsecond\nthird"_s);
    QStringList texts{textOf(m_document)};
    // Someone who hears of changes only.
    QString heard = texts[0];
    QObject::connect(&m_document, &CodeDocument::textReplaced, &m_document,
                     [&](QCodeBufferPosition at, const QString& removed, const QString& inserted) {
                         qsizetype start = 0;
                         for (int line = 0; line < at.line; ++line)
                             start = heard.indexOf(u'\n', start) + 1;
                         const qsizetype offset = start + at.column;
                         ASSERT_EQ(heard.mid(offset, removed.size()), removed);
                         heard.replace(offset, removed.size(), inserted);
                     });
    const auto position = [&] {
        const int line = random.bounded(m_document.count());
        return QCodeBufferPosition{line, random.bounded(m_document.buffer().length(line) + 1)};
    };
    for (int round = 0; round < 400; ++round) {
        m_document.beginUpdate();
        for (int i = random.bounded(3); i >= 0; --i) {
            const QCodeBufferPosition at = position();
            const QCodeBufferPosition other = position();
            switch (random.bounded(3)) {
            case 0:
                m_document.insertText(at, QString(u"x\nyy z\n"_s).left(random.bounded(8)));
                break;
            case 1: m_document.deleteText({at, other}); break;
            default: {
                const QString old = m_document.buffer().text(at.line).mid(at.column);
                m_document.replaceText(at, old, u"new"_s);
            }
            }
        }
        m_document.endUpdate();
        texts.append(textOf(m_document));
        ASSERT_EQ(heard, texts.last());
    }
    for (auto text = texts.rbegin(); text != texts.rend(); ++text) {
        ASSERT_EQ(textOf(m_document), *text);
        ASSERT_EQ(heard, *text);
        m_document.undo();
    }
    for (const QString& text : texts) {
        ASSERT_EQ(textOf(m_document), text);
        m_document.redo();
    }
}

TEST_F(UndoTest, AMillionStepsStay)
{
    CodeDocument::setUndoMode(CodeDocument::UndoMode::Characters);
    for (int i = 0; i < 1'000'000; ++i) {
        m_document.beginUpdate(0, CodeEditIcon::Typing);
        m_document.insertText(m_document.caret(), i % 60 == 59 ? u"\n"_s : u"x"_s);
        m_document.endUpdate();
    }
    const int lines = m_document.count();
    m_document.undoAll();
    EXPECT_EQ(textOf(m_document), u""_s);
    m_document.redoAll();
    EXPECT_EQ(m_document.count(), lines);
    EXPECT_EQ(m_document.undoActions().size(), 1'000'000u);
}

} // namespace
