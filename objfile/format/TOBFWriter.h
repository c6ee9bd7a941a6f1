#pragma once

#include "base/HString.h"
#include "objfile/model/TOBFTag.h"

#include <cstdint>
#include <vector>

/// Turns a module into the bytes of the native object format: `module->externalize(&writer,
/// false)`, then `finish()`, then `data()`.
class TOBFWriter {
public:
    /// A number: one byte from 0 to 7, otherwise LITX with the fewest bytes, of 1 to 8.
    void externalizeLiteral(unsigned long long value);
    /// A number of a signed 32-bit field.
    void externalizeSigned(std::int32_t value)
    {
        externalizeLiteral(static_cast<unsigned long long>(static_cast<std::int64_t>(value)));
    }
    void externalizeString(const char* text, int length);
    /// A null pointer is written as NULL.
    void externalizeString(const char* text);
    void externalizeString(const HString* text);
    void externalizeTag(TOBFTag tag) { m_code.push_back(tag); }
    void externalizeTag(int tag) { m_code.push_back(static_cast<unsigned char>(tag)); }

    /// Puts the string pool and the records together.
    void finish();
    const std::vector<unsigned char>& data() const { return m_code; }

    unsigned newAlias() { return m_nextAlias++; }
    std::int32_t newMarker() { return m_nextMarker++; }
    std::int32_t stackAdjustment() const { return m_stackAdjustment; }
    void setStackAdjustment(std::int32_t adjustment) { m_stackAdjustment = adjustment; }

private:
    unsigned m_nextAlias = 0;
    std::int32_t m_nextMarker = 0;
    std::vector<unsigned char> m_code;
    std::vector<unsigned char> m_strings;
    std::int32_t m_stackAdjustment = 0;
};
