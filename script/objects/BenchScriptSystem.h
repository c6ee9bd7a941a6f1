#pragma once

#include "target/script/ScriptSystem.h"

class ESContext;

/// What running scripts asks of the window, or of the command line.
class BenchScriptSystemHost {
public:
    virtual ~BenchScriptSystemHost() = default;

    virtual void showMessage(const QString& title, const QString& text) = 0;
    /// Makes the objects of the environment; what is installed outlives the run.
    virtual void installScriptObjects(ESContext* context) = 0;
    /// Lets the windows live, and requestStop be called.
    virtual void processEvents() { }
    /// A script begins or has ended: the command that stops one is enabled, or the one that starts
    /// one.
    virtual void scriptRunning(bool /*running*/) { }
};

/// Runs texts of JavaScript, each in a context of its own. What goes wrong is shown by the host.
class BenchScriptSystem : public ScriptSystem {
public:
    /// The host outlives this object.
    explicit BenchScriptSystem(BenchScriptSystemHost& host) : m_host(host) { }

    bool executing() const override { return m_executing; }
    void requestStop() override { m_stopRequested = true; }
    bool stopRequested() const override { return m_stopRequested; }

    using ScriptSystem::execute;
    /// The results are the elements of the array that the script ends with, or the names of the
    /// properties of any other object.
    bool execute(const QString& text, bool processEvents, QStringList& results) override;
    QStringList executeWithResult(const QString& text) override;

private:
    class Context;
    bool run(const QString& text, bool processEvents, QStringList& results);

    BenchScriptSystemHost& m_host;
    bool m_executing = false;
    bool m_stopRequested = false;
};
