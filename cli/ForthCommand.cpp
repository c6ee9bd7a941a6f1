#include "cli/ForthCommand.h"

#include "base/HException.h"
#include "cli/Command.h"
#include "cli/InterruptSignal.h"
#include "script/forth/FSConsole.h"
#include "script/forth/ForthInterpreter.h"

#include <QCoreApplication>
#include <QFile>

#include <cstdio>
#include <functional>
#include <iostream>
#include <optional>

#include <unistd.h>

namespace {

/// Shows a prompt and reads a line; nothing at the end of the input.
using LineReader = std::function<std::optional<QString>(const QString& prompt)>;

std::optional<QString> readPlainLine(const QString& prompt)
{
    std::printf("%s", qPrintable(prompt));
    std::fflush(stdout);
    std::string line;
    if (!std::getline(std::cin, line))
        return std::nullopt;
    return QString::fromUtf8(line);
}

/// The console on standard output. Its words can be interrupted by signals.
class TerminalConsole : public FSConsole {
public:
    TerminalConsole() { provideMethod(QStringLiteral("BYE"), std::make_unique<Bye>()); }

    /// Ends a program from within.
    struct Left { };

    /// From the banner to BYE or the end of the input.
    void converse(const LineReader& readLine)
    {
        output(QString::fromLatin1(Banner));
        startPrompt();
        while (const std::optional<QString> line = readLine(m_prompt)) {
            const InterruptSignal interrupt = watchSignals();
            process(*line);
        }
        output(QStringLiteral("\n"));
    }

    /// Runs a whole text; the fault's message on standard error. The exit status.
    int interpret(const std::function<void()>& action)
    {
        const InterruptSignal interrupt = watchSignals();
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
    bool carryOnExecuting() override
    {
        QCoreApplication::processEvents();
        return !m_interrupted;
    }

protected:
    void showInput(const QString&) override { } // the terminal has shown it
    void startPrompt() override { m_prompt = QStringLiteral("> "); }
    void startContinuationPrompt() override { m_prompt = QStringLiteral("... "); }

private:
    class Bye : public MethodWrapper {
        void execute(ScriptEngine*) override { throw Left(); }
    };

    InterruptSignal watchSignals()
    {
        m_interrupted = false;
        return InterruptSignal([this] { m_interrupted = true; });
    }

    QString m_prompt;
    bool m_interrupted = false;
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
    if (files.empty() && isatty(STDIN_FILENO)) {
        console.converse(readPlainLine);
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

int forthCommand(std::span<const std::string> arguments)
{
    for (const std::string& argument : arguments)
        if (argument.starts_with('-'))
            throw UsageError{"unknown option " + argument};
    TerminalConsole console;
    try {
        return runConsole(console, arguments);
    } catch (const TerminalConsole::Left&) {
        return 0;
    }
}
