#include "script/forth/FSFileSystem.h"

#include <QFile>

#include <cerrno>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

class Disk : public FSFileSystem {
public:
    int open(const QString& name, QIODevice::OpenMode mode,
             std::unique_ptr<QIODevice>& device) override
    {
        const int descriptor = ::open(QFile::encodeName(name).constData(), flags(mode), 0666);
        if (descriptor < 0)
            return errno;
        struct stat status = {};
        auto file = std::make_unique<QFile>(name);
        if (fstat(descriptor, &status) != 0 || S_ISDIR(status.st_mode)
            || !file->open(descriptor, mode & ~QIODevice::Truncate, QFile::AutoCloseHandle)) {
            ::close(descriptor);
            return EISDIR;
        }
        device = std::move(file);
        return 0;
    }

    int remove(const QString& name) override
    {
        return ::unlink(QFile::encodeName(name).constData()) == 0 ? 0 : errno;
    }

    bool flush(QIODevice& device) override
    {
        return !device.isWritable() || static_cast<QFile&>(device).flush();
    }

    bool resize(QIODevice& device, qint64 size) override
    {
        auto& file = static_cast<QFile&>(device);
        return file.flush() && file.resize(size);
    }

private:
    static int flags(QIODevice::OpenMode mode)
    {
        int flags = O_CLOEXEC | O_NOCTTY;
        if ((mode & QIODevice::ReadWrite) == QIODevice::ReadWrite)
            flags |= O_RDWR;
        else if (mode & QIODevice::WriteOnly)
            flags |= O_WRONLY;
        return mode & QIODevice::Truncate ? flags | O_CREAT | O_TRUNC : flags;
    }
};

} // namespace

FSFileSystem& FSFileSystem::disk()
{
    static Disk disk;
    return disk;
}
