#include "debugger/disassembly/DisassemblyWriter.h"

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

namespace {

/// Source lines ahead of that of a statement.
constexpr int ContextLines = 4;
/// With so many instructions since, the place in the source is told again.
constexpr int InstructionsPerHeader = 10;
constexpr int HeaderWidth = 60;

} // namespace

DisassemblyInfo DisassemblyWriter::write(unsigned from, unsigned to)
{
    m_info = {};
    m_info.first = from;
    m_info.last = to;
    for (unsigned address = from; address < to;) {
        if (m_options.source)
            writeSource(address);
        writeInstruction(address);
    }
    m_info.mappings.create();
    return std::move(m_info);
}

void DisassemblyWriter::writeSource(unsigned address)
{
    const std::optional<SourceLine> statement = m_sources.statementAt(address);
    if (!statement)
        return;
    if (statement->file != m_file) {
        m_file = statement->file;
        m_nextSourceLine = 1;
    }
    const int line = statement->line;
    if (line > m_nextSourceLine + ContextLines)
        m_nextSourceLine = line - ContextLines;
    if (m_nextSourceLine != line || m_sinceHeader > InstructionsPerHeader)
        writeHeader(m_file);
    for (int n = m_nextSourceLine; n <= line; ++n) {
        const QString text = m_sources.sourceText(m_file, n);
        if (!text.isEmpty())
            m_info.lines << text.simplified();
    }
    m_nextSourceLine = line + 1;
}

void DisassemblyWriter::writeHeader(const Path& file)
{
    const QString header = u"--- "_s + file.fileName() + u" -- "_s
        + QString::number(m_nextSourceLine) + u' ' + QString(HeaderWidth, u'-');
    m_info.lines << header.left(HeaderWidth);
    m_sinceHeader = 0;
}

void DisassemblyWriter::writeInstruction(unsigned& address)
{
    if (m_options.labels) {
        const QString function = m_sources.functionAt(address);
        if (!function.isEmpty())
            m_info.lines << u'<' + function + u'>';
    }
    const DisassembledInstruction instruction = m_sources.disassemble(address);
    QString line = u"    "_s + instruction.text;
    if (m_options.labels && instruction.isTransfer) {
        const QString target = m_sources.functionAt(instruction.target);
        if (!target.isEmpty())
            line += u" <"_s + target + u'>';
    }
    const unsigned length = std::max(instruction.length, 2U);
    m_info.lines << line;
    m_info.mappings.add(static_cast<int>(m_info.lines.size()), address, length);
    ++m_sinceHeader;
    address += length;
}
