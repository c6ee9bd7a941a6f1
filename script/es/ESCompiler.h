#pragma once

#include "script/es/ESCode.h"
#include "script/es/ESLexer.h"

#include <QString>

#include <memory>

class ESContext;
class ESObject;

/// Turns one source text into code.
///
/// Functions are registered with the context and stay; only the main program's code is the
/// caller's. A text that is no program throws ESSyntaxError, with nothing of it run.
class ESCompiler {
public:
    explicit ESCompiler(ESContext* context) : m_context(context) { }

    void setSource(const QString& source) { m_source = source; }
    /// The main program. Its result is the value of its last statement.
    std::unique_ptr<ESCode> parse();
    /// A function named "anonymous"; the code is a program whose result is the function.
    std::unique_ptr<ESCode> parseFunction(const QString& parameters, const QString& body);

    static QString tokname(int token) { return esTokenName(token); }
    /// One instruction as a line, such as "0003: GETG x", and the offset of the next. Names of
    /// globals come from the object.
    static QString printInsn(const ESObject* global, const ESCode& code, int offset, int& next);
    /// All instructions, one a line.
    static QString print(const ESObject* global, const ESCode& code);

private:
    ESContext* m_context;
    QString m_source;
};
