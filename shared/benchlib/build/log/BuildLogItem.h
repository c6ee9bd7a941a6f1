#pragma once

#include "base/DiagnosticData.h"

#include <chrono>
#include <memory>
#include <optional>
#include <vector>

/// One line of the build log's task list: a message, or a group with what stands below it. Items
/// belong to their parent and are changed by BuildLogModel only.
class BuildLogItem {
public:
    using Time = std::chrono::milliseconds;

    enum class Icon { Blank, Progress, Success, Find, Note, Warning, Error, Fatal };

    /// Diagnostics of the item and of all that is below it. A fatal error is an error too.
    struct Counters {
        int fatalErrors = 0;
        int errors = 0;
        int warnings = 0;
        int notes = 0;
        int findResults = 0;

        void add(DiagnosticData::Level level);
        void subtract(const Counters& other);
    };

    /// What a rate counts.
    enum class RateUnit { Bytes, Files, Targets };

    BuildLogItem(const QString& text, Icon icon, unsigned flags);

    /// The model's root for a top-level item; null for the root.
    BuildLogItem* parent() const { return m_parent; }
    int childCount() const { return static_cast<int>(m_children.size()); }
    BuildLogItem* child(int row) const { return m_children[static_cast<std::size_t>(row)].get(); }
    /// The place among the parent's children.
    int row() const { return m_row; }
    /// True for the item itself and all that is below it.
    bool isWithin(const BuildLogItem* ancestor) const;

    /// The first column.
    const QString& text() const { return m_text; }
    /// The second column: the status, the counters that aren't zero, the time.
    const QString& statusText() const { return m_statusText; }
    /// "Completed" and the like; empty while the item isn't done.
    const QString& status() const { return m_status; }
    /// Elapsed time and rate; empty if the start time isn't recorded.
    const QString& timeText() const { return m_timeText; }
    Icon icon() const { return m_icon; }
    unsigned flags() const { return m_flags; }
    bool isDone() const { return m_done; }
    const Counters& counters() const { return m_counters; }
    std::optional<Time> startTime() const { return m_startTime; }
    /// 0 for an item without steps.
    int totalSteps() const { return m_totalSteps; }
    int progress() const { return m_progress; }

    /// The diagnostic of the item's line; of level 0 and without a message if there is none.
    const DiagnosticData& data() const { return m_data; }
    /// The index of the item's record; for an item without one, of the next record behind it.
    int recordIndex() const { return m_recordIndex; }

    static Icon iconForLevel(DiagnosticData::Level level);

private:
    friend class BuildLogModel;

    BuildLogItem* append(std::unique_ptr<BuildLogItem> child);
    /// Gives the status by the counters.
    void setDone(Time now);
    void update();
    void updateTime(Time now);
    Icon iconForCounters() const;

    BuildLogItem* m_parent = nullptr;
    std::vector<std::unique_ptr<BuildLogItem>> m_children;
    int m_row = 0;
    unsigned m_flags;
    Icon m_icon;
    bool m_done = false;
    int m_recordIndex = 0;
    int m_totalSteps = 0;
    int m_progress = 0;
    RateUnit m_rateUnit = RateUnit::Bytes;
    qint64 m_transferred = 0; ///< 0 for no rate
    Counters m_counters;
    std::optional<Time> m_startTime;
    QString m_text;
    QString m_status;
    QString m_statusText;
    QString m_timeText;
    DiagnosticData m_data;
};
