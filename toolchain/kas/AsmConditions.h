#pragma once

#include "toolchain/kas/AsmLine.h"

#include <vector>

/// The `.if` blocks that are open, innermost last.
class AsmConditions {
public:
    static constexpr std::size_t MaximumDepth = 1000;

    /// Whether statements are assembled here.
    bool active() const { return m_open.empty() || m_open.back().active; }
    std::size_t depth() const { return m_open.size(); }

    void begin(bool holds, const SourceLocation& where)
    {
        if (depth() >= MaximumDepth)
            throw AsmError{"'.if' is nested too deeply"};
        const bool outer = active();
        m_open.push_back({outer, outer && holds, outer && holds, false, where});
    }

    /// Whether the condition of an `.elseif` here matters, so that it has to be evaluated.
    bool wantsAlternative() const
    {
        return !m_open.empty() && m_open.back().outer && !m_open.back().taken;
    }

    void alternative(bool holds)
    {
        Block& block = innermost("'.elseif'");
        block.active = block.outer && !block.taken && holds;
        block.taken |= block.active;
    }

    void otherwise()
    {
        Block& block = innermost("'.else'");
        block.active = block.outer && !block.taken;
        block.taken = block.hasElse = true;
    }

    void end()
    {
        if (m_open.empty())
            throw AsmError{"'.endif' without '.if'"};
        m_open.pop_back();
    }

    /// Closes blocks down to a depth.
    void closeTo(std::size_t depth)
    {
        if (m_open.size() > depth)
            m_open.resize(depth);
    }

    void finish(Diagnostics& diagnostics) const
    {
        for (const Block& block : m_open)
            diagnostics.error(block.where, "'.if' without '.endif'");
    }

private:
    struct Block {
        bool outer; ///< the surroundings are assembled
        bool active;
        bool taken; ///< a part has been assembled already
        bool hasElse;
        SourceLocation where;
    };

    Block& innermost(const char* directive)
    {
        if (m_open.empty())
            throw AsmError{std::string(directive) + " without '.if'"};
        if (m_open.back().hasElse)
            throw AsmError{std::string(directive) + " behind '.else'"};
        return m_open.back();
    }

    std::vector<Block> m_open;
};
