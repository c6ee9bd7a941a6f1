#include "script/forth/InputSource.h"

#include "script/forth/FSContext.h"

#include <algorithm>

namespace {

constexpr int Replacement = 0xFFFD;

// How many bytes follow the first one of a UTF-8 sequence.
int continuations(unsigned first)
{
    return first >= 0xF0 ? 3 : first >= 0xE0 ? 2 : first >= 0xC0 ? 1 : 0;
}

} // namespace

InputSource::InputSource()
{
    static qint64 serials = 0;
    m_serial = ++serials;
}

bool InputSource::seek(FSContext*, qint64, int line) { return line == m_line; }

bool StringSource::refill(FSContext* context)
{
    if (m_line != 0)
        return false;
    m_line = 1;
    context->setLine(m_text);
    return true;
}

FileSource::FileSource(const QString& name, qint64 id, std::unique_ptr<QIODevice> device,
                       bool binary)
    : m_name(name),
      m_id(id),
      m_device(std::move(device)),
      m_binary(binary)
{
}

bool FileSource::refill(FSContext* context)
{
    if (!m_device)
        return false;
    const qint64 start = m_device->pos();
    QByteArray bytes = m_device->readLine(LongestLine);
    if (bytes.isEmpty())
        return false;
    ++m_line;
    m_lineStart = start;
    if (bytes.endsWith('\n'))
        bytes.chop(1);
    else if (bytes.size() >= LongestLine - 1)
        throw ForthException(ForthError::StringOverflow);
    if (bytes.endsWith('\r'))
        bytes.chop(1);
    context->setLine(QString::fromUtf8(bytes));
    return true;
}

bool FileSource::seek(FSContext* context, qint64 place, int line)
{
    if (line == m_line)
        return true;
    if (!m_device || m_device->isSequential() || !m_device->seek(place))
        return false;
    m_line = line - 1;
    return refill(context);
}

int FileSource::readCharacter()
{
    char byte;
    if (!m_device->getChar(&byte))
        return -1;
    const auto first = static_cast<unsigned char>(byte);
    if (m_binary || first < 0x80)
        return first;
    const int more = continuations(first);
    QByteArray sequence(1, byte);
    sequence += m_device->peek(more);
    const QString text = QString::fromUtf8(sequence);
    const bool wide = text.size() == 2 && text[0].isHighSurrogate();
    if (!wide && (text.size() != 1 || text[0] == QChar(Replacement)))
        return Replacement;
    m_device->skip(more);
    return wide ? static_cast<int>(QChar::surrogateToUcs4(text[0], text[1]))
                : static_cast<int>(text[0].unicode());
}

bool FileSource::write(const QString& text)
{
    const auto isByte = [](QChar c) { return c.unicode() <= 0xFF; };
    if (m_binary && !std::all_of(text.begin(), text.end(), isByte))
        return false;
    const QByteArray bytes = m_binary ? text.toLatin1() : text.toUtf8();
    return m_device->write(bytes) == bytes.size();
}
