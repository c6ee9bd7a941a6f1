#include "build/log/LineTracker.h"

LineTracker::LineTracker(const Path& path, bool keepsHistory, QObject* parent)
    : QObject(parent),
      m_path(path),
      m_keepsHistory(keepsHistory)
{
    setObjectName(QLatin1String("line-tracker"));
}

void LineTracker::track(int line) { m_lines.insert(line, line); }

void LineTracker::changed(int line, int delta)
{
    const LineTrackerDelta change{line, delta};
    if (m_keepsHistory)
        m_history.push_back(change);
    for (int& value : m_lines)
        value = computeLine(value, change);
}

int LineTracker::getLineNumber(int line) const
{
    const auto tracked = m_lines.find(line);
    if (tracked != m_lines.end())
        return *tracked;
    if (!m_keepsHistory)
        return -1;
    for (const LineTrackerDelta& change : m_history)
        line = computeLine(line, change);
    return line;
}

int LineTracker::computeLine(int value, const LineTrackerDelta& change)
{
    if (value == -1 || value < change.line)
        return value;
    const bool removed = change.count < 0 && value < change.line - change.count;
    return removed ? -1 : value + change.count;
}

void LineTracker::clear()
{
    m_history.clear();
    m_lines.clear();
}
