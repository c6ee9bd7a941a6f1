#include "cli/CheckReport.h"

#include <algorithm>
#include <cstdio>

using namespace Qt::Literals::StringLiterals;

void CheckReport::error(const QString& file, int line, const QString& text)
{
    add({file, line, true, text});
}

void CheckReport::warning(const QString& file, int line, const QString& text)
{
    add({file, line, false, text});
}

void CheckReport::add(Finding finding)
{
    if (std::find(m_findings.begin(), m_findings.end(), finding) == m_findings.end())
        m_findings.push_back(std::move(finding));
}

bool CheckReport::hasErrors() const
{
    return std::any_of(m_findings.begin(), m_findings.end(),
                       [](const Finding& finding) { return finding.isError; });
}

void CheckReport::print()
{
    std::stable_sort(m_findings.begin(), m_findings.end(), [](const Finding& a, const Finding& b) {
        return a.file != b.file ? a.file < b.file : a.line < b.line;
    });
    for (const Finding& finding : m_findings) {
        const QString line = finding.line > 0 ? u"(%1)"_s.arg(finding.line) : QString();
        const QString kind = finding.isError ? u"error"_s : u"warning"_s;
        std::fprintf(stderr, "%s\n",
                     (finding.file + line + u": "_s + kind + u": "_s + finding.text)
                         .toLocal8Bit()
                         .constData());
    }
}
