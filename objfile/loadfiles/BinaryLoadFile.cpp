#include "objfile/loadfiles/BinaryLoadFile.h"

#include "base/HException.h"

#include <cstdio>
#include <filesystem>
#include <limits>
#include <string>

BinaryLoadFile::BinaryLoadFile(const char* path)
{
    const std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(std::fopen(path, "rb"), std::fclose);
    if (!file)
        throw HException(std::string("cannot open ") + path);
    std::error_code error;
    const auto size = std::filesystem::file_size(path, error);
    if (error || size > std::numeric_limits<unsigned int>::max())
        throw HException(std::string("cannot read ") + path);
    m_bytes.resize(size);
    if (std::fread(m_bytes.data(), 1, m_bytes.size(), file.get()) != m_bytes.size())
        throw HException(std::string("cannot read ") + path);
}

void BinaryLoadFile::setLoadAddress(unsigned long address)
{
    const auto loadAddress = static_cast<unsigned int>(address);
    if (loadAddress == m_loadAddress)
        return;
    m_loadAddress = loadAddress;
    invalidateLoadFileSections();
}

bool BinaryLoadFile::createLoadFileSections()
{
    m_sections.add(std::make_unique<StandardLoadFileSection>(
        "data", m_loadAddress, static_cast<unsigned int>(m_bytes.size()), m_bytes.data()));
    return true;
}
