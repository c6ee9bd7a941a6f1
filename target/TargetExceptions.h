#pragma once

#include <QString>

/// The user has cancelled. A load operation turns it into an HException at its top.
class BenchCancelException { };

/// Why a breakpoint can't be placed. HMonitor::setBreakpoint throws it after the partly placed
/// breakpoint has been removed, the debugger for an expression or a line that is no place.
class DebuggerBreakpointFailure {
public:
    explicit DebuggerBreakpointFailure(const QString& text) : m_text(text) { }
    explicit DebuggerBreakpointFailure(const char* text) : m_text(QString::fromLatin1(text)) { }
    const QString& text() const { return m_text; }

private:
    QString m_text;
};
