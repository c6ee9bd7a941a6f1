#include "editor/commands/TextSearch.h"

#include "editor/commands/SearchExpression.h"
#include "projects/settings/EnvironmentSettings.h"

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

namespace {

/// Of programs without settings.
LastSearch& unsavedSearch()
{
    static LastSearch search;
    return search;
}

} // namespace

TextSearch::TextSearch(const QString& text, FindOptions options)
    : m_text(text),
      m_regular(options.testFlag(FindOption::RegularExpression)),
      m_wholeWord(options.testFlag(FindOption::WholeWord)),
      m_valid(!text.isEmpty()),
      m_case(options.testFlag(FindOption::MatchCase) ? Qt::CaseSensitive : Qt::CaseInsensitive)
{
    if (!m_regular)
        return;
    m_expression = QTx::constructSearchRegularExpression(text, options);
    m_valid = m_valid && m_expression.isValid();
}

TextSearch::Match TextSearch::next(QStringView line, int from) const
{
    if (m_regular)
        return findExpression(line, from, true);
    return findLiteral(line, std::max(0, from), true);
}

TextSearch::Match TextSearch::previous(QStringView line, int from) const
{
    if (m_regular)
        return findExpression(line, from, false);
    return findLiteral(line, std::min(from, static_cast<int>(line.size())), false);
}

TextSearch::Match TextSearch::findExpression(QStringView line, int from, bool forward) const
{
    QStringView matched;
    const int start =
        m_valid ? QTx::search(m_expression, line, from, forward, m_wholeWord, &matched) : -1;
    return {start, static_cast<int>(matched.size())};
}

/// Without an expression, which would take several times as long.
TextSearch::Match TextSearch::findLiteral(QStringView line, int from, bool forward) const
{
    while (m_valid && from >= 0 && from <= line.size()) {
        const auto start = static_cast<int>(forward ? line.indexOf(m_text, from, m_case)
                                                    : line.lastIndexOf(m_text, from, m_case));
        if (start < 0)
            break;
        if (!m_wholeWord || QTx::isWholeWord(line, start, start + m_text.size()))
            return {start, static_cast<int>(m_text.size())};
        from = start + (forward ? 1 : -1);
    }
    return {};
}

bool TextSearch::mayMatch(QByteArrayView bytes) const
{
    const auto isAscii = [](auto c) { return static_cast<unsigned>(c) < 0x80; };
    if (m_regular || !std::all_of(m_text.utf16(), m_text.utf16() + m_text.size(), isAscii))
        return true;
    const QByteArray text = m_text.toLatin1();
    if (m_case == Qt::CaseSensitive)
        return bytes.contains(text);
    // Other characters may be one with a letter of ASCII when case doesn't matter.
    const auto isOther = [](char c) { return static_cast<unsigned char>(c) >= 0x80; };
    if (std::any_of(bytes.begin(), bytes.end(), isOther))
        return true;
    return QLatin1StringView(bytes.data(), bytes.size())
        .contains(QLatin1StringView(text), Qt::CaseInsensitive);
}

QString TextSearch::expand(const QString& replacement, QStringView line, Match match) const
{
    return m_regular ? QTx::expandSearchResults(m_expression, line, match.start, replacement)
                     : replacement;
}

LastSearch LastSearch::get()
{
    if (!environment)
        return unsavedSearch();
    LastSearch search;
    environment->getLastFindSettings(search.text, search.replacement, search.options);
    return search;
}

void LastSearch::remember() const
{
    if (!environment) {
        unsavedSearch() = *this;
        return;
    }
    if (!text.isEmpty())
        EnvironmentSettings::addToHistoryStringList(environment->findHistory, text);
    EnvironmentSettings::addToHistoryStringList(environment->replaceHistory, replacement);
    environment->findMatchWholeWord->setValue(options.testFlag(FindOption::WholeWord));
    environment->findMatchCase->setValue(options.testFlag(FindOption::MatchCase));
    environment->findUseRegExp->setValue(options.testFlag(FindOption::RegularExpression));
    environment->findSearchUp->setValue(options.testFlag(FindOption::SearchUp));
}
