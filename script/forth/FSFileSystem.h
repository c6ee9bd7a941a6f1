#pragma once

#include <QIODevice>
#include <QString>

#include <memory>

/// The files of the file words. Errors are the numbers of errno.
class FSFileSystem {
public:
    virtual ~FSFileSystem() = default;

    /// Opens a file; `mode` with Truncate makes it, or makes it empty. 0, or the error.
    virtual int open(const QString& name, QIODevice::OpenMode mode,
                     std::unique_ptr<QIODevice>& device) = 0;
    /// 0, or the error.
    virtual int remove(const QString& name) = 0;
    /// Brings what was written to a file of `open`. False if it can't be.
    virtual bool flush(QIODevice& device) = 0;
    /// Cuts or lengthens a file of `open`, with zeros. False if that isn't possible.
    virtual bool resize(QIODevice& device, qint64 size) = 0;

    /// The disk.
    static FSFileSystem& disk();
};
