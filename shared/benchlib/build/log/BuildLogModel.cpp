#include "build/log/BuildLogModel.h"

using namespace Qt::Literals::StringLiterals;

BuildLogModel* buildLog = nullptr;

namespace {

// What an item takes beside its texts, in characters.
constexpr qint64 ItemSize = 100;

BuildLogItem::Time steadyTime()
{
    return std::chrono::duration_cast<BuildLogItem::Time>(
        std::chrono::steady_clock::now().time_since_epoch());
}

DiagnosticData::Level levelOf(unsigned flags)
{
    const unsigned level = flags & BuildLogFlags::LevelMask;
    return level < DiagnosticData::LevelCount ? static_cast<DiagnosticData::Level>(level)
                                              : DiagnosticData::NoLevel;
}

QString severityLabel(DiagnosticData::Level level)
{
    switch (level) {
    case DiagnosticData::NoLevel: break;
    case DiagnosticData::Find: return u"Find"_s;
    case DiagnosticData::Note: return u"Note"_s;
    case DiagnosticData::Warning: return u"Warning"_s;
    case DiagnosticData::Error: return u"Error"_s;
    case DiagnosticData::Fatal: return u"Fatal"_s;
    }
    return {};
}

/// The item that follows in a walk that visits parents ahead of their children.
const BuildLogItem* nextItem(const BuildLogItem* item)
{
    if (item->childCount() > 0)
        return item->child(0);
    while (item->parent() != nullptr) {
        if (item->row() + 1 < item->parent()->childCount())
            return item->parent()->child(item->row() + 1);
        item = item->parent();
    }
    return nullptr;
}

} // namespace

BuildLogModel::BuildLogModel(Kind kind, QObject* parent)
    : QObject(parent),
      m_kind(kind),
      m_clock(steadyTime),
      m_root(std::make_unique<BuildLogItem>(QString(), BuildLogItem::Icon::Blank, 0)),
      m_currentGroup(m_root.get()),
      m_fileLineTracker(u"output-log-file-line-tracker"_s)
{
}

BuildLogModel::~BuildLogModel() = default;

// Items

BuildLogModel::ItemOwner BuildLogModel::makeItem(const QString& text, BuildLogItem::Icon icon,
                                                 unsigned flags) const
{
    auto item = std::make_unique<BuildLogItem>(text, icon, flags);
    item->m_recordIndex = m_records.count();
    if ((flags & BuildLogFlags::RecordsStartTime) != 0)
        item->m_startTime = m_clock();
    return item;
}

BuildLogItem* BuildLogModel::attach(ItemOwner item)
{
    if (m_lastItem != nullptr)
        close(m_lastItem);
    emit itemAboutToBeAdded(m_currentGroup);
    m_lastItem = m_currentGroup->append(std::move(item));
    emit itemAdded(m_lastItem);
    if (m_immediateUpdate && isTopLevel(m_lastItem))
        emit updateNow(m_lastItem);
    return m_lastItem;
}

void BuildLogModel::close(BuildLogItem* item)
{
    if (item->m_done)
        return;
    item->setDone(m_clock());
    changed(item);
}

void BuildLogModel::changed(BuildLogItem* item)
{
    emit itemChanged(item);
    if (m_immediateUpdate && isTopLevel(item))
        emit updateNow(item);
}

void BuildLogModel::count(BuildLogItem* item, DiagnosticData::Level level)
{
    for (; item != m_root.get(); item = item->m_parent) {
        item->m_counters.add(level);
        item->update();
        changed(item);
        if (isTopLevel(item))
            reportCounts(item);
        if ((item->m_flags & BuildLogFlags::NotCounted) != 0)
            break;
    }
}

void BuildLogModel::reportCounts(const BuildLogItem* topLevelItem)
{
    const BuildLogItem::Counters& counters = topLevelItem->m_counters;
    if (isMain())
        emit buildErrorCounts(counters.errors, counters.warnings, counters.notes);
}

BuildLogItem::Counters BuildLogModel::firstCounters() const
{
    return m_root->childCount() > 0 ? m_root->child(0)->m_counters : BuildLogItem::Counters();
}

// Groups

BuildLogItem* BuildLogModel::currentGroup() const
{
    return m_currentGroup != m_root.get() ? m_currentGroup : nullptr;
}

BuildLogItem* BuildLogModel::beginGroup(const QString& title, unsigned flags)
{
    addOutput(title);
    m_currentGroup = attach(makeItem(title, BuildLogItem::Icon::Progress, flags));
    m_lastItem = nullptr;
    return m_currentGroup;
}

void BuildLogModel::endGroup(const QString& title)
{
    if (!title.isEmpty())
        addOutput(title);
    if (currentGroup() == nullptr)
        return;
    if (m_lastItem != nullptr)
        close(m_lastItem);
    m_currentGroup->m_icon = m_currentGroup->iconForCounters();
    m_currentGroup->setDone(m_clock());
    changed(m_currentGroup);
    m_lastItem = m_currentGroup;
    m_currentGroup = m_currentGroup->m_parent;
}

void BuildLogModel::cancelGroup()
{
    BuildLogItem* group = currentGroup();
    if (group == nullptr)
        return;
    removeRecordsOf(group);
    if (m_selectedItem != nullptr && m_selectedItem->isWithin(group))
        m_selectedItem = nullptr;

    BuildLogItem* parent = group->m_parent;
    const BuildLogItem::Counters counters = group->m_counters;
    const bool counted = (group->m_flags & BuildLogFlags::NotCounted) == 0;
    emit itemAboutToBeRemoved(group);
    // What is added goes into the current group, so that it is the last of its parent.
    parent->m_children.pop_back();
    emit itemRemoved(parent);

    m_currentGroup = parent;
    m_lastItem = parent->childCount() > 0 ? parent->child(parent->childCount() - 1) : nullptr;
    for (BuildLogItem* item = parent; counted && item != m_root.get(); item = item->m_parent) {
        item->m_counters.subtract(counters);
        item->update();
        changed(item);
        if (isTopLevel(item))
            reportCounts(item);
        if ((item->m_flags & BuildLogFlags::NotCounted) != 0)
            break;
    }
}

void BuildLogModel::removeRecordsOf(const BuildLogItem* group)
{
    const int before = m_records.count();
    // Nothing outside of the group has been added since it began.
    while (!m_records.isEmpty() && m_records.at(m_records.count() - 1).item->isWithin(group))
        m_records.removeLast();
    const int first = m_records.count();
    if (first == before)
        return;
    emit summaryRowsRemoved(first);
    if (m_context >= first)
        m_context = -1;
}

// Lines

void BuildLogModel::addOutput(const QString& line)
{
    m_output << line;
    emit outputAdded(line);
}

BuildLogItem* BuildLogModel::addLine(const QString& text, DiagnosticData::Level level,
                                     unsigned flags, bool done)
{
    addOutput(text);
    const BuildLogItem::Icon icon = level == DiagnosticData::NoLevel
        ? BuildLogItem::Icon::Success
        : BuildLogItem::iconForLevel(level);
    ItemOwner item = makeItem(text, icon, flags);
    item->m_done = done;
    BuildLogItem* added = attach(std::move(item));
    if (level != DiagnosticData::NoLevel && (flags & BuildLogFlags::NotCounted) == 0)
        count(added, level);
    return added;
}

BuildLogItem* BuildLogModel::addMessage(const QString& text, unsigned flags)
{
    return addLine(text, levelOf(flags), flags, false);
}

BuildLogItem* BuildLogModel::addSuccess(const QString& text, unsigned flags)
{
    return addLine(text, DiagnosticData::NoLevel, flags, true);
}

BuildLogItem* BuildLogModel::addNote(const QString& text, unsigned flags)
{
    return addMessage(text, flags | DiagnosticData::Note);
}

BuildLogItem* BuildLogModel::addWarning(const QString& text, unsigned flags)
{
    return addMessage(text, flags | DiagnosticData::Warning);
}

BuildLogItem* BuildLogModel::addError(const QString& text, unsigned flags)
{
    return addMessage(text, flags | DiagnosticData::Error);
}

BuildLogItem* BuildLogModel::addResult(const DiagnosticData& data, unsigned flags)
{
    addOutput(data.message);
    ItemOwner item = makeItem(data.message, BuildLogItem::iconForLevel(data.level), flags);
    item->m_data = data;
    BuildLogItem* added = attach(std::move(item));
    addRecord(added);
    return added;
}

void BuildLogModel::processOutput(const QString& line)
{
    if (m_parser && m_parser->filterOut(m_workingDirectory, line))
        return;
    DiagnosticData data;
    const bool parsed = m_parser && m_parser->parse(m_workingDirectory, line, data);
    if (!takeFromLimit(line)) {
        if (parsed)
            count(m_currentGroup, data.level);
        return;
    }
    addOutput(line);
    if (!parsed) {
        attach(makeItem(line.simplified(), BuildLogItem::Icon::Blank, 0));
        return;
    }
    const bool asWritten = data.message.isEmpty() || m_options.showUnparsedErrorOutput;
    resolvePath(data);
    ItemOwner item = makeItem(asWritten ? line.trimmed() : data.message,
                              BuildLogItem::iconForLevel(data.level), 0);
    item->m_data = data;
    addRecord(attach(std::move(item)));
}

bool BuildLogModel::takeFromLimit(const QString& line)
{
    if (m_outputSize > m_options.outputLimit)
        return false;
    m_outputSize += line.size() + ItemSize;
    if (m_outputSize <= m_options.outputLimit)
        return true;
    addNote(u"Too much output: what follows is counted but not shown"_s, BuildLogFlags::NotCounted);
    return false;
}

void BuildLogModel::addRecord(BuildLogItem* item)
{
    const DiagnosticData& data = item->m_data;
    if (!data.path.isEmpty() && data.line > 0)
        m_fileLineTracker.track(data.path, data.line);
    if (data.level == DiagnosticData::NoLevel)
        return;
    m_records.append({data, item});
    emit summaryRowAdded(m_records.count() - 1);
    if ((item->m_flags & BuildLogFlags::NotCounted) == 0)
        count(item, data.level);
}

void BuildLogModel::resolvePath(DiagnosticData& data) const
{
    if (!data.path.isEmpty() && !m_workingDirectory.isEmpty())
        data.path = data.path.absolute(m_workingDirectory.osPath());
}

void BuildLogModel::clear()
{
    m_records.clear();
    m_root = std::make_unique<BuildLogItem>(QString(), BuildLogItem::Icon::Blank, 0);
    m_currentGroup = m_root.get();
    m_lastItem = nullptr;
    m_selectedItem = nullptr;
    m_context = -1;
    m_readingPosition = 0;
    m_fileLineTracker.clear();
    m_output.clear();
    m_outputSize = 0;
    emit cleared();
    if (isMain())
        emit buildErrorCounts(0, 0, 0);
}

// Progress

void BuildLogModel::setTotalSteps(int count)
{
    if (BuildLogItem* group = currentGroup())
        setTotalSteps(group, count);
}

void BuildLogModel::setTotalSteps(BuildLogItem* item, int count)
{
    item->m_progress = 0;
    if (item->m_totalSteps == count)
        return;
    item->m_totalSteps = count;
    changed(item);
}

BuildLogItem* BuildLogModel::progressItem() const
{
    BuildLogItem* item = m_currentGroup;
    while (item != nullptr && item->m_totalSteps == 0)
        item = item->m_parent;
    return item;
}

void BuildLogModel::setProgress(int step)
{
    BuildLogItem* item = progressItem();
    if (item == nullptr || item->m_progress == step)
        return;
    item->m_progress = step;
    item->updateTime(m_clock());
    changed(item);
}

void BuildLogModel::nextStep()
{
    if (const BuildLogItem* item = progressItem())
        setProgress(item->m_progress + 1);
}

void BuildLogModel::setTransferred(qint64 count, BuildLogItem::RateUnit unit)
{
    BuildLogItem* group = currentGroup();
    if (group == nullptr)
        return;
    group->m_transferred = count;
    group->m_rateUnit = unit;
    group->updateTime(m_clock());
    changed(group);
}

void BuildLogModel::updateTimes()
{
    for (BuildLogItem* item = m_currentGroup; item != m_root.get(); item = item->m_parent) {
        if (!item->m_startTime)
            continue;
        item->updateTime(m_clock());
        changed(item);
    }
}

// Reading

BuildLogModel::SummaryRow BuildLogModel::summaryRow(int index) const
{
    const DiagnosticInfo& record = m_records.at(index);
    return {severityLabel(record.level), record.path.fileName(), record.message,
            BuildLogItem::iconForLevel(record.level)};
}

bool BuildLogModel::getFirstDiagnostic(DiagnosticData& data)
{
    m_readingPosition = 0;
    return getNextDiagnostic(data);
}

bool BuildLogModel::getNextDiagnostic(DiagnosticData& data)
{
    if (!m_records.has(m_readingPosition))
        return false;
    data = m_records.at(m_readingPosition++);
    return true;
}

QString BuildLogModel::copy() const
{
    return m_selectedItem != nullptr ? m_selectedItem->m_text : QString();
}

QString BuildLogModel::copyAll() const
{
    QStringList texts;
    for (const BuildLogItem* item = nextItem(m_root.get()); item != nullptr; item = nextItem(item))
        texts << item->m_text;
    return texts.join(u'\n');
}

// Navigation

int BuildLogModel::presentLine(const DiagnosticData& data) const
{
    return data.line > 0 ? m_fileLineTracker.getLineNumber(data.path, data.line) : -1;
}

void BuildLogModel::setContext(int index)
{
    m_context = m_records.has(index) ? index : -1;
    m_selectedItem = m_context >= 0 ? m_records.at(m_context).item : nullptr;
    emit contextChanged(m_context);
    if (m_context < 0)
        return;

    const DiagnosticData& record = m_records.at(m_context);
    DiagnosticData data;
    data.message = record.message;
    data.level = record.level;
    const int line = presentLine(record);
    if (line > 0) {
        data.path = record.path;
        data.line = line;
    }
    emit locateResult(data);
}

void BuildLogModel::showContext(int index, const QString& noneLeft)
{
    setContext(index);
    if (index >= 0)
        return;
    emit note(noneLeft);
    if (isMain())
        emit clearDiagnostic();
}

void BuildLogModel::locateNext()
{
    if (m_records.isEmpty())
        return;
    int next = m_context + 1;
    if (m_options.diagnosticCycleMode == CycleMode::BySeverity) {
        const int level = m_context >= 0 ? m_records.at(m_context).level : DiagnosticData::Fatal;
        next = m_records.findNextDiagnosticAt(level, next);
    } else if (!m_records.has(next)) {
        next = -1;
    }
    showContext(next, isMain() ? u"No more errors"_s : u"No more tags"_s);
}

void BuildLogModel::locatePrevious()
{
    if (m_records.isEmpty())
        return;
    const int last = m_records.count() - 1;
    const int position = m_selectedItem != nullptr ? m_selectedItem->m_recordIndex : last;
    int previous = position < 0 ? last : position - 1;
    if (m_options.diagnosticCycleMode == CycleMode::BySeverity) {
        previous = m_context < 0
            ? m_records.findPreviousDiagnosticAt(DiagnosticData::Fatal, position + 1)
            : m_records.findPreviousDiagnosticAt(m_records.at(m_context).level, position - 1);
    }
    showContext(previous, isMain() ? u"No previous errors"_s : u"No previous tags"_s);
}

void BuildLogModel::locateResult(const BuildLogItem* item)
{
    DiagnosticData data = item->m_data;
    if (data.path.isEmpty() && data.message.isEmpty())
        return;
    if (!data.path.isEmpty())
        data.line = presentLine(data);
    data.column = -1;
    data.selectionStart = 0;
    data.selectionLength = 0;
    emit locateResult(data);
}

void BuildLogModel::fileLinesChanged(const Path& path, int line, int delta)
{
    m_fileLineTracker.changed(path, line, delta);
}
