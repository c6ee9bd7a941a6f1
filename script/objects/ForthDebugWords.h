#pragma once

#include "script/ScriptEngine.h"

class DebugSession;

/// The words of a Forth console that drive a debugging session without a window. Without a session
/// they do nothing.
class ForthDebugWords {
public:
    /// Null for none. The session outlives this object, and this object the consoles.
    explicit ForthDebugWords(DebugSession* session) : m_session(session) { }

    void provide(ScriptEngine& engine);
    /// Runs to a function; a program without it stays where it is.
    void runTo(const QString& function);

private:
    class Word;

    void isDebugging(ScriptEngine& engine);
    void go(ScriptEngine& engine);
    void breakIn(ScriptEngine& engine);
    void stop(ScriptEngine& engine);
    void stepOver(ScriptEngine& engine);
    void stepInto(ScriptEngine& engine);
    void stepOut(ScriptEngine& engine);
    void frameUp(ScriptEngine& engine);
    void frameDown(ScriptEngine& engine);
    void showNext(ScriptEngine& engine);
    void printLocals(ScriptEngine& engine);

    void waitForStop(ScriptEngine& engine);
    void selectFrame(int call, ScriptEngine& engine);
    void showPlace(ScriptEngine& engine);

    DebugSession* m_session;
    int m_call = 0; ///< the selected one, 0 for the innermost
};
