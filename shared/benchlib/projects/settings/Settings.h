#pragma once

#include <QMap>
#include <QString>

#include <cstdint>
#include <optional>

/// One entry of a settings file, and what this program did to it since the last sync.
struct Setting {
    enum class State { Unchanged, Changed, Removed };

    QString value;
    State state = State::Unchanged;
};

/// A settings file, shared by every running instance: each keeps the entries in memory, and sync()
/// merges its own changes into what the others wrote.
///
/// A file that is missing or can't be read is no error: there are no entries then. One that
/// couldn't be read is kept as PATH.bad when it is first replaced, or isn't replaced.
class Settings {
public:
    Settings() = default;

    /// Reads that file; entries of an earlier one go.
    void setPath(const QString& path);
    const QString& path() const { return m_path; }

    bool contains(const QString& key) const;
    /// The fallback for a key without an entry.
    QString readEntry(const QString& key, const QString& fallback = {}) const;
    void writeEntry(const QString& key, const QString& value);
    void removeEntry(const QString& key);

    /// True if there are changes that the file doesn't have.
    bool dirty() const { return m_dirty; }

    /// Writes changes, or takes in those of others. The file's folder is made if it is missing, and
    /// the file is replaced as a whole. After a failed write the changes wait for the next sync.
    void sync();

private:
    using Entries = QMap<QString, Setting>;

    /// Tells one version of a file from another: a time alone may be the same for both. All 0 for a
    /// missing file.
    struct Version {
        std::int64_t seconds = 0;
        std::int64_t nanoseconds = 0;
        std::uint64_t inode = 0;
        std::int64_t size = 0;

        static Version ofFile(const QString& path);
        static Version ofOpenFile(int descriptor);
        bool operator==(const Version&) const = default;
    };

    static void mergeChanges(Entries& fileEntries, const Entries& ownEntries);
    std::optional<Entries> load();
    bool save();

    QString m_path;
    Entries m_entries;
    Version m_version;
    bool m_dirty = false;
    bool m_unread = false; ///< there is a file, and the entries aren't from it
};
