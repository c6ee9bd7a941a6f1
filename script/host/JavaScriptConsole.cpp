#include "script/host/JavaScriptConsole.h"

#include "script/es/ESLexer.h"
#include "script/host/BuiltinScript.h"

JavaScriptConsole::JavaScriptConsole(MakeContext makeContext, Output output)
    : m_makeContext(std::move(makeContext)),
      m_output(std::move(output))
{
}

void JavaScriptConsole::process(const QString& text)
{
    const QString result = resultOf(text);
    if (!result.isNull())
        m_output(result + u'\n');
}

/// What to print; null for nothing.
QString JavaScriptConsole::resultOf(const QString& text)
{
    try {
        if (!m_context)
            m_context = m_makeContext();
        const ESCompletion completion = m_context->eval(text);
        if (completion.kind != ESCompletion::Normal)
            return m_context->messageOf(completion);
        if (completion.value.is(ESValue::Undefined))
            return {};
        return m_context->toString(completion.value);
    } catch (const ESException& exception) {
        return m_context->messageOf({ESCompletion::Exception, exception.value(), {}});
    } catch (const ESFatalError& error) {
        return error.text();
    } catch (const ScriptFailure& failure) {
        return failure.text();
    }
}

bool JavaScriptConsole::isUnfinished(const QString& text)
{
    ESLexer lexer;
    lexer.setSource(text);
    int open = 0;
    try {
        for (int token = lexer.lex(); token != ESToken::End; token = lexer.lex()) {
            open += token == '(' || token == '[' || token == '{';
            open -= token == ')' || token == ']' || token == '}';
        }
    } catch (const ESSyntaxError&) {
        return false;
    }
    return open > 0;
}
