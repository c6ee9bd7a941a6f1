#pragma once

#include "base/HException.h"

#include <cstdint>
#include <cstring>
#include <span>
#include <string_view>

/// Reads little-endian numbers and LEB128 from a span. Throws HException beyond its end.
class DwarfCursor {
public:
    explicit DwarfCursor(std::span<const std::uint8_t> bytes, std::size_t at = 0)
        : m_bytes(bytes),
          m_at(at)
    {
        if (at > bytes.size())
            fail();
    }

    std::size_t at() const { return m_at; }
    bool atEnd() const { return m_at >= m_bytes.size(); }

    std::uint64_t number(unsigned size)
    {
        need(size);
        std::uint64_t value = 0;
        for (unsigned i = size; i > 0; --i)
            value = value << 8 | m_bytes[m_at + i - 1];
        m_at += size;
        return value;
    }
    std::uint8_t u8() { return static_cast<std::uint8_t>(number(1)); }
    std::uint16_t u16() { return static_cast<std::uint16_t>(number(2)); }
    std::uint32_t u32() { return static_cast<std::uint32_t>(number(4)); }

    std::uint64_t uleb()
    {
        std::uint64_t value = 0;
        for (unsigned shift = 0;; shift += 7) {
            const std::uint8_t byte = u8();
            if (shift < 64)
                value |= std::uint64_t{byte & 0x7Fu} << shift;
            if ((byte & 0x80) == 0)
                return value;
        }
    }
    std::int64_t sleb()
    {
        std::uint64_t value = 0;
        unsigned shift = 0;
        std::uint8_t byte = 0;
        do {
            byte = u8();
            if (shift < 64)
                value |= std::uint64_t{byte & 0x7Fu} << shift;
            shift += 7;
        } while ((byte & 0x80) != 0);
        if (shift < 64 && (byte & 0x40) != 0)
            value |= ~std::uint64_t{0} << shift;
        return static_cast<std::int64_t>(value);
    }
    std::string_view text()
    {
        const auto* begin = reinterpret_cast<const char*>(m_bytes.data() + m_at);
        const std::size_t length = strnlen(begin, m_bytes.size() - m_at);
        need(length + 1);
        m_at += length + 1;
        return {begin, length};
    }
    std::span<const std::uint8_t> block(std::uint64_t size)
    {
        need(size);
        const auto result = m_bytes.subspan(m_at, static_cast<std::size_t>(size));
        m_at += static_cast<std::size_t>(size);
        return result;
    }
    void skip(std::uint64_t size) { block(size); }

private:
    void need(std::uint64_t size) const
    {
        if (size > m_bytes.size() - m_at)
            fail();
    }
    [[noreturn]] static void fail()
    {
        throw HException("the compiler's debug information cannot be read (it is cut off)");
    }

    std::span<const std::uint8_t> m_bytes;
    std::size_t m_at;
};
