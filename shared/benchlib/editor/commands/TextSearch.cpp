#include "editor/commands/TextSearch.h"

#include "projects/settings/EnvironmentSettings.h"

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

namespace {

bool isWordChar(QChar c) { return c.isLetterOrNumber() || c == u'_'; }

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
    m_expression.setPattern(text);
    QRegularExpression::PatternOptions pattern = QRegularExpression::InvertedGreedinessOption
        | QRegularExpression::UseUnicodePropertiesOption;
    pattern.setFlag(QRegularExpression::CaseInsensitiveOption, m_case == Qt::CaseInsensitive);
    m_expression.setPatternOptions(pattern);
    m_valid = m_valid && m_expression.isValid();
}

bool TextSearch::isWhole(QStringView line, Match match) const
{
    return !m_wholeWord
        || ((match.start == 0 || !isWordChar(line[match.start - 1]))
            && (match.end() >= line.size() || !isWordChar(line[match.end()])));
}

TextSearch::Match TextSearch::next(QStringView line, int from) const
{
    if (!m_valid)
        return {};
    from = std::max(0, from);
    while (from <= line.size()) {
        Match match;
        if (m_regular) {
            const QRegularExpressionMatch found = m_expression.match(line, from);
            if (found.hasMatch())
                match = {static_cast<int>(found.capturedStart()),
                         static_cast<int>(found.capturedLength())};
        } else {
            match = {static_cast<int>(line.indexOf(m_text, from, m_case)),
                     static_cast<int>(m_text.size())};
        }
        if (!match.isValid())
            return {};
        if (match.length > 0 && isWhole(line, match))
            return match;
        from = match.start + 1;
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

TextSearch::Match TextSearch::matchAt(QStringView line, int from) const
{
    const QRegularExpressionMatch found = m_expression.match(
        line, from, QRegularExpression::NormalMatch, QRegularExpression::AnchorAtOffsetMatchOption);
    if (!found.hasMatch())
        return {};
    return {from, static_cast<int>(found.capturedLength())};
}

TextSearch::Match TextSearch::previous(QStringView line, int from) const
{
    if (!m_valid)
        return {};
    from = std::min(from, static_cast<int>(line.size()));
    while (from >= 0) {
        Match match;
        if (m_regular) {
            match = matchAt(line, from);
            if (!match.isValid())
                match = {from, 0};
        } else {
            match = {static_cast<int>(line.lastIndexOf(m_text, from, m_case)),
                     static_cast<int>(m_text.size())};
            if (!match.isValid())
                return {};
        }
        if (match.length > 0 && isWhole(line, match))
            return match;
        from = match.start - 1;
    }
    return {};
}

QString TextSearch::expand(const QString& replacement, QStringView line, Match match) const
{
    if (!m_regular)
        return replacement;
    const QRegularExpressionMatch found =
        m_expression.match(line, match.start, QRegularExpression::NormalMatch,
                           QRegularExpression::AnchorAtOffsetMatchOption);
    QString result;
    for (qsizetype i = 0; i < replacement.size(); ++i) {
        if (replacement[i] != u'\\' || i + 1 == replacement.size()) {
            result += replacement[i];
            continue;
        }
        const QChar c = replacement[++i];
        if (c >= u'0' && c <= u'9')
            result += found.captured(c.digitValue());
        else if (c == u'n')
            result += u'\n';
        else if (c == u't')
            result += u'\t';
        else
            result += c;
    }
    return result;
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
