#pragma once

#include "script/ScriptEngine.h"
#include "script/forth/FSContext.h"

/// The Forth console without its window: takes lines, keeps definitions from one to the next, and
/// offers the program's commands as words. Where output goes is the owner's.
class FSConsole : public ScriptEngine, public FSHost {
public:
    static constexpr const char* Banner = "Tamblyn ForthScript Interpreter v1.0.0\n";

    explicit FSConsole(FSFileSystem& files = FSFileSystem::disk());

    /// Interprets a line. After it "OK" is printed, or the text of a fault, and a prompt is
    /// started; inside a definition only a continuation prompt. False after a fault, and when a
    /// line is running already.
    ///
    /// A fault leaves the data stack as it is. It drops the definition that is open and what the
    /// line has put on the return stack.
    bool process(const QString& line);
    bool load(const QString& file) override;
    /// What `load` does, but a fault is thrown as a ForthException. The console is ready for more.
    void runFile(const QString& file);
    /// The same for a source of any kind.
    void run(const std::shared_ptr<InputSource>& source);
    /// Whether a line or a file is being interpreted: by now only `carryOnExecuting` can end it.
    bool isRunning() const { return m_running; }

    FSContext& context() { return m_context; }

    void output(const QString& text) override = 0;
    void provideMethod(const QString& name, std::unique_ptr<MethodWrapper> wrapper) override;
    QString fetchStringArgument() override;
    qint64 fetchIntegerArgument() override;
    void returnValue(const QString& value) override { m_context.push(value); }
    void returnValue(int value) override { m_context.push(value); }
    /// `output` unless a console shows them otherwise.
    void message(const QString& text) override { output(text); }
    /// A line among what words print.
    void scriptOutput(const QString& text) override { m_context.print(text + u'\n'); }

protected:
    /// Shows the line that is processed.
    virtual void showInput(const QString& line) { output(line + u'\n'); }
    virtual void startPrompt() { }
    virtual void startContinuationPrompt() { }

private:
    template <class Action> void guarded(Action action);

    FSContext m_context;
    bool m_running = false;
};
