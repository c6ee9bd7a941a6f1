#pragma once

#include "base/DiagnosticData.h"

#include <vector>

class BuildLogItem;

/// A diagnostic of the build log with its item in the task list. Its row in the summary list has
/// the same index as the record.
struct DiagnosticInfo : DiagnosticData {
    BuildLogItem* item = nullptr;
};

/// The diagnostics of a build log in the order of their arrival. An index of -1 means none.
class DiagnosticRecords {
public:
    bool isEmpty() const { return m_records.empty(); }
    int count() const { return static_cast<int>(m_records.size()); }
    bool has(int index) const { return index >= 0 && index < count(); }
    const DiagnosticInfo& at(int index) const { return m_records[static_cast<std::size_t>(index)]; }

    void append(const DiagnosticInfo& record) { m_records.push_back(record); }
    void removeLast() { m_records.pop_back(); }
    void clear() { m_records.clear(); }

    /// The first record of exactly that level from index `from` on; if there is none, the first of
    /// all of the level below, and so on down to find results.
    int findNextDiagnosticAt(int level, int from) const;
    /// The mirror: the last of that level up to `from`, then the last of all of the level below.
    int findPreviousDiagnosticAt(int level, int from) const;

private:
    std::vector<DiagnosticInfo> m_records;
};
