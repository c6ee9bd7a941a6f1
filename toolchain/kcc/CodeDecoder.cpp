#include "toolchain/kcc/CodeDecoder.h"

#include "base/Endian.h"

#include <algorithm>

namespace {

constexpr unsigned RETI = 0x1300;
constexpr unsigned MovSPToR4 = 0x4104;
constexpr unsigned MovR4ToSP = 0x4401;

std::uint16_t wordAt(const ElfSection& section, std::uint32_t offset)
{
    return Endian::unpackUINT16(section.data.data(), offset, Endian::Little);
}

bool sourceHasWord(unsigned mode, unsigned reg)
{
    return (mode == 1 && reg != 3) || (mode == 3 && reg == 0);
}

/// The words behind the instruction; false if the word is no instruction of the base set.
bool decodeOperands(DecodedInsn& insn)
{
    const unsigned word = insn.word;
    const unsigned mode = word >> 4 & 3;
    const auto take = [&](std::uint32_t& operand) {
        operand = insn.offset + insn.length;
        insn.length += 2;
    };
    if (word >= 0x4000) {
        if (sourceHasWord(mode, word >> 8 & 0xF))
            take(insn.source);
        if ((word & 0x80) != 0)
            take(insn.destination);
        return true;
    }
    if (word >= 0x2000 || word == RETI)
        return true;
    if (word < 0x1000 || word >= 0x1300)
        return false;
    if (sourceHasWord(mode, word & 0xF))
        take(insn.source);
    return true;
}

} // namespace

std::int64_t DecodedInsn::jumpTarget() const
{
    const int distance = static_cast<std::int16_t>(static_cast<std::uint16_t>(word << 6)) >> 6;
    return std::int64_t{offset} + 2 + 2 * distance;
}

bool DecodedInsn::endsFlow() const
{
    if (isData)
        return false;
    const bool writesPC = word >= 0x4000 && word < 0x5000 && (word & 0x8F) == 0;
    return writesPC || word == RETI || isUnconditionalJump();
}

std::vector<DecodedInsn> decodeSection(const ElfSection& section)
{
    std::vector<DecodedInsn> result;
    const std::uint32_t size = section.data.size() & ~1u;
    for (std::uint32_t offset = 0; offset < size;) {
        DecodedInsn insn;
        insn.offset = offset;
        insn.word = wordAt(section, offset);
        const bool relocated = section.relocations.contains(offset);
        if (relocated || !decodeOperands(insn) || insn.length > size - offset) {
            insn = {};
            insn.offset = offset;
            insn.word = wordAt(section, offset);
            insn.isData = true;
        }
        offset += insn.length;
        result.push_back(insn);
    }
    return result;
}

namespace {

class StackTracker {
public:
    StackTracker(const ElfSection& section, const std::vector<DecodedInsn>& insns)
        : m_section(section),
          m_insns(insns)
    {
        m_result.depths.assign(insns.size(), NotVisited);
    }

    StackDepths run(int entryDepth)
    {
        readPrologue(entryDepth);
        follow(0, entryDepth);
        // What only a table or an address leads to is part of the body.
        for (std::size_t i = 0; i < m_insns.size(); ++i)
            follow(i, m_result.body);
        return std::move(m_result);
    }

private:
    static constexpr int NotVisited = -2;

    /// The change that an instruction makes to the depth; false if it can't be told.
    bool apply(const DecodedInsn& insn, int& depth) const
    {
        const unsigned word = insn.word;
        if (insn.isData)
            return true;
        if ((word & 0xFF80) == 0x1200)
            depth += 2;
        else if (word == MovR4ToSP && m_result.hasFramePointer)
            depth = m_result.framePointer;
        else if (word >= 0x4000 && (word & 0x8F) == 0x01)
            return applyToSP(insn, depth);
        if (word >= 0x4000 && (word & 0x0F30) == 0x0130)
            depth -= 2; // the source is @SP+
        return true;
    }

    bool applyToSP(const DecodedInsn& insn, int& depth) const
    {
        const unsigned operation = insn.word >> 12;
        int amount = 0;
        if ((operation != 5 && operation != 8) || !constantSource(insn, amount))
            return operation == 9 || operation == 11; // comparisons leave SP as it is
        depth += operation == 8 ? amount : -amount;
        return true;
    }

    bool constantSource(const DecodedInsn& insn, int& amount) const
    {
        switch (insn.word & 0x0F30) {
        case 0x0030:
            amount = static_cast<std::int16_t>(wordAt(m_section, insn.source));
            return !m_section.relocations.contains(insn.source);
        case 0x0310: amount = 1; return true;
        case 0x0320: amount = 2; return true;
        case 0x0330: amount = -1; return true;
        case 0x0220: amount = 4; return true;
        case 0x0230: amount = 8; return true;
        default: return false;
        }
    }

    void readPrologue(int depth)
    {
        for (const DecodedInsn& insn : m_insns) {
            const bool push = !insn.isData && (insn.word & 0xFFF0) == 0x1200;
            const bool makesRoom = !insn.isData && (insn.word & 0xF08F) == 0x8001;
            if (push) {
                m_result.saved.push_back(insn.word & 0xF);
                if (m_result.hasFramePointer)
                    ++m_result.pushedBehindFramePointer;
            } else if (insn.word == MovSPToR4 && !insn.isData) {
                m_result.hasFramePointer = true;
                m_result.framePointer = depth;
            } else if (!makesRoom) {
                break;
            }
            if (!apply(insn, depth))
                break;
            if (makesRoom)
                break;
        }
        m_result.body = depth;
    }

    void follow(std::size_t from, int depth)
    {
        m_pending.push_back({from, depth});
        while (!m_pending.empty()) {
            auto [index, current] = m_pending.back();
            m_pending.pop_back();
            while (index < m_insns.size() && m_result.depths[index] == NotVisited) {
                const DecodedInsn& insn = m_insns[index];
                m_result.depths[index] = current;
                if (insn.isJump())
                    enqueue(insn.jumpTarget(), current);
                if (insn.endsFlow())
                    break;
                if (current != StackDepths::Unknown && !apply(insn, current))
                    current = StackDepths::Unknown;
                ++index;
            }
        }
    }

    void enqueue(std::int64_t target, int depth)
    {
        const auto it = std::lower_bound(
            m_insns.begin(), m_insns.end(), target,
            [](const DecodedInsn& insn, std::int64_t offset) { return insn.offset < offset; });
        if (it != m_insns.end() && it->offset == target)
            m_pending.push_back({static_cast<std::size_t>(it - m_insns.begin()), depth});
    }

    const ElfSection& m_section;
    const std::vector<DecodedInsn>& m_insns;
    StackDepths m_result;
    std::vector<std::pair<std::size_t, int>> m_pending;
};

} // namespace

StackDepths computeStackDepths(const ElfSection& section, const std::vector<DecodedInsn>& insns,
                               int entryDepth)
{
    return StackTracker(section, insns).run(entryDepth);
}
