#include "editor/commands/SmartIndent.h"

#include <QRegularExpression>

#include <vector>

using namespace Qt::Literals::StringLiterals;

namespace {

/// The nesting of blocks and statements, as far as lines tell it.
class Nesting {
public:
    int level() const { return m_level; }
    bool isBlock() const { return m_open.back() == Kind::Block; }

    void openBlock()
    {
        // A brace takes over the level of the statement that it belongs to.
        if (isBlock())
            ++m_level;
        else
            m_open.pop_back();
        m_open.push_back(Kind::Block);
    }
    void openStatement()
    {
        ++m_level;
        m_open.push_back(Kind::Statement);
    }
    void closeBlock()
    {
        closeOne();
        closeStatements();
    }
    void closeStatements()
    {
        while (!isBlock() && m_level > 0)
            closeOne();
    }
    void closeOne()
    {
        if (m_level == 0)
            return;
        --m_level;
        if (m_open.size() > 1)
            m_open.pop_back();
    }

private:
    enum class Kind { Block, Statement };
    std::vector<Kind> m_open{Kind::Block};
    int m_level = 0;
};

const QRegularExpression& controlWords()
{
    static const QRegularExpression expression(u"if|else|while|do|for|switch"_s);
    return expression;
}

/// Whether the line holds that brace alone, which was just typed or stands in a new line.
bool isTrigger(const QString& line, QChar brace, int caretColumn, bool forced)
{
    return line.trimmed() == brace
        && (forced || (caretColumn > 0 && line.indexOf(brace) == caretColumn - 1));
}

} // namespace

std::optional<int> smartIndent(const QStringList& lines, const QList<int>& indents, int caretColumn,
                               bool forced, bool fromStart, const CodeEditSettings& settings)
{
    Nesting nesting;
    int referenceIndent = 0;
    int referenceLevel = 0;
    bool hasReference = fromStart;
    for (qsizetype i = 0; i + 1 < lines.size(); ++i) {
        const QString& line = lines[i];
        if (line.trimmed().isEmpty())
            continue;
        // In the middle of a text the first line stands for what isn't looked at.
        if (!hasReference)
            referenceIndent = indents[i];
        hasReference = true;
        if (line.contains(u'{')) {
            nesting.openBlock();
        } else if (line.contains(u'}')) {
            nesting.closeBlock();
        } else if (line.contains(u';')) {
            nesting.closeStatements();
        } else if (line.contains(controlWords())) {
            nesting.openStatement();
        } else {
            referenceIndent = indents[i];
            referenceLevel = nesting.level();
        }
    }

    int level = nesting.level();
    const QString& last = lines.last();
    const bool opens = isTrigger(last, u'{', caretColumn, forced);
    const bool closes = isTrigger(last, u'}', caretColumn, forced);
    const bool opensAtStatement = opens && !settings.openBraceIndent && !nesting.isBlock();
    const bool closesOuter = closes && !settings.closeBraceIndent && level > 0;
    if (opensAtStatement || closesOuter)
        --level;
    else if (opens && settings.openBraceIndent && nesting.isBlock())
        ++level;
    if (!forced && !opens && !closes)
        return {};
    return std::max(0, referenceIndent + (level - referenceLevel) * settings.indentSize);
}
