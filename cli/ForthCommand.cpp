#include "cli/ForthCommand.h"

#include "base/HException.h"
#include "cli/Command.h"
#include "cli/DebuggedProgram.h"
#include "cli/InterruptFlag.h"
#include "cli/LineEditor.h"
#include "script/forth/FSConsole.h"
#include "script/forth/ForthInterpreter.h"
#include "script/objects/ForthDebugWords.h"

#include <QFile>

#include <cstdio>
#include <functional>

#include <unistd.h>

namespace {

/// The console on standard output. Its words can be interrupted by signals.
class TerminalConsole : public FSConsole {
public:
    TerminalConsole() { provideMethod(QStringLiteral("BYE"), std::make_unique<Bye>()); }

    /// Ends a program from within.
    struct Left { };

    /// From the banner to BYE or the end of the input.
    void converse()
    {
        output(QString::fromLatin1(Banner));
        startPrompt();
        LineEditor editor(QStringLiteral("forth_history"));
        for (;;) {
            QString line;
            const LineEditor::Input input = editor.readLine(m_prompt, line);
            if (input == LineEditor::Input::End)
                return;
            if (input == LineEditor::Input::Line)
                process(line);
        }
    }

    /// Runs a whole text; the fault's message on standard error. The exit status.
    int interpret(const std::function<void()>& action)
    {
        try {
            action();
            return 0;
        } catch (const ForthException& fault) {
            std::fprintf(stderr, "gantry: %s\n", qPrintable(fault.report()));
            return 1;
        }
    }

    void output(const QString& text) override
    {
        const QByteArray bytes = text.toUtf8();
        std::fwrite(bytes.data(), 1, static_cast<std::size_t>(bytes.size()), stdout);
        std::fflush(stdout);
    }
    bool carryOnExecuting() override { return !InterruptFlag::isSet(); }

protected:
    void showInput(const QString&) override { } // the terminal has shown it
    void startPrompt() override { m_prompt = QStringLiteral("> "); }
    void startContinuationPrompt() override { m_prompt = QStringLiteral("... "); }

private:
    class Bye : public MethodWrapper {
        void execute(ScriptEngine*) override { throw Left(); }
    };

    const InterruptFlag m_interrupts;
    QString m_prompt;
};

std::shared_ptr<InputSource> standardInput()
{
    auto file = std::make_unique<QFile>();
    if (!file->open(STDIN_FILENO, QIODevice::ReadOnly))
        throw HException("cannot read standard input");
    return std::make_shared<FileSource>(QStringLiteral("standard input"), 0, std::move(file),
                                        false);
}

int runConsole(TerminalConsole& console, std::span<const std::string> files)
{
    if (files.empty() && LineEditor::isTerminal()) {
        console.converse();
        return 0;
    }
    if (files.empty())
        return console.interpret([&] { console.run(standardInput()); });
    for (const std::string& file : files) {
        const QString name = QString::fromLocal8Bit(file);
        if (const int status = console.interpret([&] { console.runFile(name); }))
            return status;
    }
    return 0;
}

} // namespace

namespace {

struct ForthOptions {
    std::vector<std::string> files;
    std::string program; ///< that the words of debugging drive; empty for none
    std::string device = "generic";
};

ForthOptions parseOptions(std::span<const std::string> arguments)
{
    ForthOptions options;
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        const std::string& word = arguments[i];
        if (word != "--program" && word != "--device") {
            if (word.starts_with('-'))
                throw UsageError{"unknown option " + word};
            options.files.push_back(word);
            continue;
        }
        if (i + 1 == arguments.size())
            throw UsageError{"option " + word + " needs a value"};
        (word == "--program" ? options.program : options.device) = arguments[++i];
    }
    return options;
}

} // namespace

int forthCommand(std::span<const std::string> arguments)
{
    const ForthOptions options = parseOptions(arguments);
    TerminalConsole console;
    std::unique_ptr<DebuggedProgram> program;
    if (!options.program.empty())
        program = std::make_unique<DebuggedProgram>(options.program, options.device, QString(),
                                                    [] { return !InterruptFlag::isSet(); });
    ForthDebugWords words(program ? &program->session() : nullptr);
    words.provide(console);
    words.runTo(QStringLiteral("main"));
    try {
        return runConsole(console, options.files);
    } catch (const TerminalConsole::Left&) {
        return 0;
    }
}
