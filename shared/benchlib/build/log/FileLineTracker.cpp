#include "build/log/FileLineTracker.h"

#include <algorithm>

namespace {

struct LineTrackerLess {
    bool operator()(const LineTracker* tracker, const Path& path) const
    {
        return tracker->filename() < path;
    }
};

} // namespace

FileLineTracker::FileLineTracker(const QString& name, bool keepsHistory, QObject* parent)
    : QObject(parent),
      m_keepsHistory(keepsHistory)
{
    setObjectName(name);
}

void FileLineTracker::track(const Path& path, int line) { findOrMake(path)->track(line); }

void FileLineTracker::changed(const Path& path, int line, int delta)
{
    if (LineTracker* tracker = m_keepsHistory ? findOrMake(path) : find(path))
        tracker->changed(line, delta);
}

int FileLineTracker::getLineNumber(const Path& path, int line) const
{
    const LineTracker* tracker = find(path);
    return tracker != nullptr ? tracker->getLineNumber(line) : -1;
}

void FileLineTracker::clear()
{
    qDeleteAll(m_trackers);
    m_trackers.clear();
}

std::size_t FileLineTracker::position(const Path& path) const
{
    const auto at = std::lower_bound(m_trackers.begin(), m_trackers.end(), path, LineTrackerLess());
    return static_cast<std::size_t>(at - m_trackers.begin());
}

LineTracker* FileLineTracker::find(const Path& path) const
{
    const std::size_t at = position(path);
    return at < m_trackers.size() && m_trackers[at]->filename() == path ? m_trackers[at] : nullptr;
}

LineTracker* FileLineTracker::findOrMake(const Path& path)
{
    if (LineTracker* tracker = find(path))
        return tracker;
    auto* tracker = new LineTracker(path, m_keepsHistory, this);
    m_trackers.insert(m_trackers.begin() + static_cast<std::ptrdiff_t>(position(path)), tracker);
    return tracker;
}
