#pragma once

#include <cstddef>
#include <string>
#include <vector>

/// A range of bytes to read from.
class HByteStream {
public:
    HByteStream(const unsigned char* data, std::size_t size) : m_data(data), m_size(size) { }
    virtual ~HByteStream() = default;

    const unsigned char* data() const { return m_data; }
    std::size_t size() const { return m_size; }

protected:
    HByteStream() = default;

    const unsigned char* m_data = nullptr;
    std::size_t m_size = 0;
};

/// A file, read whole when opened. Throws HException with "can't open file " or "can't read file "
/// and the path.
class HFileInputByteStream final : public HByteStream {
public:
    explicit HFileInputByteStream(const std::string& path);
    HFileInputByteStream(const HFileInputByteStream&) = delete;
    HFileInputByteStream& operator=(const HFileInputByteStream&) = delete;

private:
    std::vector<unsigned char> m_bytes;
};
