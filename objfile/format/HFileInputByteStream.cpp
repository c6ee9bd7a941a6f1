#include "objfile/format/HFileInputByteStream.h"

#include "base/HException.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

/// A file descriptor that is closed at the end.
struct Descriptor {
    explicit Descriptor(int number) : number(number) { }
    ~Descriptor()
    {
        if (number >= 0)
            close(number);
    }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;

    const int number;
};

bool readWhole(int file, unsigned char* to, std::size_t size)
{
    while (size > 0) {
        const ssize_t count = read(file, to, size);
        if (count <= 0)
            return false;
        to += count;
        size -= static_cast<std::size_t>(count);
    }
    return true;
}

} // namespace

HFileInputByteStream::HFileInputByteStream(const std::string& path)
{
    const Descriptor file(open(path.c_str(), O_RDONLY | O_CLOEXEC));
    if (file.number < 0)
        throw HException("can't open file " + path);
    struct stat info = {};
    if (fstat(file.number, &info) != 0 || !S_ISREG(info.st_mode))
        throw HException("can't read file " + path);
    m_bytes.resize(static_cast<std::size_t>(info.st_size));
    if (!readWhole(file.number, m_bytes.data(), m_bytes.size()))
        throw HException("can't read file " + path);
    m_data = m_bytes.data();
    m_size = m_bytes.size();
}
