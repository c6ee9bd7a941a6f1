#pragma once

#include "base/Path.h"
#include "debugger/disassembly/DisassemblyInfo.h"

#include <functional>
#include <optional>

/// Writes the text of a stretch of memory: instructions, and between them the names of functions
/// and the source lines that the code was made from.
class DisassemblyWriter {
public:
    struct SourceLine {
        Path file;
        int line; ///< 1-based
    };
    /// What the text is made of.
    struct Sources {
        std::function<DisassembledInstruction(unsigned address)> disassemble;
        /// The source line whose first code is at this address.
        std::function<std::optional<SourceLine>(unsigned address)> statementAt;
        /// A line of a source file; empty if there is none.
        std::function<QString(const Path& file, int line)> sourceText;
        /// The function that begins at the address; empty for none.
        std::function<QString(unsigned address)> functionAt;
    };
    struct Options {
        bool source;
        bool labels;
    };

    DisassemblyWriter(Sources sources, Options options)
        : m_sources(std::move(sources)),
          m_options(options)
    {
    }

    DisassemblyInfo write(unsigned from, unsigned to);

private:
    void writeSource(unsigned address);
    void writeHeader(const Path& file);
    void writeInstruction(unsigned& address);

    Sources m_sources;
    Options m_options;
    DisassemblyInfo m_info;
    Path m_file;
    int m_nextSourceLine = 1;
    int m_sinceHeader = 0;
};
