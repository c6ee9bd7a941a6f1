#include "toolchain/kas/AsmInput.h"

#include <algorithm>

void AsmInput::push(AsmLinesPtr lines, Kind kind, std::size_t conditions, std::size_t repeats)
{
    if (m_frames.size() >= MaximumDepth)
        throw AsmError{kind == Kind::File ? "files include each other too deeply"
                                          : "macros are nested too deeply"};
    if (kind == Kind::Macro && !lines->empty()) {
        if (repeats > (MaximumExpansion - m_expanded) / lines->size())
            throw AsmError{"macros expand to too many lines"};
        m_expanded += repeats * lines->size();
    }
    if (repeats > 0)
        m_frames.push_back({std::move(lines), kind, conditions, repeats, 0, m_current});
}

bool AsmInput::next(AsmLine& line)
{
    while (!m_frames.empty()) {
        Frame& top = m_frames.back();
        if (top.position < top.lines->size()) {
            line = m_current = (*top.lines)[top.position++];
            return true;
        }
        top.position = 0;
        if (top.lines->empty() || --top.repeats == 0)
            m_frames.pop_back();
    }
    return false;
}

std::optional<std::size_t> AsmInput::leaveMacro()
{
    if (m_frames.empty() || m_frames.back().kind != Kind::Macro)
        return {};
    const std::size_t conditions = m_frames.back().conditions;
    m_frames.pop_back();
    return conditions;
}

const AsmLine& AsmInput::origin() const
{
    const auto innermostFile =
        std::find_if(m_frames.rbegin(), m_frames.rend(),
                     [](const Frame& frame) { return frame.kind == Kind::File; });
    return innermostFile == m_frames.rbegin() ? m_current : innermostFile.base()->caller;
}

std::vector<SourceLocation> AsmInput::callers() const
{
    std::vector<SourceLocation> places;
    for (auto frame = m_frames.rbegin(); frame != m_frames.rend(); ++frame)
        if (frame->kind == Kind::Macro)
            places.push_back(frame->caller.where());
    return places;
}
