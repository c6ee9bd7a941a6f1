#pragma once

#include "script/forth/FSFileSystem.h"

#include <QBuffer>
#include <QHash>

#include <cerrno>

/// Files that exist only here, of 1 MB at most.
class MemoryFiles : public FSFileSystem {
public:
    static constexpr qint64 Limit = 1 << 20;

    int open(const QString& name, QIODevice::OpenMode mode,
             std::unique_ptr<QIODevice>& device) override
    {
        const bool create = mode.testFlag(QIODevice::Truncate);
        if (name.isEmpty() || (!create && !m_files.contains(name)))
            return ENOENT;
        if (name.contains(u'/'))
            return EACCES;
        auto& bytes = m_files[name];
        if (create || !bytes)
            bytes = std::make_shared<QByteArray>();
        device = std::make_unique<File>(bytes);
        return device->open(mode & ~QIODevice::Truncate) ? 0 : EACCES;
    }
    int remove(const QString& name) override { return m_files.remove(name) ? 0 : ENOENT; }
    bool flush(QIODevice&) override { return true; }
    bool resize(QIODevice& device, qint64 size) override
    {
        if (size > Limit)
            return false;
        static_cast<File&>(device).buffer().resize(size, '\0');
        return true;
    }
    void put(const QString& name, const QByteArray& bytes)
    {
        m_files[name] = std::make_shared<QByteArray>(bytes);
    }

private:
    class File : public QBuffer {
    public:
        explicit File(std::shared_ptr<QByteArray> bytes) : m_bytes(std::move(bytes))
        {
            setBuffer(m_bytes.get());
        }

    protected:
        qint64 writeData(const char* data, qint64 size) override
        {
            return pos() + size > Limit ? -1 : QBuffer::writeData(data, size);
        }

    private:
        std::shared_ptr<QByteArray> m_bytes;
    };

    QHash<QString, std::shared_ptr<QByteArray>> m_files;
};
