#include "editor/commands/MacroRecorder.h"

MacroRecorder& macroRecorder()
{
    static MacroRecorder recorder;
    return recorder;
}

void MacroRecorder::startRecording()
{
    if (m_state != State::Idle)
        return;
    m_steps.clear();
    m_state = State::Recording;
}

void MacroRecorder::pauseRecording()
{
    if (m_state == State::Recording)
        m_state = State::Paused;
}

void MacroRecorder::resumeRecording()
{
    if (m_state == State::Paused)
        m_state = State::Recording;
}

void MacroRecorder::stopRecording() { m_state = State::Idle; }

void MacroRecorder::cancelRecording()
{
    m_state = State::Idle;
    m_steps.clear();
}

void MacroRecorder::recordCommand(EditCommand command, const QString& text)
{
    if (m_state == State::Recording)
        m_steps.push_back({command, text});
}
