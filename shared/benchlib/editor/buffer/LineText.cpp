#include "editor/buffer/LineText.h"

#include <algorithm>
#include <cstring>
#include <utility>

namespace {

void copyUnits(char16_t* to, const char16_t* from, qsizetype count)
{
    if (count > 0)
        std::memmove(to, from, static_cast<std::size_t>(count) * sizeof(char16_t));
}

} // namespace

LineText LineText::referringTo(QStringView text)
{
    LineText result;
    // Never written through: whoever changes a line without a capacity of its own copies it first.
    result.m_data = const_cast<char16_t*>(text.utf16());
    result.m_length = static_cast<int>(std::min(text.size(), MaximumLength));
    return result;
}

void LineText::assign(QStringView text) { replace(0, m_length, text); }

void LineText::replace(int position, int length, QStringView text)
{
    position = std::clamp(position, 0, m_length);
    length = std::clamp(length, 0, m_length - position);
    const int kept = m_length - length;
    const int added = static_cast<int>(std::min<qsizetype>(text.size(), MaximumLength - kept));
    const int newLength = kept + added;
    const char16_t* tail = m_data + position + length;
    const int tailLength = m_length - position - length;

    const bool isOwnPart = text.utf16() >= m_data && text.utf16() < m_data + m_length;
    if (newLength > m_capacity || isOwnPart) {
        // Some room for typing; a long line grows in proportion, so that appending stays linear.
        const int capacity = newLength + 8 + newLength / 8;
        char16_t* data = new char16_t[static_cast<std::size_t>(capacity)];
        copyUnits(data, m_data, position);
        copyUnits(data + position, text.utf16(), added);
        copyUnits(data + position + added, tail, tailLength);
        release();
        m_data = data;
        m_capacity = capacity;
    } else {
        copyUnits(m_data + position + added, tail, tailLength);
        copyUnits(m_data + position, text.utf16(), added);
    }
    m_length = newLength;
}

void LineText::release()
{
    if (m_capacity > 0)
        delete[] m_data;
}

void LineText::swap(LineText& other) noexcept
{
    std::swap(m_data, other.m_data);
    std::swap(m_length, other.m_length);
    std::swap(m_capacity, other.m_capacity);
}
