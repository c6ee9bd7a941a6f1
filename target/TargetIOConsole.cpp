// The operations of the debug I/O server on the terminal, and the formats.
#include "target/TargetIOOperations.h"
#include "target/TargetIOPrint.h"
#include "target/TargetIOScan.h"

#include <bit>
#include <cstdlib>

using Operations = TargetIOServer::Operations;

namespace {

constexpr std::size_t outputBufferSize = 1024;
/// Numbers of the operations on formats whose arguments stand behind a pointer.
constexpr unsigned firstWithPointer = 57, lastWithPointer = 72;

} // namespace

// The second operation of each pair of a row passes float as 4 bytes.
bool Operations::passesFloats() const
{
    const unsigned pair = (m_number - 1) / 2;
    return takesArgumentPointer() ? (m_number - firstWithPointer) / 2 % 2 == 1 : pair % 2 == 1;
}

bool Operations::formatIsInCode() const
{
    return takesArgumentPointer() ? (m_number - firstWithPointer) / 4 % 2 == 1 : m_number >= 49;
}

bool Operations::takesArgumentPointer() const
{
    return m_number >= firstWithPointer && m_number <= lastWithPointer;
}

std::string Operations::printed()
{
    const std::string format = stringArgument(formatIsInCode());
    if (takesArgumentPointer())
        m_arguments = TargetIOArguments(*s_data, m_arguments.getPtrArg());
    m_arguments.setSingleFloats(passesFloats());
    return printTargetFormat(format, m_arguments);
}

int Operations::scanned(std::function<int()> read, int& left)
{
    const std::string format = stringArgument(formatIsInCode());
    if (takesArgumentPointer())
        m_arguments = TargetIOArguments(*s_data, m_arguments.getPtrArg());
    TargetIOScanSource source(std::move(read));
    const int items = scanTargetFormat(format, source, m_arguments);
    left = source.left();
    return items;
}

void Operations::addOutput(const std::string& text)
{
    if (s_terminal != nullptr && !text.empty())
        s_terminal->addOutput(
            QString::fromLatin1(text.data(), static_cast<qsizetype>(text.size())));
    if (s_helper != nullptr)
        s_helper->outputUpdated();
}

bool Operations::takeLine(std::string& line)
{
    if (s_terminal == nullptr || s_terminal->inputLines() == 0)
        return false;
    line = s_terminal->getInputLine().toLatin1().toStdString();
    if (s_pushedBack >= 0)
        line.insert(line.begin(), static_cast<char>(s_pushedBack));
    s_pushedBack = -1;
    return true;
}

void Operations::refuseForLackOfInput(int notYet, int atEnd)
{
    const bool ended = s_terminal == nullptr || s_terminal->atEnd();
    if (!ended && s_helper != nullptr)
        s_helper->inputRequested();
    setResult(ended ? atEnd : notYet);
}

void Operations::print()
{
    std::string text = printed();
    text.resize(std::min(text.size(), outputBufferSize));
    addOutput(text);
    setResult(static_cast<std::int64_t>(text.size()));
}

void Operations::scan() { scanLine(); }

void Operations::scanLine()
{
    std::string line;
    if (!takeLine(line))
        return refuseForLackOfInput(-1, -2);
    std::size_t next = 0;
    int left;
    const int items = scanned(
        [&] {
            return next < line.size() ? static_cast<unsigned char>(line[next++])
                                      : TargetIOScanSource::End;
        },
        left);
    // A line with nothing in it for the format is no end of the input.
    setResult(std::max(items, 0));
}

void Operations::getCharacter()
{
    if (s_pushedBack >= 0) {
        setResult(s_pushedBack);
        s_pushedBack = -1;
    } else if (s_terminal != nullptr && s_terminal->inputCharAvailable()) {
        setResult(s_terminal->getInputChar());
    } else {
        refuseForLackOfInput(-2, -1);
    }
}

void Operations::getKey()
{
    if (s_terminal != nullptr && s_terminal->inputCharAvailable())
        setResult(s_terminal->getInputChar());
    else
        refuseForLackOfInput(-1, -2);
}

void Operations::keyAvailable()
{
    setResult(s_terminal != nullptr && s_terminal->inputCharAvailable() ? 1 : 0);
}

void Operations::gets()
{
    const std::uint32_t buffer = m_arguments.getPtrArg();
    const auto size = static_cast<std::size_t>(m_arguments.getUnsignedArg());
    std::string line;
    if (!takeLine(line))
        return refuseForLackOfInput(-1, -2);
    line.resize(std::min(line.size(), size > 0 ? size - 1 : 0));
    storeString(buffer, static_cast<unsigned>(size), line);
    setResult(0);
}

void Operations::put()
{
    const auto character = static_cast<char>(m_arguments.getIntArg());
    if (character != 0)
        addOutput({character});
    setResult(static_cast<unsigned char>(character));
}

void Operations::puts()
{
    addOutput(std::string(stringArgument()) + "\n");
    setResult(0);
}

void Operations::readInteger()
{
    const std::uint32_t address = m_arguments.getPtrArg();
    std::string line;
    if (!takeLine(line))
        return refuseForLackOfInput(-1, -2);
    const bool isSigned = m_number % 2 == 1;
    const std::uint64_t value = isSigned
        ? static_cast<std::uint64_t>(std::strtoll(line.c_str(), nullptr, 0))
        : std::strtoull(line.c_str(), nullptr, 0);
    if (m_number <= 26)
        s_data->pokeWord(address, value);
    else
        s_data->pokeNumber(address, m_number <= 28 ? 4 : 8, value);
    setResult(0);
}

void Operations::readReal()
{
    const std::uint32_t address = m_arguments.getPtrArg();
    std::string line;
    if (!takeLine(line))
        return refuseForLackOfInput(-1, -2);
    const double value = std::strtod(line.c_str(), nullptr);
    if (m_number == 29)
        s_data->pokeNumber(address, 4, std::bit_cast<std::uint32_t>(static_cast<float>(value)));
    else
        s_data->pokeNumber(address, 8, std::bit_cast<std::uint64_t>(value));
    setResult(0);
}
