#include "editor/document/FileReplacement.h"

#include <QFile>
#include <QFileInfo>

#include <array>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

bool writeAll(int descriptor, QByteArrayView bytes)
{
    while (!bytes.isEmpty()) {
        const ssize_t written =
            ::write(descriptor, bytes.data(), static_cast<std::size_t>(bytes.size()));
        if (written < 0 && errno == EINTR)
            continue;
        if (written <= 0)
            return false;
        bytes = bytes.sliced(written);
    }
    return true;
}

/// What umask leaves of rw-rw-rw-.
mode_t modeOfNewFiles()
{
    const mode_t mask = ::umask(0);
    ::umask(mask);
    return 0666 & ~mask;
}

} // namespace

FileReplacement::FileReplacement(const QString& path)
{
    const QString resolved = QFileInfo(path).canonicalFilePath();
    m_path = QFile::encodeName(resolved.isEmpty() ? path : resolved);
}

FileReplacement::~FileReplacement() { discard(); }

bool FileReplacement::fail()
{
    m_error = QString::fromLocal8Bit(std::strerror(errno));
    discard();
    return false;
}

bool FileReplacement::open()
{
    struct stat status = {};
    m_exists = ::stat(m_path.constData(), &status) == 0;
    m_mode = m_exists ? status.st_mode & 07777u : modeOfNewFiles();
    m_owner = status.st_uid;
    m_group = status.st_gid;
    m_inPlace = m_exists && status.st_nlink > 1;
    const bool isFile = !m_exists || S_ISREG(status.st_mode);
    if (isFile && openBeside())
        return true;
    // A folder that takes no new files may still hold one that can be written.
    if (isFile && (!m_exists || (errno != EACCES && errno != EPERM && errno != EROFS)))
        return fail();
    m_descriptor = ::open(m_path.constData(), O_WRONLY | O_TRUNC | O_CLOEXEC);
    return m_descriptor >= 0 || fail();
}

bool FileReplacement::openBeside()
{
    QByteArray name = m_path + ".XXXXXX";
    m_descriptor = ::mkostemp(name.data(), O_CLOEXEC);
    if (m_descriptor < 0)
        return false;
    m_temporary = name;
    if (m_exists && !keepsOwner())
        m_inPlace = true;
    return ::fchmod(m_descriptor, static_cast<mode_t>(m_mode)) == 0 || fail();
}

bool FileReplacement::keepsOwner() const
{
    struct stat status = {};
    if (::fstat(m_descriptor, &status) != 0)
        return false;
    return (status.st_uid == m_owner && status.st_gid == m_group)
        || ::fchown(m_descriptor, m_owner, m_group) == 0;
}

bool FileReplacement::write(QByteArrayView bytes)
{
    return writeAll(m_descriptor, bytes) || fail();
}

bool FileReplacement::commit()
{
    // File systems and devices that can't synchronise are no reason to lose the text.
    if (::fsync(m_descriptor) != 0 && errno != EINVAL && errno != ENOTSUP && errno != EROFS)
        return fail();
    if (m_temporary.isEmpty()) {
        const int closed = ::close(m_descriptor);
        m_descriptor = -1;
        return closed == 0 || fail();
    }
    if (m_inPlace)
        return copyInPlace();
    const int closed = ::close(m_descriptor);
    m_descriptor = -1;
    if (closed != 0 || ::rename(m_temporary.constData(), m_path.constData()) != 0)
        return fail();
    m_temporary.clear();
    return true;
}

/// From the copy beside the file, which stays if that fails half-way.
bool FileReplacement::copyInPlace()
{
    const int source = ::open(m_temporary.constData(), O_RDONLY | O_CLOEXEC);
    if (source < 0)
        return fail();
    const int target = ::open(m_path.constData(), O_WRONLY | O_CLOEXEC);
    if (target < 0) {
        const int error = errno;
        ::close(source);
        errno = error;
        return fail();
    }
    std::array<char, 65536> block;
    ssize_t size = 0;
    off_t total = 0;
    bool good = true;
    while (good && (size = ::read(source, block.data(), block.size())) > 0) {
        good = writeAll(target, {block.data(), static_cast<qsizetype>(size)});
        total += size;
    }
    good = good && size == 0 && ::ftruncate(target, total) == 0;
    const int error = errno;
    ::close(source);
    good = ::close(target) == 0 && good;
    if (good) {
        discard();
        return true;
    }
    m_error = QString::fromLocal8Bit(std::strerror(error)) + QLatin1String("; the text is in ")
        + QFile::decodeName(m_temporary);
    m_temporary.clear();
    discard();
    return false;
}

void FileReplacement::discard()
{
    if (m_descriptor >= 0)
        ::close(m_descriptor);
    m_descriptor = -1;
    if (!m_temporary.isEmpty())
        ::unlink(m_temporary.constData());
    m_temporary.clear();
}
