#include "cli/CommandLineTerminal.h"

#include "base/HException.h"

#include <algorithm>
#include <cstdio>

#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

CommandLineTerminal::CommandLineTerminal(const std::string& path)
{
    if (path.empty())
        return;
    m_descriptor = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
    if (m_descriptor < 0)
        throw HException("cannot open " + path);
}

CommandLineTerminal::~CommandLineTerminal()
{
    if (m_descriptor > 0)
        ::close(m_descriptor);
}

void CommandLineTerminal::addOutput(QString text)
{
    const QByteArray bytes = text.toLatin1();
    std::fwrite(bytes.data(), 1, static_cast<std::size_t>(bytes.size()), stdout);
}

bool CommandLineTerminal::hasLine() const
{
    return m_input.find('\n') != std::string::npos || (m_ended && !m_input.empty());
}

int CommandLineTerminal::inputLines() const
{
    const auto complete = std::count(m_input.begin(), m_input.end(), '\n');
    const bool rest = m_ended && !m_input.empty() && m_input.back() != '\n';
    return static_cast<int>(complete) + (rest ? 1 : 0);
}

QString CommandLineTerminal::getInputLine()
{
    const std::size_t end = std::min(m_input.find('\n'), m_input.size());
    const QString line = QString::fromLatin1(m_input.data(), static_cast<qsizetype>(end));
    m_input.erase(0, end + 1);
    return line;
}

int CommandLineTerminal::getInputChar()
{
    if (m_input.empty())
        return -1;
    const auto c = static_cast<unsigned char>(m_input.front());
    m_input.erase(0, 1);
    return c;
}

bool CommandLineTerminal::inputCharAvailable() const
{
    if (m_input.empty() && !m_ended && readable())
        readSome();
    return !m_input.empty();
}

bool CommandLineTerminal::atEnd() const
{
    const bool end = m_ended && m_input.empty();
    m_questionsAtEnd += end ? 1 : 0;
    return end;
}

void CommandLineTerminal::waitForLine()
{
    std::fflush(stdout);
    while (!m_ended && !hasLine())
        readSome();
}

bool CommandLineTerminal::readable() const
{
    pollfd descriptor{m_descriptor, POLLIN, 0};
    return poll(&descriptor, 1, 0) > 0;
}

void CommandLineTerminal::readSome() const
{
    char buffer[4096];
    const ssize_t count = ::read(m_descriptor, buffer, sizeof buffer);
    if (count > 0)
        m_input.append(buffer, static_cast<std::size_t>(count));
    else
        m_ended = true;
}
