#pragma once

#include "editor/document/CodeDocument.h"
#include "editor/parsers/CodeEditParser.h"

#include <QFile>
#include <QList>
#include <QStringList>

#include <gtest/gtest.h>

/// Makes gtest print texts as such.
inline void PrintTo(const QString& text, std::ostream* out)
{
    *out << '"' << text.toStdString() << '"';
}
inline void PrintTo(QCodeBufferPosition position, std::ostream* out)
{
    *out << '(' << position.line << ", " << position.column << ')';
}

/// The whole text, lines joined with "\n".
inline QString textOf(const QCodeBuffer& buffer)
{
    QStringList lines;
    for (int line = 0; line < buffer.count(); ++line)
        lines.append(buffer.text(line));
    return lines.join(u'\n');
}
inline QString textOf(const CodeDocument& document) { return textOf(document.buffer()); }

/// A user who gives the answers that were laid out, and whose questions can be looked at.
class ScriptedUser : public DocumentPrompts {
public:
    void warn(const QString& text) override { warnings.append(text); }
    int ask(const QString& text, const QStringList& buttons, int escape) override
    {
        questions.append(text);
        lastButtons = buttons;
        return answers.isEmpty() ? escape : answers.takeFirst();
    }
    QString fileToSave(const QString&) override { return chosenFile; }
    QString fileToInsert() override { return chosenFile; }

    QList<int> answers;
    QString chosenFile;
    QStringList warnings;
    QStringList questions;
    QStringList lastButtons;
};

/// C comments only: state 1 inside of them. Counts how many lines it looks at.
class CommentParser : public CodeEditParser {
public:
    qsizetype parse(QStringView in, char16_t* out) override
    {
        ++parsed;
        qsizetype size = 0;
        for (qsizetype at = 0; at < in.size(); ++at) {
            if (in.mid(at).startsWith(u"/*"))
                m_state = 1;
            else if (in.mid(at).startsWith(u"*/"))
                m_state = 0;
            out[size++] = in[at].unicode();
        }
        out[size] = 0;
        return size;
    }
    int parsed = 0;
};

inline QByteArray bytesOf(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

inline void writeBytes(const QString& path, const QByteArray& bytes)
{
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    ASSERT_EQ(file.write(bytes), bytes.size());
}
