#include "toolchain/common/OutputFile.h"

#include "base/HException.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>

namespace {

/// The rights that a plain creation would give; mkstemp gives fewer.
mode_t ordinaryMode()
{
    const mode_t mask = umask(0);
    umask(mask);
    return static_cast<mode_t>(0666) & ~mask;
}

} // namespace

OutputFile::OutputFile(const std::string& path) : m_target(path), m_temporary(path)
{
    namespace fs = std::filesystem;
    std::error_code ignored;
    if (fs::is_symlink(path, ignored)) {
        const fs::path resolved = fs::weakly_canonical(path, ignored);
        if (!ignored)
            m_temporary = m_target = resolved.string();
    }
    const fs::file_status status = fs::status(m_target, ignored);
    if (fs::is_directory(status))
        fail(EISDIR);
    m_direct = fs::exists(status) && !fs::is_regular_file(status);
    if (m_direct)
        return;
    m_temporary += ".XXXXXX";
    const int descriptor = mkstemp(m_temporary.data());
    if (descriptor < 0)
        fail(errno);
    fchmod(descriptor, ordinaryMode());
    close(descriptor);
}

OutputFile::~OutputFile()
{
    if (!m_direct && !m_committed)
        std::remove(m_temporary.c_str());
}

void OutputFile::write(std::string_view contents)
{
    std::FILE* file = std::fopen(m_temporary.c_str(), "wb");
    if (file == nullptr)
        fail(errno);
    const bool written = std::fwrite(contents.data(), 1, contents.size(), file) == contents.size();
    const int error = errno;
    if (std::fclose(file) != 0)
        fail(errno);
    if (!written)
        fail(error);
}

void OutputFile::commit()
{
    if (!m_direct && std::rename(m_temporary.c_str(), m_target.c_str()) != 0)
        fail(errno);
    m_committed = true;
}

void OutputFile::fail(int error) const
{
    throw HException("cannot write " + m_target + " (" + std::strerror(error) + ")");
}
