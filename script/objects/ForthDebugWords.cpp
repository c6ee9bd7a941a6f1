#include "script/objects/ForthDebugWords.h"

#include "base/HException.h"
#include "debugger/session/DebugSession.h"
#include "debugger/views/TextVariableView.h"

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int ForthTrue = -1;

} // namespace

class ForthDebugWords::Word : public MethodWrapper {
public:
    using Action = void (ForthDebugWords::*)(ScriptEngine& engine);

    Word(ForthDebugWords& words, Action action) : m_words(words), m_action(action) { }

    void execute(ScriptEngine* engine) override
    {
        try {
            (m_words.*m_action)(*engine);
        } catch (const HException& failure) {
            engine->message(QString::fromStdString(failure.message()) + u'\n');
        }
    }

private:
    ForthDebugWords& m_words;
    const Action m_action;
};

void ForthDebugWords::provide(ScriptEngine& engine)
{
    const struct {
        const char16_t* name;
        Word::Action action;
    } words[] = {
        {u"DEBUGGING?", &ForthDebugWords::isDebugging},
        {u"DEBUG-GO", &ForthDebugWords::go},
        {u"DEBUG-BREAK", &ForthDebugWords::breakIn},
        {u"DEBUG-STOP", &ForthDebugWords::stop},
        {u"DEBUG-STEP-OVER", &ForthDebugWords::stepOver},
        {u"DEBUG-STEP-INTO", &ForthDebugWords::stepInto},
        {u"DEBUG-STEP-OUT", &ForthDebugWords::stepOut},
        {u"DEBUG-FRAME-UP", &ForthDebugWords::frameUp},
        {u"DEBUG-FRAME-DOWN", &ForthDebugWords::frameDown},
        {u"DEBUG-SHOW-NEXT", &ForthDebugWords::showNext},
        {u".LOCALS", &ForthDebugWords::printLocals},
    };
    for (const auto& word : words)
        engine.provideMethod(QString::fromUtf16(word.name),
                             std::make_unique<Word>(*this, word.action));
}

void ForthDebugWords::runTo(const QString& function)
{
    if (!m_session)
        return;
    SymbolicDebuggerInterface& debugger = m_session->debugger();
    try {
        if (!debugger.setBreakpoint(ExpressionContext(), function, QString(), 0, false, true,
                                    QString(), QString()))
            return;
    } catch (const DebuggerBreakpointFailure&) {
        return;
    }
    debugger.go();
    m_session->waitForStop();
}

void ForthDebugWords::isDebugging(ScriptEngine& engine)
{
    engine.returnValue(m_session ? ForthTrue : 0);
}

// Running

void ForthDebugWords::go(ScriptEngine& engine)
{
    if (!m_session || m_session->hasEnded())
        return;
    m_session->debugger().go();
    waitForStop(engine);
}

/// While a word runs the program, it is an interrupt that stops it.
void ForthDebugWords::breakIn(ScriptEngine&)
{
    if (m_session)
        m_session->debugger().stop();
}

void ForthDebugWords::stop(ScriptEngine&)
{
    if (!m_session)
        return;
    m_session->debugger().clear();
    m_session = nullptr;
}

void ForthDebugWords::stepOver(ScriptEngine& engine)
{
    if (!m_session || m_session->hasEnded())
        return;
    m_session->debugger().stepover(false);
    waitForStop(engine);
}

void ForthDebugWords::stepInto(ScriptEngine& engine)
{
    if (!m_session || m_session->hasEnded())
        return;
    m_session->debugger().stepinto(false);
    waitForStop(engine);
}

void ForthDebugWords::stepOut(ScriptEngine& engine)
{
    Frame* const caller =
        m_session && !m_session->hasEnded() ? m_session->frame(m_call + 1) : nullptr;
    if (!caller)
        return;
    m_session->debugger().stepout(caller);
    waitForStop(engine);
}

void ForthDebugWords::waitForStop(ScriptEngine& engine)
{
    m_call = 0;
    if (m_session->waitForStop())
        showPlace(engine);
    else
        engine.scriptOutput(u"the program has ended with %1"_s.arg(m_session->exitCode()));
}

// The call stack

void ForthDebugWords::selectFrame(int call, ScriptEngine& engine)
{
    if (!m_session || !m_session->frame(call))
        return;
    m_call = call;
    showPlace(engine);
}

void ForthDebugWords::frameUp(ScriptEngine& engine) { selectFrame(m_call + 1, engine); }
void ForthDebugWords::frameDown(ScriptEngine& engine) { selectFrame(m_call - 1, engine); }
void ForthDebugWords::showNext(ScriptEngine& engine) { selectFrame(0, engine); }

void ForthDebugWords::showPlace(ScriptEngine& engine)
{
    SymbolicDebuggerInterface& debugger = m_session->debugger();
    QString module;
    Path file;
    QString function;
    int line = 0;
    unsigned pc = 0;
    if (!debugger.locate(m_session->frame(m_call), module, file, function, line, pc))
        return;
    engine.scriptOutput(line > 0 ? u"%1(%2): %3"_s.arg(file.fileName()).arg(line).arg(function)
                                 : u"%1: %2"_s.arg(debugger.formatPC(pc), function));
}

void ForthDebugWords::printLocals(ScriptEngine& engine)
{
    Frame* const frame = m_session ? m_session->frame(m_call) : nullptr;
    if (!frame)
        return;
    TextVariableView locals;
    m_session->debugger().getLocalVariables(frame, &locals);
    if (!locals.text().isEmpty())
        engine.scriptOutput(locals.text());
}
