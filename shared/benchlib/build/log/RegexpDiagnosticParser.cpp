#include "build/log/RegexpDiagnosticParser.h"

namespace {

constexpr qsizetype LongestText = 8192;

} // namespace

QString RegexpDiagnosticParser::setRegexp(DiagnosticData::Level level, const QString& expression)
{
    QRegularExpression& stored = m_expressions[static_cast<std::size_t>(level)];
    stored = QRegularExpression(expression);
    if (stored.isValid())
        return {};
    QString fault = stored.errorString();
    stored = QRegularExpression();
    return fault;
}

bool RegexpDiagnosticParser::parse(const Path&, const QString& line, DiagnosticData& data)
{
    const QString text = line.left(LongestText);
    for (std::size_t level = 0; level < m_expressions.size(); ++level) {
        if (m_expressions[level].pattern().isEmpty())
            continue;
        const QRegularExpressionMatch match = m_expressions[level].match(text);
        if (!match.hasMatch())
            continue;
        data.level = static_cast<DiagnosticData::Level>(level);
        data.path = Path(match.captured(1));
        data.line = match.captured(2).toInt();
        data.message = match.captured(3);
        return true;
    }
    return false;
}
