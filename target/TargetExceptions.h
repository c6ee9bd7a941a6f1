#pragma once

#include <QString>

/// The user has cancelled. A load operation turns it into an HException at its top.
class BenchCancelException { };

/// A breakpoint that can't be placed; thrown by HMonitor::setBreakpoint after the partly placed
/// breakpoint has been removed.
class DebuggerBreakpointFailure {
public:
    explicit DebuggerBreakpointFailure(const QString& text) : m_text(text) { }
    const QString& text() const { return m_text; }

private:
    QString m_text;
};
