#include "toolchain/common/Diagnostics.h"

#include <cstdio>
#include <utility>

namespace {

void printToStandardError(const std::string& line) { std::fprintf(stderr, "%s\n", line.c_str()); }

const char* word(Severity severity)
{
    static constexpr const char* Words[] = {"note", "warning", "error", "fatal"};
    return Words[static_cast<int>(severity)];
}

std::string place(const std::string& tool, const SourceLocation& where)
{
    if (where.file.empty())
        return tool;
    if (where.line <= 0)
        return where.file;
    return where.file + "(" + std::to_string(where.line) + ")";
}

} // namespace

Diagnostics::Diagnostics(std::string tool, Sink sink)
    : m_tool(std::move(tool)),
      m_sink(sink ? std::move(sink) : printToStandardError)
{
}

void Diagnostics::note(const SourceLocation& where, const std::string& text)
{
    print(Severity::Note, where, text);
}

void Diagnostics::warning(const SourceLocation& where, const std::string& text)
{
    if (m_suppressWarnings)
        return;
    if (m_warningsAreErrors) {
        error(where, text);
        return;
    }
    ++m_warnings;
    print(Severity::Warning, where, text);
}

void Diagnostics::error(const SourceLocation& where, const std::string& text)
{
    ++m_errors;
    print(Severity::Error, where, text);
    if (m_errors == ErrorLimit)
        fatal("too many errors");
}

void Diagnostics::fatal(const SourceLocation& where, const std::string& text)
{
    ++m_errors;
    print(Severity::Fatal, where, text);
    throw FatalDiagnostic(text);
}

void Diagnostics::print(Severity severity, const SourceLocation& where, const std::string& text)
{
    m_sink(place(m_tool, where) + ": " + word(severity) + ": " + text);
}
