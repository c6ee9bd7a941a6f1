#include "script/forth/FSConsole.h"

#include "script/forth/ForthCore.h"
#include "script/forth/ForthInterpreter.h"

namespace {

/// A command of the program as a word.
class PMethod : public pcode {
public:
    PMethod(std::unique_ptr<MethodWrapper> wrapper, ScriptEngine* engine)
        : m_wrapper(std::move(wrapper)),
          m_engine(engine)
    {
    }
    /// The command may print on its own.
    void execute(FSContext* context) override
    {
        context->flush();
        m_wrapper->execute(m_engine);
    }

private:
    std::unique_ptr<MethodWrapper> m_wrapper;
    ScriptEngine* m_engine;
};

} // namespace

FSConsole::FSConsole(FSFileSystem& files) : m_context(*this, files) { }

/// Runs something, and has the context ready for more however it ends.
template <class Action> void FSConsole::guarded(Action action)
{
    const int returns = m_context.returns().depth();
    m_running = true;
    try {
        action();
        m_running = false;
        m_context.flush();
    } catch (...) {
        m_running = false;
        m_context.recover(returns);
        m_context.flush();
        throw;
    }
}

void FSConsole::run(const std::shared_ptr<InputSource>& source)
{
    guarded([&] { interpret_source(&m_context, source); });
}

void FSConsole::runFile(const QString& file)
{
    guarded([&] { interpret_file(&m_context, file); });
}

bool FSConsole::process(const QString& line)
{
    if (m_running)
        return false;
    showInput(line);
    bool done = true;
    try {
        run(std::make_shared<StringSource>(line));
        if (!m_context.getFSState())
            m_context.print(QStringLiteral("OK\n"));
    } catch (const ForthException& exception) {
        errorMessage(&m_context, exception);
        done = false;
    }
    m_context.flush();
    if (m_context.getFSState())
        startContinuationPrompt();
    else
        startPrompt();
    return done;
}

bool FSConsole::load(const QString& file)
{
    if (m_running)
        return false;
    try {
        runFile(file);
        return true;
    } catch (const ForthException& exception) {
        errorMessage(&m_context, exception);
        m_context.flush();
        return false;
    }
}

void FSConsole::provideMethod(const QString& name, std::unique_ptr<MethodWrapper> wrapper)
{
    addDictionary(&m_context, m_context.make<PMethod>(std::move(wrapper), this), name, 0);
}

QString FSConsole::fetchStringArgument() { return forthPopString(&m_context); }

qint64 FSConsole::fetchIntegerArgument() { return m_context.popLiteral(); }
