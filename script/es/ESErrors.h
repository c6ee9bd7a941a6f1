#pragma once

#include "script/es/ESValue.h"

#include <QString>

/// A fault of the engine, or a stack that is exhausted. Scripts can't catch it.
class ESFatalError {
public:
    explicit ESFatalError(const QString& text) : m_text(text) { }
    const QString& text() const { return m_text; }

private:
    QString m_text;
};

/// What a script threw, or a failure of an operation: an error object.
class ESException {
public:
    explicit ESException(const ESValue& value) : m_value(value) { }
    const ESValue& value() const { return m_value; }

private:
    ESValue m_value;
};

/// How a program ended.
struct ESCompletion {
    enum Kind { Normal = 0, Exception = 4 };
    int kind = Normal;
    ESValue value;
    QString message;
};
