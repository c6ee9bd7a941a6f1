// The text of the disassembly window.

#include "debugger/core/TOBFDebugger.h"
#include "debugger/disassembly/DisassemblyWriter.h"
#include "objfile/model/TOBFInsn.h"
#include "objfile/model/TOBFSymbol.h"
#include "objfile/query/SymbolicDebug.h"
#include "target/HMonitor.h"

using namespace Qt::Literals::StringLiterals;

namespace {

/// Bytes above and below an address that is shown first, and added at a time.
constexpr unsigned Around = 200;
constexpr unsigned More = 256;
constexpr int LinesWithoutTarget = 200;

} // namespace

unsigned TOBFDebugger::peekPC(unsigned address)
{
    if (m_image.covers(address, 2)) {
        const unsigned char* const bytes = &m_image.bytes[address - m_image.start];
        return bytes[0] | unsigned(bytes[1]) << 8;
    }
    return codeMemory() ? codeMemory()->peekUint16(address) : 0;
}

void TOBFDebugger::setDisassembleRange(unsigned address, unsigned size, const unsigned char* bytes)
{
    m_image = {address, {bytes, bytes + size}};
}

QString TOBFDebugger::disassembleInstructionWithoutMemoryAccess(unsigned address)
{
    TOBFInsn* const item = getInsnAt(address);
    if (!item || item->isHidden() || item->length() == 0)
        return {};
    m_image = {address, {}};
    for (int i = 0; i < item->length(); ++i)
        m_image.bytes.push_back(static_cast<unsigned char>(item->getByte(i)));
    const QString text = disassemble(address).text;
    m_image = {};
    return text;
}

DisassemblyInfo TOBFDebugger::generateDisassembly(unsigned from, unsigned to)
{
    // Where the program is known the text begins at an instruction.
    constexpr unsigned LongestInstruction = 10;
    for (unsigned at = from; at < from + LongestInstruction && at < to; at += 2)
        if (getInsnAt(at)) {
            from = at;
            break;
        }
    m_image = {from, std::vector<unsigned char>(to - from)};
    if (TargetMemoryInterface* const memory = codeMemory())
        memory->peekBytes(from, to - from, m_image.bytes.data());

    DisassemblyWriter::Sources sources;
    sources.disassemble = [this](unsigned address) { return disassemble(address); };
    sources.statementAt = [this](unsigned address) -> std::optional<DisassemblyWriter::SourceLine> {
        unsigned start = 0;
        unsigned length = 0;
        Path file;
        if (!getAddressRange(address, start, length) || start != address)
            return std::nullopt;
        const int line = getAddressLine(address, file);
        return line < 0 ? std::nullopt : std::optional(DisassemblyWriter::SourceLine{file, line});
    };
    sources.sourceText = [this](const Path& file, int line) {
        return helper().getDebugSourceText(file, line);
    };
    sources.functionAt = [this](unsigned address) {
        const TOBFSymbol* const symbol = findFunctionSymbol(address, true);
        return symbol ? QString::fromUtf8(symbol->name()->text()) : QString();
    };
    DisassemblyInfo info = DisassemblyWriter(std::move(sources),
                                             {helper().debuggerDisassemblyShowSource(),
                                              helper().debuggerDisassemblyShowLabels()})
                               .write(from, to);
    m_image = {};
    return info;
}

const DisassemblyInfo& TOBFDebugger::disassemblyInfo()
{
    if (!m_disassembly && m_disassemblyTop < m_disassemblyBottom)
        m_disassembly = generateDisassembly(m_disassemblyTop, m_disassemblyBottom);
    if (!m_disassembly)
        m_disassembly.emplace();
    return *m_disassembly;
}

void TOBFDebugger::getDisassemblyText(QStringList& lines)
{
    if (!m_monitor) {
        lines = QStringList(LinesWithoutTarget, QString());
        return;
    }
    lines = disassemblyInfo().lines;
}

void TOBFDebugger::moreDisassemblyText(bool up)
{
    if (up)
        m_disassemblyTop = addressSubtract(m_disassemblyTop, More);
    else
        m_disassemblyBottom = addressAdd(m_disassemblyBottom, More);
    clearDisassemblyText();
}

int TOBFDebugger::getDisassemblyLineNumber(unsigned address)
{
    if (!m_disassembly || !m_disassembly->holds(address))
        locateDisassembly(address);
    return disassemblyInfo().mappings.lineOf(address);
}

unsigned TOBFDebugger::getDisassemblyLineAddress(int line)
{
    unsigned address = 0;
    return disassemblyInfo().mappings.addressOf(line, address) ? address : None;
}

void TOBFDebugger::locateDisassembly(unsigned address)
{
    if (m_disassembly && m_disassembly->holds(address))
        return;
    m_disassemblyTop = addressSubtract(address, Around) & ~1U;
    m_disassemblyBottom = addressAdd(address, Around);
    clearDisassemblyText();
}

void TOBFDebugger::setDisassemblyExecution(unsigned address)
{
    if (TargetRegisterInterface* const registers = liveRegisters())
        registers->setPC(address);
}
