#include "build/log/TOBFDiagnosticParser.h"

#include "build/log/SourceReference.h"

namespace {

struct Severity {
    DiagnosticData::Level level;
    QStringView mark;
};

// The first whose mark stands anywhere in the line decides.
constexpr Severity Severities[] = {
    {DiagnosticData::Note, u": note"},
    {DiagnosticData::Warning, u": warning"},
    {DiagnosticData::Error, u": error"},
    {DiagnosticData::Fatal, u": fatal"},
};

const Severity* severityOf(const QString& line)
{
    for (const Severity& severity : Severities) {
        if (line.contains(severity.mark))
            return &severity;
    }
    return nullptr;
}

/// True for a colon and white space, with a text behind.
bool isTextAhead(QStringView line, qsizetype colon)
{
    return colon + 2 < line.size() && line[colon] == u':' && line[colon + 1].isSpace();
}

qsizetype lastColonAheadOfText(QStringView line)
{
    qsizetype colon = line.size() - 3;
    while (colon >= 0 && !isTextAhead(line, colon))
        --colon;
    return colon;
}

bool parseWithFile(QStringView line, const Severity& severity, DiagnosticData& data)
{
    const qsizetype colon = lastColonAheadOfText(line);
    const auto reference = findSourceReference(line, severity.mark, colon, true);
    if (!reference)
        return false;
    data.path = Path(reference->file.toString().replace(u'\\', u'/'));
    data.line = reference->line();
    data.message = line.sliced(colon + 2).toString();
    return true;
}

bool parseWithoutFile(QStringView line, const Severity& severity, DiagnosticData& data)
{
    for (qsizetype at = line.indexOf(severity.mark); at >= 0;
         at = line.indexOf(severity.mark, at + 1)) {
        const qsizetype colon = at + severity.mark.size();
        if (!isTextAhead(line, colon))
            continue;
        if (at == 0)
            return false;
        data.path = Path();
        data.line = -1;
        data.message = line.sliced(colon + 2).toString();
        return true;
    }
    return false;
}

} // namespace

bool TOBFDiagnosticParser::parse(const Path&, const QString& line, DiagnosticData& data)
{
    const Severity* severity = severityOf(line);
    if (severity == nullptr)
        return false;
    if (!parseWithFile(line, *severity, data) && !parseWithoutFile(line, *severity, data))
        return false;
    data.level = severity->level;
    return true;
}
