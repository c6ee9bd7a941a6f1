#include "toolchain/common/TemporaryFile.h"

#include "base/HException.h"

#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>

TemporaryFile::TemporaryFile(const std::string& ending)
{
    const char* folder = std::getenv("TMPDIR");
    m_path = std::string(folder != nullptr && *folder != 0 ? folder : "/tmp") + "/gantry-XXXXXX"
        + ending;
    const int file = mkstemps(m_path.data(), static_cast<int>(ending.size()));
    if (file < 0)
        throw HException("cannot write " + m_path + " (" + std::strerror(errno) + ")");
    close(file);
}

TemporaryFile::~TemporaryFile() { unlink(m_path.c_str()); }
