#pragma once

#include "script/es/ESContext.h"

#include <functional>
#include <memory>

/// A console for JavaScript, without its window: takes a text after the other, and prints what
/// comes of it. Its variables live on between them.
class JavaScriptConsole {
public:
    using MakeContext = std::function<std::unique_ptr<ESContext>()>;
    using Output = std::function<void(const QString& text)>;

    /// The context is made for the first text. Printed texts carry their own line ends.
    JavaScriptConsole(MakeContext makeContext, Output output);

    /// Runs a text. Prints the result unless it is undefined, or the message of a failure.
    void process(const QString& text);
    /// Forgets all variables.
    void deleteContext() { m_context.reset(); }

    /// Whether a bracket of the text is still open, so that it is to be continued.
    static bool isUnfinished(const QString& text);

private:
    QString resultOf(const QString& text);

    MakeContext m_makeContext;
    Output m_output;
    std::unique_ptr<ESContext> m_context;
};
