#pragma once

#include "base/Path.h"

#include <QMap>
#include <QObject>

#include <vector>

/// Lines that went in or out of a file.
struct LineTrackerDelta {
    /// The first line added or removed.
    int line;
    /// Negative for removed lines.
    int count;
};

/// Follows lines of one file through edits. All lines count from the same base, 1 in the build log.
class LineTracker : public QObject {
public:
    /// With `keepsHistory`, lines that were never tracked can be mapped too.
    explicit LineTracker(const Path& path, bool keepsHistory = false, QObject* parent = nullptr);

    const Path& filename() const { return m_path; }

    /// Follows a line from now on, from where it stands.
    void track(int line);
    /// `delta` lines were inserted in front of `line`, or that many removed from it on.
    void changed(int line, int delta);
    /// Where the line stands now; -1 if it was removed or is unknown.
    int getLineNumber(int line) const;
    /// Where one change takes a line.
    static int computeLine(int value, const LineTrackerDelta& change);
    void clear();

private:
    Path m_path;
    bool m_keepsHistory;
    std::vector<LineTrackerDelta> m_history; ///< newest last
    QMap<int, int> m_lines;
};
