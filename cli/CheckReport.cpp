#include "cli/CheckReport.h"

#include <algorithm>
#include <cstdio>
#include <tuple>

using namespace Qt::Literals::StringLiterals;

void CheckReport::error(const QString& file, int line, const QString& text)
{
    m_findings.push_back({file, line, text, true});
}

void CheckReport::warning(const QString& file, int line, const QString& text)
{
    m_findings.push_back({file, line, text, false});
}

bool CheckReport::hasErrors() const
{
    return std::any_of(m_findings.begin(), m_findings.end(),
                       [](const Finding& finding) { return finding.isError; });
}

void CheckReport::print()
{
    const auto key = [](const Finding& finding) {
        return std::tie(finding.file, finding.line, finding.text, finding.isError);
    };
    std::ranges::sort(m_findings, {}, key);
    // A file that is included several times has its faults each time.
    const auto repeated = std::ranges::unique(m_findings, {}, key);
    m_findings.erase(repeated.begin(), repeated.end());
    for (const Finding& finding : m_findings) {
        const QString line = finding.line > 0 ? u"(%1)"_s.arg(finding.line) : QString();
        const QString kind = finding.isError ? u"error"_s : u"warning"_s;
        std::fprintf(stderr, "%s\n",
                     (finding.file + line + u": "_s + kind + u": "_s + finding.text)
                         .toLocal8Bit()
                         .constData());
    }
}
