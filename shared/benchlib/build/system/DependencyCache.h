#pragma once

#include "build/system/FileTimes.h"

#include <QByteArray>
#include <QHash>
#include <QStringList>

/// What objects were made from, by the object's absolute path. An entry holds as long as its object
/// has the time that it had.
///
/// The entries of a project are kept in a file beside its objects, so that a program that was just
/// started need not open each object. The file may be missing, old or damaged: what it doesn't tell
/// is read from the objects.
class DependencyCache {
public:
    /// False if nothing is known of the object as it is.
    bool find(const QString& object, FileTime time, QStringList& files) const;
    void insert(const QString& object, FileTime time, const QStringList& files);
    void remove(const QString& object) { m_entries.remove(object); }

    /// Takes in a file's entries, once; what is known already stays.
    void load(const QString& path);
    /// Writes the entries of these objects, if any has changed since they were last written or
    /// read.
    void save(const QString& path, const QStringList& objects);

    QByteArray toBytes(const QStringList& objects) const;
    /// False, with nothing taken in, for bytes that aren't a whole file.
    bool addBytes(const QByteArray& bytes);

private:
    struct Entry {
        FileTime time;
        QStringList files;
    };

    QHash<QString, Entry> m_entries;
    QStringList m_loaded; ///< paths of files that were taken in
    bool m_changed = false;
};
