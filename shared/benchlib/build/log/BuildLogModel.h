#pragma once

#include "build/log/BuildLogFlags.h"
#include "build/log/BuildLogItem.h"
#include "build/log/DiagnosticParser.h"
#include "build/log/DiagnosticRecords.h"
#include "build/log/FileLineTracker.h"

#include <QObject>
#include <QStringList>

#include <functional>

/// What the user sees of a build, without its drawing: a tree of groups and messages, the summary
/// of the diagnostics alone, and the raw text. Lines of tools become records that lead to source
/// lines.
///
/// The main log serves the build; others serve an external tool, a search or a compilation each.
///
/// What processOutput keeps is bounded by Options::outputLimit; beyond, lines are still counted in
/// the groups.
class BuildLogModel : public QObject {
    Q_OBJECT

public:
    enum class Kind { Main, Other };
    enum class CycleMode {
        BySeverity, ///< all fatal errors, then all errors, warnings, notes, find results
        ByArrival,
    };
    struct Options {
        /// Environment/Build/Show Unparsed Error Output: lines as the tool wrote them.
        bool showUnparsedErrorOutput = false;
        /// Text Editor/Diagnostic Cycle Mode
        CycleMode diagnosticCycleMode = CycleMode::BySeverity;
        /// Characters of tool output that are kept, each line counted as 100 more.
        qint64 outputLimit = 32'000'000;
    };
    /// A monotonic time.
    using Clock = std::function<BuildLogItem::Time()>;

    /// A row of the summary list.
    struct SummaryRow {
        QString severity;
        QString file; ///< without its folder
        QString message;
        BuildLogItem::Icon icon;
    };

    explicit BuildLogModel(Kind kind, QObject* parent = nullptr);
    ~BuildLogModel() override;

    bool isMain() const { return m_kind == Kind::Main; }
    Options& options() { return m_options; }
    void setClock(const Clock& clock) { m_clock = clock; }

    /// Takes the parser over. Without one no line is a diagnostic.
    void setParser(std::unique_ptr<DiagnosticParser> parser) { m_parser = std::move(parser); }
    DiagnosticParser* parser() const { return m_parser.get(); }

    /// The directory that relative paths in the lines of tools count from.
    void setWorkingDirectory(const Path& path) { m_workingDirectory = path; }
    const Path& workingDirectory() const { return m_workingDirectory; }

    BuildLogItem* beginGroup(const QString& title, unsigned flags = 0);
    /// A title that isn't empty becomes a line of the raw text. Does nothing more without a group.
    void endGroup(const QString& title = {});
    /// Removes the current group with all it holds.
    void cancelGroup();
    /// Null outside of all groups.
    BuildLogItem* currentGroup() const;

    BuildLogItem* addMessage(const QString& text, unsigned flags = 0);
    BuildLogItem* addSuccess(const QString& text, unsigned flags = 0);
    BuildLogItem* addNote(const QString& text, unsigned flags = 0);
    BuildLogItem* addWarning(const QString& text, unsigned flags = 0);
    BuildLogItem* addError(const QString& text, unsigned flags = 0);
    /// A record that the caller already has, such as a find result.
    BuildLogItem* addResult(const DiagnosticData& data, unsigned flags = 0);
    /// A line of a tool.
    void processOutput(const QString& line);

    /// The steps of the current group.
    void setTotalSteps(int count);
    /// Of any group of this log; the group's progress starts from zero when the total is new.
    void setTotalSteps(BuildLogItem* item, int count);
    void resetTotalSteps() { setTotalSteps(0); }
    /// Of the innermost group that has steps.
    void setProgress(int step);
    void nextStep();
    /// What the current group has transferred since its beginning, shown as a rate.
    void setTransferred(qint64 count, BuildLogItem::RateUnit unit);
    /// Brings the times of the groups that are open up to date.
    void updateTimes();

    /// With immediate update, what changes at the top level is drawn at once (updateNow).
    void setImmediateUpdate(bool immediate) { m_immediateUpdate = immediate; }
    bool immediateUpdate() const { return m_immediateUpdate; }

    /// The counters of the first top-level item.
    int errors() const { return firstCounters().errors; }
    int warnings() const { return firstCounters().warnings; }
    int notes() const { return firstCounters().notes; }

    /// The invisible root, whose children are the top-level items.
    const BuildLogItem* root() const { return m_root.get(); }
    const DiagnosticRecords& records() const { return m_records; }
    SummaryRow summaryRow(int index) const;
    /// The raw text, one entry a line.
    const QStringList& output() const { return m_output; }

    /// Read all records in turn; false at the end.
    bool getFirstDiagnostic(DiagnosticData& data);
    bool getNextDiagnostic(DiagnosticData& data);

    /// The current record, -1 for none.
    int context() const { return m_context; }
    void setContext(int index);
    /// The item that the view shows as selected; null for none.
    void setSelectedItem(BuildLogItem* item) { m_selectedItem = item; }
    BuildLogItem* selectedItem() const { return m_selectedItem; }

    /// The text of the selected item.
    QString copy() const;
    /// The texts of all items, depth first, one a line.
    QString copyAll() const;

public slots:
    void locateNext();
    void locatePrevious();
    void locateResult(const BuildLogItem* item);
    void clear();
    void top() { emit topRequested(); }
    /// An editor inserted `delta` lines in front of a 1-based line, or removed as many from it on.
    void fileLinesChanged(const Path& path, int line, int delta);

signals:
    void itemAboutToBeAdded(const BuildLogItem* parent);
    void itemAdded(BuildLogItem* item);
    void itemChanged(BuildLogItem* item);
    void itemAboutToBeRemoved(BuildLogItem* item);
    void itemRemoved(const BuildLogItem* parent);
    void summaryRowAdded(int index);
    /// Rows from `first` on are gone.
    void summaryRowsRemoved(int first);
    void outputAdded(const QString& line);
    void cleared();
    void topRequested();
    /// A top-level item is to be drawn at once.
    void updateNow(BuildLogItem* item);
    /// The record to show as selected in both lists; -1 for none.
    void contextChanged(int index);

    /// Where to go; with an empty path there is a message only.
    void locateResult(const DiagnosticData& data);
    void clearDiagnostic();
    void message(const QString& text);
    void error(const QString& text);
    void warning(const QString& text);
    void note(const QString& text);

    /// The main log only.
    void buildErrorCounts(int errors, int warnings, int notes);

private:
    using ItemOwner = std::unique_ptr<BuildLogItem>;

    ItemOwner makeItem(const QString& text, BuildLogItem::Icon icon, unsigned flags) const;
    BuildLogItem* attach(ItemOwner item);
    BuildLogItem* addLine(const QString& text, DiagnosticData::Level level, unsigned flags,
                          bool done);
    void addRecord(BuildLogItem* item);
    void addOutput(const QString& line);
    void close(BuildLogItem* item);
    void count(BuildLogItem* item, DiagnosticData::Level level);
    void changed(BuildLogItem* item);
    void reportCounts(const BuildLogItem* topLevelItem);
    bool takeFromLimit(const QString& line);
    void resolvePath(DiagnosticData& data) const;
    int presentLine(const DiagnosticData& data) const;
    void removeRecordsOf(const BuildLogItem* group);
    BuildLogItem* progressItem() const;
    BuildLogItem::Counters firstCounters() const;
    void showContext(int index, const QString& noneLeft);
    bool isTopLevel(const BuildLogItem* item) const { return item->m_parent == m_root.get(); }

    Kind m_kind;
    Options m_options;
    Clock m_clock;
    std::unique_ptr<DiagnosticParser> m_parser;
    Path m_workingDirectory;
    ItemOwner m_root;
    BuildLogItem* m_currentGroup;       ///< the root outside of all groups
    BuildLogItem* m_lastItem = nullptr; ///< the last one of the current group
    BuildLogItem* m_selectedItem = nullptr;
    DiagnosticRecords m_records;
    int m_context = -1;
    int m_readingPosition = 0;
    FileLineTracker m_fileLineTracker;
    QStringList m_output;
    qint64 m_outputSize = 0;
    bool m_immediateUpdate = false;
};

/// The main log; null until its owner sets it.
extern BuildLogModel* buildLog;
