#pragma once

#include <functional>
#include <stdexcept>
#include <string>

/// Where in the sources something stands. A line of 0 means the file as a whole; an empty file
/// means no place in the sources.
struct SourceLocation {
    std::string file;
    int line = 0; ///< from 1
};

enum class Severity { Note, Warning, Error, Fatal };

/// Ends a tool after a fatal diagnostic, which has been reported when this is thrown.
struct FatalDiagnostic : std::runtime_error {
    using std::runtime_error::runtime_error;
};

/// The messages of one run of a tool, each one line in a form that the build log can read:
/// `FILE(LINE): error: TEXT`, or `TOOL: error: TEXT` where there is no place in the sources. The
/// log takes as message what stands behind the last colon and blank, so a text holds none.
class Diagnostics {
public:
    using Sink = std::function<void(const std::string& line)>;

    /// Errors after which a run is given up: a wrecked input isn't worth more.
    static constexpr unsigned ErrorLimit = 100;

    /// Lines go to the standard error unless a sink is given; they come without an end of line.
    explicit Diagnostics(std::string tool, Sink sink = {});

    void suppressWarnings(bool on) { m_suppressWarnings = on; }
    void treatWarningsAsErrors(bool on) { m_warningsAreErrors = on; }

    void note(const SourceLocation& where, const std::string& text);
    void warning(const SourceLocation& where, const std::string& text);
    /// Throws FatalDiagnostic when the limit has been reached.
    void error(const SourceLocation& where, const std::string& text);
    [[noreturn]] void fatal(const SourceLocation& where, const std::string& text);

    void note(const std::string& text) { note({}, text); }
    void warning(const std::string& text) { warning({}, text); }
    void error(const std::string& text) { error({}, text); }
    [[noreturn]] void fatal(const std::string& text) { fatal({}, text); }

    /// Counts of what was printed; fatal ones count as errors.
    unsigned errors() const { return m_errors; }
    unsigned warnings() const { return m_warnings; }
    bool failed() const { return m_errors > 0; }

    const std::string& tool() const { return m_tool; }

private:
    void print(Severity severity, const SourceLocation& where, const std::string& text);

    std::string m_tool;
    Sink m_sink;
    bool m_suppressWarnings = false;
    bool m_warningsAreErrors = false;
    unsigned m_errors = 0;
    unsigned m_warnings = 0;
};
