#pragma once

#include <QString>

/// Says whether a whole document is well-formed.
class CodeSyntaxChecker {
public:
    /// True for a good text. What is told goes to those that aren't null; line and column count
    /// from
    /// 1. Options that aren't 0 are set first.
    virtual bool check(const QString& text, QString* message, int* line, int* column,
                       int options) = 0;
    virtual void setOptions(int options) = 0;
    virtual ~CodeSyntaxChecker() = default;
};

class CodeSyntaxXMLChecker : public CodeSyntaxChecker {
public:
    bool check(const QString& text, QString* message, int* line, int* column, int options) override;
    /// Not 0: names have prefixes of name spaces.
    void setOptions(int options) override { m_processesNamespaces = options != 0; }

private:
    bool m_processesNamespaces = false;
};
