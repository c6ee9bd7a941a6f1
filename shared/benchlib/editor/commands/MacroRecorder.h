#pragma once

#include "editor/commands/EditCommand.h"

#include <vector>

/// The keyboard macro, of which there is one for all editors.
class MacroRecorder {
public:
    enum class State { Idle = 0, Recording = 1, Paused = 2 };
    struct Step {
        EditCommand command;
        QString text; ///< of EditCommand::insertTyped
    };

    State recordingState() const { return m_state; }
    const std::vector<Step>& steps() const { return m_steps; }

    /// Each does nothing in a state that it doesn't fit.
    void startRecording();
    void pauseRecording();
    void resumeRecording();
    /// Keeps what was recorded.
    void stopRecording();
    void cancelRecording();
    void recordCommand(EditCommand command, const QString& text = {});

private:
    State m_state = State::Idle;
    std::vector<Step> m_steps;
};

MacroRecorder& macroRecorder();
