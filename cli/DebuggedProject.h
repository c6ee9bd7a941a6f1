#pragma once

#include "build/workspace/Workspace.h"
#include "cli/CommandLineTerminal.h"
#include "debugger/msp430/MSP430Debugger.h"
#include "debugger/session/DebugControl.h"
#include "debugger/session/DebugSession.h"
#include "debugger/session/DebuggerSettings.h"
#include "script/host/BuiltinScript.h"
#include "script/objects/BenchScriptSystem.h"
#include "script/objects/DebugScriptObject.h"
#include "target/control/TargetControl.h"
#include "target/control/TargetList.h"

#include <functional>
#include <memory>

/// A project of a solution under the debugger, for a script: built if need be, loaded with its
/// settings on one of the user's targets, and stopped at its entry.
class DebuggedProject : private DebugControlHost,
                        private TargetControlHost,
                        private BenchScriptSystemHost {
public:
    struct Choice {
        QString solution;      ///< the path of its file
        QString project;       ///< empty for the first that makes something to load
        QString configuration; ///< empty for the first
        QString target;        ///< a name in the user's list; empty for the first
    };

    /// Throws HException if it can't be started.
    DebuggedProject(const Choice& choice, std::function<bool()> carryOn);
    ~DebuggedProject() override;

    void install(ESContext* context);

private:
    ProjectElement* findProject(const QString& name) const;
    QString findConfiguration(const QString& name) const;

    // What is asked while the session starts: a user who starts a script wants it to run.
    bool ask(const QString& text, const QString& title) override;
    bool isOutOfDate(ProjectElement* project, const QString& configuration) override;
    bool build(ProjectElement* project, const QString& configuration) override;
    bool carryOn() override { return m_carryOn(); }
    void inputRequested() override { m_terminal.waitForLine(); }
    void displayError(const QString& text) override;
    void logError(const QString& text) override { displayError(text); }
    // Of the scripts of the project.
    void showMessage(const QString& title, const QString& text) override;
    void installScriptObjects(ESContext* context) override;

    class Helper : public DebuggerSettings {
    public:
        using DebuggerSettings::DebuggerSettings;
        void displayError(const QString& text) override;
    };

    std::function<bool()> m_carryOn;
    Workspace m_workspace{{}};
    CommandLineTerminal m_terminal{std::string()};
    TargetList m_list;
    TargetControl m_targets;
    Helper m_helper{m_workspace.settings()};
    MSP430Debugger m_debugger{&m_helper};
    DebugControl m_control;
    BenchScriptSystem m_scripts{*this};
    BuiltinScript m_echo{[this](const QString& text) { displayError(text); }};
    BenchScript m_bench;
    std::unique_ptr<DebugScriptObject> m_object; ///< null before the session
};
