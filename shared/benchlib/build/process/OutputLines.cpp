#include "build/process/OutputLines.h"

#include <algorithm>

namespace {

bool continuesCharacter(char byte) { return (static_cast<unsigned char>(byte) & 0xC0) == 0x80; }

} // namespace

void OutputLines::append(const QByteArray& bytes)
{
    if (m_begin > 0) {
        m_bytes.remove(0, m_begin);
        m_searched -= m_begin;
        m_begin = 0;
    }
    m_bytes += bytes;
}

std::optional<QString> OutputLines::next()
{
    const qsizetype end = m_bytes.indexOf('\n', m_searched);
    m_searched = end >= 0 ? end : m_bytes.size();
    const qsizetype size = m_searched - m_begin;
    if (size > MaximumLine) {
        qsizetype cut = MaximumLine;
        // A character has at most three bytes behind its first.
        while (cut > MaximumLine - 3 && continuesCharacter(m_bytes[m_begin + cut]))
            --cut;
        return take(cut, 0);
    }
    if (end < 0)
        return std::nullopt;
    const qsizetype returnSize = size > 0 && m_bytes[end - 1] == '\r' ? 1 : 0;
    return take(size - returnSize, returnSize + 1);
}

std::optional<QString> OutputLines::rest()
{
    if (m_begin == m_bytes.size())
        return std::nullopt;
    const bool hasReturn = m_bytes.back() == '\r';
    return take(m_bytes.size() - m_begin - (hasReturn ? 1 : 0), hasReturn ? 1 : 0);
}

QString OutputLines::take(qsizetype size, qsizetype endSize)
{
    QString line = QString::fromUtf8(m_bytes.constData() + m_begin, size);
    m_begin += size + endSize;
    m_searched = std::max(m_searched, m_begin);
    return line;
}
