#pragma once

#include "build/log/LineTracker.h"

/// Line trackers by file.
class FileLineTracker : public QObject {
public:
    /// With `keepsHistory`, lines that were never tracked can be mapped in every file that has a
    /// tracked line or a change.
    explicit FileLineTracker(const QString& name, bool keepsHistory = false,
                             QObject* parent = nullptr);

    void track(const Path& path, int line);
    void changed(const Path& path, int line, int delta);
    /// -1 for a line that was removed or is unknown.
    int getLineNumber(const Path& path, int line) const;
    void clear();

private:
    /// Where the file's tracker stands or belongs.
    std::size_t position(const Path& path) const;
    LineTracker* find(const Path& path) const;
    LineTracker* findOrMake(const Path& path);

    bool m_keepsHistory;
    std::vector<LineTracker*> m_trackers; ///< sorted by path; children of this object
};
