#include "debugger/views/MemoryView.h"

#include "base/HException.h"
#include "debugger/breakpoints/BreakpointExpression.h"
#include "debugger/expressions/ParserException.h"
#include "debugger/interface/SymbolicDebuggerInterface.h"
#include "debugger/views/VariableViewItem.h"
#include "objfile/loadfiles/CodeBuffer.h"
#include "objfile/loadfiles/LoadFile.h"
#include "objfile/loadfiles/LoadFileFactory.h"

#include <algorithm>
#include <limits>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr auto NoMemory = "Address not in a valid memory range";
constexpr unsigned BitsPerByte = 8;

qint64 signExtended(unsigned value, unsigned bytes)
{
    const qint64 sign = qint64(1) << (bytes * BitsPerByte - 1);
    return (qint64(value) ^ sign) - sign;
}

} // namespace

void MemoryView::setAddressSpace(const QString& space)
{
    if (space != m_space)
        m_values.clear();
    m_space = space;
}

void MemoryView::setDataSize(unsigned bytes)
{
    if (bytes != m_dataSize)
        m_values.clear();
    m_dataSize = bytes;
}

// Showing

void MemoryView::evaluate()
{
    Frame* const frame = m_host.selectedFrame();
    const std::optional<unsigned> address = expressionValue(frame, m_addressText);
    const std::optional<unsigned> size =
        address ? expressionValue(frame, m_sizeText) : std::nullopt;
    if (!size || !checkAddressSize(*address, *size))
        return;
    m_address = *address;
    m_size = *size;
    redisplay();
}

std::optional<unsigned> MemoryView::expressionValue(Frame* frame, const QString& text)
{
    try {
        ExpressionType value;
        m_debugger.evaluateExpression({frame, Path(), -1}, text, value);
        return breakpointAddress(value);
    } catch (const ParserException& failure) {
        m_host.displayError(failure.getCause());
    } catch (const DebuggerBreakpointFailure& failure) {
        m_host.displayError(failure.text());
    }
    return std::nullopt;
}

bool MemoryView::checkAddressSize(unsigned address, unsigned size)
{
    if (m_debugger.getMemoryRange(m_space, address) == 0) {
        m_host.displayError(QLatin1String(NoMemory));
        return false;
    }
    return size <= BigSize
        || m_host.ask(u"Size to display is big - are you sure you want to do this?"_s);
}

void MemoryView::redisplay()
{
    m_rows.clear();
    m_rowOf.clear();
    const unsigned valid = std::min(m_size, m_debugger.getMemoryRange(m_space, m_address));
    m_debugger.dumpMemory(m_space, m_address, valid, m_dataSize, m_accessByDisplaySize, this);
    // What isn't shown any more is no longer compared.
    if (std::size_t(m_values.size()) > 2 * (valid / m_dataSize) + BigSize)
        m_values.clear();
}

void MemoryView::reset()
{
    m_rows.clear();
    m_rowOf.clear();
    m_values.clear();
}

QStringList MemoryView::formatDisplay() const
{
    QStringList heads = {u"Address"_s};
    for (unsigned i = 0; i < m_columns; ++i)
        heads << u'+' + QString::number(i * m_dataSize, 16);
    if (m_dataSize == 1)
        heads << u"ASCII"_s;
    return heads;
}

QString MemoryView::addressOf(const Row& row) const
{
    return u"0x%1"_s.arg(row.address, 2 * m_debugger.getAddressSizeInBytes(), 16, QChar(u'0'));
}

/// The digits of the largest value, with the sign of the smallest one.
int MemoryView::cellWidth() const
{
    const unsigned bits = m_dataSize * BitsPerByte;
    const quint64 largest = (quint64(1) << bits) - 1;
    if (m_radix == SignedDecimal)
        return int(QString::number(-qint64(largest / 2) - 1).size());
    return int(QString::number(largest, m_radix).size());
}

QString MemoryView::cellText(unsigned value) const
{
    const int base = m_radix & ~1;
    const QString digits = (m_radix & 1) != 0
        ? QString::number(signExtended(value, m_dataSize), base)
        : QString::number(value, base);
    const int width = cellWidth();
    return digits.rightJustified(width, base == UnsignedDecimal ? u' ' : u'0').right(width);
}

void MemoryView::addEntry(unsigned address, unsigned value)
{
    if (m_rows.empty() || m_rows.back().cells.size() >= m_columns) {
        m_rowOf.insert(address, m_rows.size());
        m_rows.push_back({address, {}, {}});
    }
    Row& row = m_rows.back();
    const auto known = m_values.constFind(address);
    const bool changed = known != m_values.cend() && *known != value;
    row.cells.push_back(
        {cellText(value), changed ? VariableViewItem::ChangedStyle : VariableViewItem::NoStyle});
    m_values.insert(address, value);
    if (m_dataSize == 1)
        row.ascii += QChar(value).isPrint() ? QChar(value) : QChar(u'.');
}

// Changing

bool MemoryView::onItemRenamed(std::size_t row, std::size_t cell, const QString& text)
{
    if (row >= m_rows.size() || cell >= m_rows[row].cells.size())
        return false;
    const int base = m_radix & ~1;
    const QString digits = text.trimmed();
    bool ok = false;
    qint64 value = digits.toLongLong(&ok, base);
    const qint64 largest = (qint64(1) << m_dataSize * BitsPerByte) - 1;
    const qint64 smallest = base == UnsignedDecimal ? -(largest / 2) - 1 : 0;
    ok = ok && value >= smallest && value <= largest;
    if (ok)
        m_debugger.setMemory(m_space, m_rows[row].address + unsigned(cell) * m_dataSize,
                             unsigned(value & largest), m_dataSize);
    redisplay();
    return ok;
}

void MemoryView::moveBy(qint64 bytes)
{
    const qint64 address =
        std::clamp<qint64>(qint64(m_address) + bytes, 0, std::numeric_limits<unsigned>::max());
    if (m_debugger.getMemoryRange(m_space, unsigned(address)) == 0)
        return;
    m_address = unsigned(address);
    m_addressText = u"0x%1"_s.arg(m_address, 0, 16);
    redisplay();
}

// Files

void MemoryView::loadFrom(const char* format, const QString& path)
{
    LoadFileFactory& factory = *LoadFileFactory::instance();
    const std::unique_ptr<LoadFileInterface> file(
        factory.create(path.toLocal8Bit().constData(), format));
    if (!file)
        throw HException("can't read " + path.toStdString());
    if (!file->hasLoadAddress())
        file->setLoadAddress(m_address);
    const LoadFileSections::List& sections = file->loadFileSections().sections();
    for (const auto& section : sections)
        if (section->length() > m_debugger.getMemoryRange(m_space, section->address()))
            throw HException(NoMemory);
    for (const auto& section : sections)
        m_debugger.setMemory(m_space, section->address(), section->length(), section->data(false));
    redisplay();
}

void MemoryView::saveTo(const char* format, const QString& path)
{
    if (m_size == 0 || m_size > m_debugger.getMemoryRange(m_space, m_address))
        throw HException(NoMemory);
    std::vector<unsigned char> bytes(m_size);
    m_debugger.getMemory(m_space, m_address, m_size, bytes.data());
    const std::unique_ptr<CodeBuffer> out = CodeBuffer::make(format, path.toStdString());
    out->setAddress(m_address);
    for (const unsigned char byte : bytes)
        out->addByte(byte);
    out->endRecord(0);
}
