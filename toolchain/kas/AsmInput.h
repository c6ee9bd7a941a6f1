#pragma once

#include "toolchain/kas/AsmLine.h"

#include <optional>

/// The statements still to come: files being included and macros being expanded, innermost on top.
class AsmInput {
public:
    static constexpr std::size_t MaximumDepth = 100;
    /// Statements that expansions may add up to: recursion that branches would never end otherwise.
    static constexpr std::size_t MaximumExpansion = 2'000'000;

    /// What a frame is, which decides where its statements are said to come from.
    enum class Kind { File, Macro };

    /// Puts the lines in front of what is left, `repeats` times. Throws AsmError where a limit is
    /// passed. `conditions` is kept for the frame's owner.
    void push(AsmLinesPtr lines, Kind kind, std::size_t conditions, std::size_t repeats = 1);

    /// The next statement; false at the end of all.
    bool next(AsmLine& line);

    /// Leaves the innermost macro. Returns its kept number, or nothing if no macro is being
    /// expanded.
    std::optional<std::size_t> leaveMacro();

    /// Where the outermost macro of those being expanded was called, else the statement's own
    /// place.
    const AsmLine& origin() const;

    /// The calls that led to the current statement, innermost first.
    std::vector<SourceLocation> callers() const;

private:
    struct Frame {
        AsmLinesPtr lines;
        Kind kind;
        std::size_t conditions;
        std::size_t repeats;
        std::size_t position = 0;
        AsmLine caller;
    };

    std::vector<Frame> m_frames;
    std::size_t m_expanded = 0;
    AsmLine m_current{{}, nullptr, 0};
};
