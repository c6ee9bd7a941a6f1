#include "cli/ScriptCommand.h"

#include "base/HException.h"
#include "base/QTx.h"
#include "cli/Command.h"
#include "cli/DebuggedProgram.h"
#include "cli/DebuggedProject.h"
#include "cli/InterruptFlag.h"
#include "cli/LineEditor.h"
#include "script/host/BuiltinScript.h"
#include "script/host/JavaScriptConsole.h"
#include "script/objects/ThreadsScriptObject.h"

#include <QFile>
#include <QFileInfo>

#include <cstdio>
#include <map>
#include <optional>

using namespace Qt::Literals::StringLiterals;

namespace {

struct ScriptOptions {
    std::optional<QString> file; ///< standard input if there is none
    QStringList arguments;
    std::string program; ///< that `Debug` drives; empty for none
    std::string device = "generic";
    DebuggedProject::Choice project; ///< that `Debug` drives; without a solution none
};

QString toText(const std::string& word) { return QString::fromLocal8Bit(word.c_str()); }

/// The value of an option, to be read or set; null for a word that isn't one.
QString* projectOption(ScriptOptions& options, const std::string& word)
{
    static const std::map<std::string, QString DebuggedProject::Choice::*> names = {
        {"--solution", &DebuggedProject::Choice::solution},
        {"--project", &DebuggedProject::Choice::project},
        {"--configuration", &DebuggedProject::Choice::configuration},
        {"--target", &DebuggedProject::Choice::target},
    };
    const auto found = names.find(word);
    return found == names.end() ? nullptr : &(options.project.*found->second);
}

void checkOptions(const ScriptOptions& options)
{
    const DebuggedProject::Choice& project = options.project;
    if (!options.program.empty() && !project.solution.isEmpty())
        throw UsageError{"a program and a solution don't go together"};
    if (project.solution.isEmpty() && !(project.project + project.configuration).isEmpty())
        throw UsageError{"projects and configurations need a solution"};
    if (!project.target.isEmpty() && project.solution.isEmpty() && options.program.empty())
        throw UsageError{"a target needs a program or a solution"};
}

ScriptOptions parseOptions(std::span<const std::string> words)
{
    ScriptOptions options;
    for (std::size_t i = 0; i < words.size(); ++i) {
        const std::string& word = words[i];
        if (word == "--") {
            for (const std::string& argument : words.subspan(i + 1))
                options.arguments << toText(argument);
            break;
        }
        if (word == "--program" || word == "--device") {
            if (i + 1 == words.size())
                throw UsageError{"option " + word + " needs a value"};
            (word == "--program" ? options.program : options.device) = words[++i];
            continue;
        }
        if (QString* const value = projectOption(options, word)) {
            if (i + 1 == words.size())
                throw UsageError{"option " + word + " needs a value"};
            *value = toText(words[++i]);
            continue;
        }
        if (word.starts_with("-") && word != "-")
            throw UsageError{"unknown option " + word};
        if (options.file)
            throw UsageError{"there is more than one script; arguments stand behind --"};
        options.file = toText(word);
    }
    if (options.file == u"-"_s)
        options.file.reset();
    checkOptions(options);
    return options;
}

/// The text of a script; a first line for the shell is left blank.
QString readScript(const ScriptOptions& options)
{
    QFile file;
    bool opened = false;
    if (options.file) {
        file.setFileName(*options.file);
        opened = file.open(QIODevice::ReadOnly);
    } else {
        opened = file.open(stdin, QIODevice::ReadOnly);
    }
    if (!opened)
        throw HException("can't read " + options.file.value_or(QString()).toStdString() + ": "
                         + file.errorString().toStdString());
    QString text = QString::fromUtf8(file.readAll());
    if (text.startsWith(u"#!"_s))
        text.remove(0, std::max<qsizetype>(text.indexOf(u'\n'), 0));
    return text;
}

void print(std::FILE* out, const QString& text)
{
    const QByteArray bytes = text.toUtf8();
    std::fwrite(bytes.constData(), 1, static_cast<std::size_t>(bytes.size()), out);
}

/// Where messages of a script belong: the name of its file in front.
void report(const QString& path, const QString& message)
{
    std::fflush(stdout);
    print(stderr, u"gantry: "_s + path + u": "_s + message + u'\n');
}

class CommandLineContext : public ESContext {
public:
    bool carryOnExecuting() override { return !InterruptFlag::isSet(); }
    void loadFailed(const QString& path, const ESCompletion& completion) override
    {
        report(path, messageOf(completion));
        failed = true;
    }

    bool failed = false; ///< whether a loaded file has failed
};

/// The objects that scripts of the command line have.
class ScriptObjects {
public:
    explicit ScriptObjects(const ScriptOptions& options) : m_options(options)
    {
        const auto carryOn = [] { return !InterruptFlag::isSet(); };
        if (!options.program.empty())
            m_program = std::make_unique<DebuggedProgram>(options.program, options.device,
                                                          options.project.target, carryOn);
        if (!options.project.solution.isEmpty())
            m_project = std::make_unique<DebuggedProject>(options.project, carryOn);
    }

    std::unique_ptr<CommandLineContext> makeContext()
    {
        auto context = std::make_unique<CommandLineContext>();
        context->addToLoadPath(QTx::rootDirectory() + u"/bin"_s);
        if (m_options.file)
            context->addToLoadPath(m_scriptFolder);
        m_script.install(context.get(), m_options.arguments);
        m_bench.install(context.get());
        m_threadsObject.install(context.get());
        if (m_program)
            m_program->install(context.get());
        if (m_project)
            m_project->install(context.get());
        return context;
    }

    /// What a script has told of threads, in place of the window that shows them.
    void printThreads() const
    {
        for (const ThreadList::Queue& queue : m_threads.queues()) {
            print(stdout, queue.name.isEmpty() ? QString() : queue.name + u":\n"_s);
            for (const ThreadList::Row& row : queue.rows)
                print(stdout, QStringList(row.begin(), row.end()).join(u'\t') + u'\n');
        }
    }

private:
    const ScriptOptions& m_options;
    /// Absolute, as a project starts in a directory of its own.
    const QString m_scriptFolder = QFileInfo(m_options.file.value_or(QString())).absolutePath();
    BuiltinScript m_script{[](const QString& text) { print(stdout, text + u'\n'); }};
    BenchScript m_bench;
    ThreadList m_threads;
    ThreadsScriptObject m_threadsObject{m_threads};
    std::unique_ptr<DebuggedProgram> m_program;
    std::unique_ptr<DebuggedProject> m_project;
};

int runScript(const ScriptOptions& options)
{
    const QString name = options.file.value_or(u"standard input"_s);
    const QString text = readScript(options);
    ScriptObjects objects(options);
    const auto context = objects.makeContext();
    try {
        const ESCompletion completion = context->eval(text);
        objects.printThreads();
        if (completion.kind == ESCompletion::Normal)
            return context->failed ? 1 : 0;
        report(name, context->messageOf(completion));
    } catch (const ESFatalError& error) {
        report(name, u"line %1: "_s.arg(context->line()) + error.text());
    } catch (const ScriptFailure& failure) {
        report(name, failure.text());
    }
    return 1;
}

int runConsole(const ScriptOptions& options)
{
    const QString prompt = u"> "_s;
    const QString continuation = u"... "_s;
    const InterruptFlag interrupts;
    ScriptObjects objects(options);
    JavaScriptConsole console([&] { return objects.makeContext(); },
                              [](const QString& text) { print(stdout, text); });
    LineEditor editor(u"javascript_history"_s);
    std::printf("GantryBench JavaScript; an end of file (Ctrl+D) leaves it.\n");
    QString text;
    for (;;) {
        QString line;
        const auto input = editor.readLine(text.isEmpty() ? prompt : continuation, line);
        if (input == LineEditor::Input::End)
            return 0;
        if (input == LineEditor::Input::Interrupted) {
            text.clear();
            continue;
        }
        text += line + u'\n';
        if (JavaScriptConsole::isUnfinished(text))
            continue;
        console.process(text);
        std::fflush(stdout);
        if (InterruptFlag::isSet())
            std::printf("interrupted\n");
        text.clear();
    }
}

} // namespace

int scriptCommand(std::span<const std::string> arguments)
{
    const ScriptOptions options = parseOptions(arguments);
    return !options.file && LineEditor::isTerminal() ? runConsole(options) : runScript(options);
}
