#include "editor/commands/MacroRecorder.h"

MacroRecorder& macroRecorder()
{
    static MacroRecorder recorder;
    return recorder;
}

void MacroRecorder::start()
{
    if (m_state != State::Idle)
        return;
    m_steps.clear();
    m_state = State::Recording;
}

void MacroRecorder::pause()
{
    if (m_state == State::Recording)
        m_state = State::Paused;
}

void MacroRecorder::resume()
{
    if (m_state == State::Paused)
        m_state = State::Recording;
}

void MacroRecorder::stop() { m_state = State::Idle; }

void MacroRecorder::cancel()
{
    m_state = State::Idle;
    m_steps.clear();
}

void MacroRecorder::record(EditCommand command, const QString& text)
{
    if (m_state == State::Recording)
        m_steps.push_back({command, text});
}
