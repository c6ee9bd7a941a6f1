#pragma once

#include "forth/MemoryFiles.h"
#include "script/forth/FSConsole.h"

#include <gtest/gtest.h>

#include <limits>

using namespace Qt::Literals::StringLiterals;

/// Made ahead of the console that uses it.
struct TestFiles {
    MemoryFiles m_files;
};

/// A console over files in memory that gathers what it prints, without input and prompts.
class TestConsole : private TestFiles, public FSConsole {
public:
    TestConsole() : FSConsole(m_files) { }

    MemoryFiles& files() { return m_files; }
    /// Interprets lines, and gives what they print.
    std::string operator()(const char* lines)
    {
        for (const QString& line : QString::fromUtf8(lines).split(u'\n'))
            process(line);
        return takeText();
    }
    std::string takeText() { return std::exchange(m_text, {}).toStdString(); }

    void output(const QString& text) override { m_text += text; }
    bool carryOnExecuting() override { return polls-- > 0; }

    int polls = std::numeric_limits<int>::max(); ///< until a user interrupt

protected:
    void showInput(const QString&) override { }

private:
    QString m_text;
};

struct Case {
    const char* lines;
    const char* text;
};

/// Each case on a console of its own.
inline void check(std::initializer_list<Case> cases)
{
    for (const Case& one : cases) {
        TestConsole console;
        EXPECT_EQ(console(one.lines), one.text) << one.lines;
    }
}
