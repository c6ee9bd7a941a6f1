#include "cli/LineEditor.h"

#include "base/QTx.h"
#include "base/TargetConstants.h"
#include "cli/InterruptFlag.h"

#include <cstdio>

#include <histedit.h>
#include <unistd.h>

namespace {

constexpr int LinesOfHistory = 1000;

} // namespace

struct LineEditor::State {
    EditLine* editor = nullptr;
    History* history = nullptr;
    QByteArray prompt;
    QByteArray historyFile;

    static char* promptOf(EditLine* editor)
    {
        void* state = nullptr;
        el_get(editor, EL_CLIENTDATA, &state);
        return static_cast<State*>(state)->prompt.data();
    }
};

LineEditor::LineEditor(const QString& historyName) : m_state(std::make_unique<State>())
{
    const QString folder = QTx::userLocalAppDataDirectory(Get_OWNER());
    if (QTx::makeDir(folder))
        m_state->historyFile = QString(folder + u'/' + historyName).toLocal8Bit();
    HistEvent event;
    m_state->history = history_init();
    history(m_state->history, &event, H_SETSIZE, LinesOfHistory);
    history(m_state->history, &event, H_SETUNIQUE, 1);
    history(m_state->history, &event, H_LOAD, m_state->historyFile.constData());

    m_state->editor = el_init("gantry", stdin, stdout, stderr);
    el_set(m_state->editor, EL_CLIENTDATA, m_state.get());
    el_set(m_state->editor, EL_PROMPT, &State::promptOf);
    el_set(m_state->editor, EL_EDITOR, "emacs");
    el_set(m_state->editor, EL_HIST, history, m_state->history);
    // The editor looks at the keys that most terminals send, but not at these.
    el_set(m_state->editor, EL_BIND, "^R", "em-inc-search-prev", nullptr);
    el_set(m_state->editor, EL_BIND, "\\e[3~", "ed-delete-next-char", nullptr);
    el_set(m_state->editor, EL_BIND, "\\e[1~", "ed-move-to-beg", nullptr);
    el_set(m_state->editor, EL_BIND, "\\e[4~", "ed-move-to-end", nullptr);
    el_source(m_state->editor, nullptr);
}

LineEditor::~LineEditor()
{
    HistEvent event;
    if (!m_state->historyFile.isEmpty())
        history(m_state->history, &event, H_SAVE, m_state->historyFile.constData());
    el_end(m_state->editor);
    history_end(m_state->history);
}

LineEditor::Input LineEditor::readLine(const QString& prompt, QString& line)
{
    m_state->prompt = prompt.toLocal8Bit();
    InterruptFlag::clear();
    // Before the prompt is seen: a key that comes while the terminal still edits lines by itself
    // would be taken by it, and the end of input lost.
    el_set(m_state->editor, EL_PREP_TERM, 1);
    int count = 0;
    const char* const text = el_gets(m_state->editor, &count);
    if (InterruptFlag::isSet()) {
        InterruptFlag::clear();
        el_reset(m_state->editor);
        std::printf("\n");
        return Input::Interrupted;
    }
    if (!text || count <= 0) {
        std::printf("\n");
        return Input::End;
    }
    line = QString::fromLocal8Bit(text);
    if (line.endsWith(u'\n'))
        line.chop(1);
    if (!line.trimmed().isEmpty()) {
        HistEvent event;
        history(m_state->history, &event, H_ENTER, text);
    }
    return Input::Line;
}

bool LineEditor::isTerminal() { return isatty(STDIN_FILENO) && isatty(STDOUT_FILENO); }
