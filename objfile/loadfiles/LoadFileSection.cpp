#include "objfile/loadfiles/LoadFileSection.h"

#include <algorithm>
#include <cstring>

bool operator==(const LoadFileSectionInterface& a, const LoadFileSectionInterface& b)
{
    if (a.address() != b.address() || a.length() != b.length())
        return false;
    const unsigned char* left = a.data(false);
    const unsigned char* right = b.data(false);
    if (left == nullptr || right == nullptr)
        return left == right;
    return std::equal(left, left + a.length(), right);
}

StandardLoadFileSection::StandardLoadFileSection(const char* name, unsigned int address,
                                                 unsigned int length, unsigned char* data)
    : m_name(name),
      m_address(address),
      m_length(length),
      m_data(data)
{
}

const unsigned char* StandardLoadFileSection::data(bool patched) const
{
    return patched && m_patch ? m_patch.get() : m_data;
}

unsigned char* StandardLoadFileSection::createPatch()
{
    if (!m_patch) {
        m_patch = std::make_unique<unsigned char[]>(m_length);
        if (m_data != nullptr)
            std::memcpy(m_patch.get(), m_data, m_length);
    }
    return m_patch.get();
}

void StandardLoadFileSection::setBytes(unsigned char* data, unsigned int length)
{
    m_data = data;
    m_length = length;
}

ExpandingLoadFileSection::ExpandingLoadFileSection(const char* name, unsigned int address)
    : StandardLoadFileSection(name, address, 0, nullptr)
{
}

unsigned char* ExpandingLoadFileSection::expand(unsigned int n)
{
    const std::size_t before = m_bytes.size();
    m_bytes.resize(before + n);
    setBytes(m_bytes.data(), static_cast<unsigned int>(m_bytes.size()));
    return m_bytes.data() + before;
}
