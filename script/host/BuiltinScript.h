#pragma once

#include "script/es/ESNativeClass.h"

#include <QStringList>

#include <functional>

/// A script that ends by its own wish, with a text as its failure. Scripts can't catch it.
class ScriptFailure {
public:
    explicit ScriptFailure(const QString& text) : m_text(text) { }
    const QString& text() const { return m_text; }

private:
    QString m_text;
};

/// The global object `WScript`: texts to whoever runs the script, and the arguments of the run.
/// Must outlive the contexts that it is installed in.
class BuiltinScript : public ESNativeClass {
public:
    /// Takes a text of the script, without a line end.
    using Echo = std::function<void(const QString& text)>;

    explicit BuiltinScript(Echo echo);

    void install(ESContext* context, const QStringList& arguments = {});
    void echo(const QString& text) const { m_echo(text); }

private:
    Echo m_echo;
};

/// The global object `Bench`: waiting, and ending the script. Must outlive its contexts.
class BenchScript : public ESNativeClass {
public:
    BenchScript();
    void install(ESContext* context);
};
