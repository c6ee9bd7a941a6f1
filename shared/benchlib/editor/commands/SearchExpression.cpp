#include "editor/commands/SearchExpression.h"

#include "editor/buffer/WordCharacter.h"

#include <algorithm>

namespace {

QRegularExpressionMatch matchAt(const QRegularExpression& expression, QStringView line, int from)
{
    return expression.match(line, from, QRegularExpression::NormalMatch,
                            QRegularExpression::AnchorAtOffsetMatchOption);
}

} // namespace

QString QTx::literalRegularExpressionString(const QString& text)
{
    return QRegularExpression::escape(text);
}

QRegularExpression QTx::constructSearchRegularExpression(const QString& text, bool regexp,
                                                         bool matchCase)
{
    QRegularExpression::PatternOptions options = QRegularExpression::InvertedGreedinessOption
        | QRegularExpression::UseUnicodePropertiesOption;
    options.setFlag(QRegularExpression::CaseInsensitiveOption, !matchCase);
    return QRegularExpression(regexp ? text : literalRegularExpressionString(text), options);
}

QRegularExpression QTx::constructSearchRegularExpression(const QString& text, FindOptions options)
{
    return constructSearchRegularExpression(text, options.testFlag(FindOption::RegularExpression),
                                            options.testFlag(FindOption::MatchCase));
}

bool QTx::isWholeWord(QStringView line, qsizetype start, qsizetype end)
{
    return (start == 0 || !isWordChar(line[start - 1]))
        && (end >= line.size() || !isWordChar(line[end]));
}

int QTx::search(const QRegularExpression& expression, QStringView line, int from, bool forward,
                bool wholeWord, QStringView* matched)
{
    const auto length = static_cast<int>(line.size());
    from = forward ? std::max(0, from) : std::min(from, length);
    while (from >= 0 && from <= length) {
        const QRegularExpressionMatch match =
            forward ? expression.match(line, from) : matchAt(expression, line, from);
        if (forward && !match.hasMatch())
            return -1;
        const auto start = static_cast<int>(match.hasMatch() ? match.capturedStart() : from);
        if (match.capturedLength() > 0
            && (!wholeWord || isWholeWord(line, start, match.capturedEnd()))) {
            if (matched)
                *matched = line.mid(start, match.capturedLength());
            return start;
        }
        from = start + (forward ? 1 : -1);
    }
    return -1;
}

int QTx::search(const QRegularExpression& expression, QStringView line, int from,
                FindOptions options, QStringView* matched)
{
    return search(expression, line, from, !options.testFlag(FindOption::SearchUp),
                  options.testFlag(FindOption::WholeWord), matched);
}

QString QTx::expandSearchResults(const QRegularExpression& expression, QStringView line,
                                 int position, const QString& text)
{
    const QRegularExpressionMatch match = matchAt(expression, line, position);
    QString result;
    for (qsizetype i = 0; i < text.size(); ++i) {
        if (text[i] != u'\\' || i + 1 == text.size()) {
            result += text[i];
            continue;
        }
        const QChar c = text[++i];
        if (c >= u'0' && c <= u'9')
            result += match.captured(c.digitValue());
        else if (c == u'n')
            result += u'\n';
        else if (c == u't')
            result += u'\t';
        else
            result += c;
    }
    return result;
}
