#include "base/HString.h"

#include <sys/mman.h>

#include <algorithm>
#include <cctype>
#include <cstdlib>
#include <functional>
#include <new>
#include <vector>

namespace {

/// One span of address space, of which pages come into use as records are made. A span of its own
/// keeps the records in the order of their making.
class OrderedArena {
public:
    void* allocate(std::size_t size)
    {
        size = (size + 7) & ~std::size_t{7};
        if (size > m_left)
            reserve(size);
        void* result = m_next;
        m_next += size;
        m_left -= size;
        return result;
    }

private:
    void reserve(std::size_t atLeast)
    {
        const std::size_t size = std::max(std::size_t{1} << 30, atLeast);
        void* span = mmap(nullptr, size, PROT_READ | PROT_WRITE,
                          MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
        if (span == MAP_FAILED) {
            span = std::malloc(std::max(std::size_t{1} << 16, atLeast));
            if (span == nullptr)
                throw std::bad_alloc();
            m_left = std::max(std::size_t{1} << 16, atLeast);
        } else {
            m_left = size;
        }
        m_next = static_cast<char*>(span);
    }

    char* m_next = nullptr;
    std::size_t m_left = 0;
};

} // namespace

/// The process-wide table: chained hashing, doubled when as many records as buckets are held.
class HStringTable {
public:
    HString* find(std::string_view text)
    {
        const std::size_t hash = std::hash<std::string_view>{}(text);
        for (HString* it = m_buckets[hash & (m_buckets.size() - 1)]; it != nullptr; it = it->m_next)
            if (it->m_hash == hash && it->view() == text)
                return it;
        return add(text, hash);
    }

    static HStringTable& instance()
    {
        static auto* table = new HStringTable;
        return *table;
    }

private:
    HString* add(std::string_view text, std::size_t hash)
    {
        if (m_count == m_buckets.size())
            grow();
        char* block = static_cast<char*>(m_arena.allocate(sizeof(HString) + text.size() + 1));
        char* copy = block + sizeof(HString);
        std::copy(text.begin(), text.end(), copy);
        copy[text.size()] = 0;
        HString*& bucket = m_buckets[hash & (m_buckets.size() - 1)];
        bucket = new (block) HString(bucket, copy, text.size(), hash);
        ++m_count;
        return bucket;
    }

    void grow()
    {
        std::vector<HString*> larger(m_buckets.size() * 2);
        for (HString* it : m_buckets) {
            while (it != nullptr) {
                HString* next = it->m_next;
                HString*& bucket = larger[it->m_hash & (larger.size() - 1)];
                it->m_next = bucket;
                bucket = it;
                it = next;
            }
        }
        m_buckets.swap(larger);
    }

    std::vector<HString*> m_buckets = std::vector<HString*>(4096);
    std::size_t m_count = 0;
    OrderedArena m_arena;
};

namespace {

std::string modified(std::string_view text, HString::Modifier modifier)
{
    std::string result(text);
    const int letterCase = modifier & 0x0F;
    const int separator = modifier & 0xF0;
    for (char& c : result) {
        if (letterCase == HString::UpperCase)
            c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
        else if (letterCase == HString::LowerCase)
            c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
        if (separator == HString::BackslashToSlash && c == '\\')
            c = '/';
        else if (separator == HString::SlashToBackslash && c == '/')
            c = '\\';
    }
    return result;
}

HString* internModified(std::string_view text, HString::Modifier modifier)
{
    if (modifier == HString::Unchanged)
        return HStringTable::instance().find(text);
    return HStringTable::instance().find(modified(text, modifier));
}

} // namespace

HString* HString::intern(const char* text, Modifier modifier)
{
    return internModified(text, modifier);
}

HString* HString::intern(const char* text, int length, Modifier modifier)
{
    return internModified({text, static_cast<std::size_t>(length)}, modifier);
}

HString* HString::intern(const std::string& text, Modifier modifier)
{
    return internModified(text, modifier);
}

HString* HString::intern(std::string_view text) { return HStringTable::instance().find(text); }

HString* HString::intern(long number) { return intern(std::to_string(number)); }
