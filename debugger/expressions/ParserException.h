#pragma once

#include <QString>

#include <exception>

/// The failure of reading or evaluating an expression. Its cause is what the user sees in the place
/// of a value.
class ParserException : public std::exception {
public:
    explicit ParserException(const char* cause) : m_cause(QString::fromLatin1(cause)) { }
    explicit ParserException(const QString& cause) : m_cause(cause) { }

    const QString& getCause() const { return m_cause; }
    const char* what() const noexcept override { return "expression failure"; }

private:
    QString m_cause;
};
