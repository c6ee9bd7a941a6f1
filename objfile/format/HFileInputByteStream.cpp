#include "objfile/format/HFileInputByteStream.h"

#include "base/HException.h"

#include <sys/stat.h>

#include <cstdio>
#include <memory>

HFileInputByteStream::HFileInputByteStream(const std::string& path)
{
    const std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(std::fopen(path.c_str(), "rb"),
                                                               std::fclose);
    if (file == nullptr)
        throw HException("can't open file " + path);
    struct stat info = {};
    if (fstat(fileno(file.get()), &info) != 0 || !S_ISREG(info.st_mode))
        throw HException("can't read file " + path);
    m_bytes.resize(static_cast<std::size_t>(info.st_size));
    if (std::fread(m_bytes.data(), 1, m_bytes.size(), file.get()) != m_bytes.size())
        throw HException("can't read file " + path);
    m_data = m_bytes.data();
    m_size = m_bytes.size();
}
