#pragma once

#include <QByteArrayView>
#include <QString>

/// Writes a file anew: beside it first, so that what stood in it is there until the new content is
/// whole. Mode and owner stay, a symbolic link goes on to point to its file, and a file with other
/// links or of an owner that can't be given is written in place once the copy beside it is whole.
/// What isn't a regular file, such as a device, is written to.
class FileReplacement {
public:
    explicit FileReplacement(const QString& path);
    ~FileReplacement();
    FileReplacement(const FileReplacement&) = delete;
    FileReplacement& operator=(const FileReplacement&) = delete;

    /// False with errorText() set if the file can't be made.
    bool open();
    bool write(QByteArrayView bytes);
    /// Puts the new content into the place of the old. After a failure the old content stands.
    bool commit();
    /// What went wrong, in the system's words.
    const QString& errorText() const { return m_error; }

private:
    bool fail();
    bool openBeside();
    bool keepsOwner() const;
    bool copyInPlace();
    void discard();

    QByteArray m_path;      ///< with links resolved
    QByteArray m_temporary; ///< empty when written in place from the start
    int m_descriptor = -1;
    bool m_exists = false;
    bool m_inPlace = false;
    unsigned m_mode = 0;
    unsigned m_owner = 0;
    unsigned m_group = 0;
    QString m_error;
};
