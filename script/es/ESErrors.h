#pragma once

#include <QString>

/// A fault of the engine, or a stack that is exhausted. Scripts can't catch it.
class ESFatalError {
public:
    explicit ESFatalError(const QString& text) : m_text(text) { }
    const QString& text() const { return m_text; }

private:
    QString m_text;
};
