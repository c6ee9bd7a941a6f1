#include "objfile/model/TOBFInsn.h"

#include "objfile/model/TOBFExpr.h"
#include "objfile/model/TOBFFragment.h"

#include <cstdio>
#include <cstring>

std::string TOBFInsn::printPC()
{
    char text[16];
    std::snprintf(text, sizeof text, "%04X", static_cast<unsigned>(m_pc));
    return text;
}

std::string TOBFInsn::printOpCode()
{
    std::string result;
    for (int i = 0; i < m_byteCount; ++i) {
        char text[4];
        std::snprintf(text, sizeof text, "%02X", m_bytes[i]);
        result += text;
    }
    return result;
}

int TOBFInsn::recode(std::list<TOBFInsn*>&, std::list<TOBFInsn*>::iterator&) { return 0; }

void TOBFInsn::markReachable(bool reachable)
{
    if (!mark(reachable))
        return;
    if (m_fragment != nullptr)
        m_fragment->markReachable(reachable);
    for (TOBFExpr* operand : m_operands)
        if (operand != nullptr)
            operand->markReachable(reachable);
}

void TOBFInsn::appendBytes(const unsigned char* bytes, int count)
{
    if (m_byteCapacity - m_byteCount < count) {
        int capacity = m_byteCapacity == 0 ? 8 : m_byteCapacity;
        while (capacity - m_byteCount < count)
            capacity *= 2;
        auto* larger = static_cast<unsigned char*>(
            Pool::currentPool()->allocate(static_cast<unsigned>(capacity)));
        if (m_byteCount > 0)
            std::memcpy(larger, m_bytes, static_cast<std::size_t>(m_byteCount));
        m_bytes = larger;
        m_byteCapacity = capacity;
    }
    if (count > 0)
        std::memcpy(m_bytes + m_byteCount, bytes, static_cast<std::size_t>(count));
    m_byteCount += count;
}

void TOBFInsn::encodeByte(unsigned value)
{
    const auto byte = static_cast<unsigned char>(value);
    appendBytes(&byte, 1);
}

void TOBFInsn::encodeWord(unsigned value, int count, bool bigEndian)
{
    if (!bigEndian) {
        for (int i = 0; i < count; ++i)
            encodeByte(i < 4 ? value >> (8 * i) : 0);
    } else if (count >= 1 && count <= 4) {
        for (int i = count - 1; i >= 0; --i)
            encodeByte(value >> (8 * i));
    }
}
