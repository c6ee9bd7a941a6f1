#pragma once

#include <QString>

#include <memory>

class ScriptEngine;

/// A command of the program, offered to a console as a word.
class MethodWrapper {
public:
    virtual ~MethodWrapper() = default;
    /// Takes its arguments from the engine and leaves its results there.
    virtual void execute(ScriptEngine* engine) = 0;
};

/// What a command may use of the console that runs it.
class ScriptEngine {
public:
    virtual ~ScriptEngine() = default;

    /// Adds a word whose execution runs the wrapper. A later one of the same name replaces it.
    virtual void provideMethod(const QString& name, std::unique_ptr<MethodWrapper> wrapper) = 0;

    /// The next argument, which is taken. An engine's own exception if it is missing or of another
    /// type.
    virtual QString fetchStringArgument() = 0;
    virtual qint64 fetchIntegerArgument() = 0;

    virtual void returnValue(const QString& value) = 0;
    virtual void returnValue(int value) = 0;

    /// What a script prints.
    virtual void output(const QString& text) = 0;
    /// What the console itself has to say: prompts and errors.
    virtual void message(const QString& text) = 0;
    /// A line that a command prints for a script.
    virtual void scriptOutput(const QString& text) = 0;

    /// Runs a file. False after an error, which has been given to `message`.
    virtual bool load(const QString& file) = 0;
};
