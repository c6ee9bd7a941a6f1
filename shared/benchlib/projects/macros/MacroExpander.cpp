#include "projects/macros/MacroExpander.h"

#include <algorithm>

namespace {

// Values that bring in references to themselves can make passes without end, each larger than the
// one before. Text of any sense needs a handful of passes.
constexpr int MaximumPasses = 100;
constexpr qsizetype MaximumGrowth = 4'000'000;

} // namespace

QString MacroExpander::expand(const QString& text)
{
    m_text = text;
    m_largest = text.size() + MaximumGrowth;
    for (int i = 0; i < MaximumPasses && m_text.contains(u"$("); ++i) {
        if (!pass())
            return m_text;
        const bool changed = m_result != m_text;
        m_text = m_result;
        if (!m_again || (!changed && m_namesSettled))
            return m_text;
        m_namesSettled = !changed;
    }
    return m_text;
}

/// Makes the result of the text. False if it grew too large.
bool MacroExpander::pass()
{
    m_result.clear();
    m_again = false;
    m_outer.clear();
    m_at = 0;
    findClosing();
    while (m_at < m_text.size()) {
        if (!m_outer.isEmpty() && m_at == m_outer.last().nameEnd) {
            m_result += between(m_at, m_outer.last().end);
            m_at = m_outer.takeLast().end;
            continue;
        }
        if (!between(m_at, m_text.size()).startsWith(u"$(")) {
            const qsizetype limit = m_outer.isEmpty() ? m_text.size() : m_outer.last().nameEnd;
            const qsizetype next = m_text.indexOf(u'$', m_at + 1);
            const qsizetype end = next < 0 ? limit : std::min(next, limit);
            m_result += between(m_at, end);
            m_at = end;
            continue;
        }
        const qsizetype close = m_closing.at(m_at + 1);
        if (close < 0)
            break;
        expandReference(close);
        if (m_result.size() > m_largest)
            return false;
    }
    return true;
}

void MacroExpander::expandReference(qsizetype close)
{
    const qsizetype begin = m_at + 2;
    const qsizetype end = nameEnd(begin, close);
    const QStringView name = between(begin, end);
    if (between(begin, close).contains(u'$'))
        m_again = true;
    if (!m_namesSettled && name.contains(u"$(")) {
        m_outer.append({end, close + 1});
        m_result += u"$(";
        m_at = begin;
        return;
    }
    QStringView fallback = between(m_at, close + 1);
    if (end < close) {
        const bool last = m_text.at(end + 1) == u':';
        fallback = between(end + (last ? 2 : 1), close);
        if (last)
            m_again = false;
    }
    const auto macro = m_macros.constFind(name.toString());
    QString value;
    if (macro == m_macros.constEnd())
        m_result += fallback;
    else if (MacroSystem::dynamicMacro(macro.key(), value))
        m_result += value;
    else
        m_result += macro.value();
    m_at = close + 1;
}

/// Pairs all parentheses at once, so that nested references don't cost the square of their depth.
void MacroExpander::findClosing()
{
    m_closing.fill(-1, m_text.size());
    QList<qsizetype> open;
    for (qsizetype i = 0; i < m_text.size(); ++i) {
        if (m_text.at(i) == u'(')
            open.append(i);
        else if (m_text.at(i) == u')' && !open.isEmpty())
            m_closing[open.takeLast()] = i;
    }
}

/// The first ":" that isn't in a reference within the name, or `close`.
qsizetype MacroExpander::nameEnd(qsizetype begin, qsizetype close) const
{
    qsizetype i = begin;
    while (i < close && m_text.at(i) != u':')
        i = between(i, close).startsWith(u"$(") ? m_closing.at(i + 1) + 1 : i + 1;
    return i;
}

QStringView MacroExpander::between(qsizetype begin, qsizetype end) const
{
    return QStringView(m_text).sliced(begin, end - begin);
}
