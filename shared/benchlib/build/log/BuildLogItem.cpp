#include "build/log/BuildLogItem.h"

#include <QLocale>
#include <QStringList>

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

namespace {

QString counted(int count, const QString& singular, const QString& plural)
{
    return count == 1 ? u"1 "_s + singular : u"%1 %2"_s.arg(count).arg(plural);
}

QString rateText(qint64 count, BuildLogItem::RateUnit unit, BuildLogItem::Time elapsed)
{
    const qint64 perSecond = count * 1000 / std::max<qint64>(elapsed.count(), 1);
    switch (unit) {
    case BuildLogItem::RateUnit::Files: return u"%1 files/s"_s.arg(perSecond);
    case BuildLogItem::RateUnit::Targets: return u"%1 targets/s"_s.arg(perSecond);
    case BuildLogItem::RateUnit::Bytes: break;
    }
    return u"%1/s"_s.arg(QLocale::c().formattedDataSize(perSecond, 1));
}

} // namespace

void BuildLogItem::Counters::add(DiagnosticData::Level level)
{
    switch (level) {
    case DiagnosticData::NoLevel: break;
    case DiagnosticData::Find: ++findResults; break;
    case DiagnosticData::Note: ++notes; break;
    case DiagnosticData::Warning: ++warnings; break;
    case DiagnosticData::Fatal: ++fatalErrors; [[fallthrough]];
    case DiagnosticData::Error: ++errors; break;
    }
}

void BuildLogItem::Counters::subtract(const Counters& other)
{
    fatalErrors -= other.fatalErrors;
    errors -= other.errors;
    warnings -= other.warnings;
    notes -= other.notes;
    findResults -= other.findResults;
}

BuildLogItem::BuildLogItem(const QString& text, Icon icon, unsigned flags)
    : m_flags(flags),
      m_icon(icon),
      m_text(text)
{
}

bool BuildLogItem::isWithin(const BuildLogItem* ancestor) const
{
    const BuildLogItem* item = this;
    while (item != nullptr && item != ancestor)
        item = item->m_parent;
    return item != nullptr;
}

BuildLogItem::Icon BuildLogItem::iconForLevel(DiagnosticData::Level level)
{
    switch (level) {
    case DiagnosticData::NoLevel: break;
    case DiagnosticData::Find: return Icon::Find;
    case DiagnosticData::Note: return Icon::Note;
    case DiagnosticData::Warning: return Icon::Warning;
    case DiagnosticData::Error: return Icon::Error;
    case DiagnosticData::Fatal: return Icon::Fatal;
    }
    return Icon::Blank;
}

BuildLogItem::Icon BuildLogItem::iconForCounters() const
{
    if (m_counters.fatalErrors > 0)
        return Icon::Fatal;
    if (m_counters.errors > 0)
        return Icon::Error;
    if (m_counters.warnings > 0)
        return Icon::Warning;
    return m_counters.notes > 0 ? Icon::Note : Icon::Success;
}

BuildLogItem* BuildLogItem::append(std::unique_ptr<BuildLogItem> child)
{
    child->m_parent = this;
    child->m_row = childCount();
    m_children.push_back(std::move(child));
    return m_children.back().get();
}

void BuildLogItem::setDone(Time now)
{
    m_done = true;
    updateTime(now);
    m_status = m_counters.errors > 0 ? u"Completed (with errors)"_s
        : m_counters.warnings > 0    ? u"Completed (with warnings)"_s
                                     : u"Completed"_s;
    update();
}

void BuildLogItem::update()
{
    QStringList parts;
    if (!m_status.isEmpty())
        parts << m_status;
    if (m_counters.errors != 0)
        parts << counted(m_counters.errors, u"error"_s, u"errors"_s);
    if (m_counters.warnings != 0)
        parts << counted(m_counters.warnings, u"warning"_s, u"warnings"_s);
    if (m_counters.notes != 0)
        parts << counted(m_counters.notes, u"note"_s, u"notes"_s);
    if (m_counters.findResults != 0)
        parts << counted(m_counters.findResults, u"occurrence"_s, u"occurrences"_s);
    if (!m_timeText.isEmpty())
        parts << m_timeText;
    m_statusText = parts.join(u", "_s);
}

void BuildLogItem::updateTime(Time now)
{
    if (!m_startTime)
        return;
    const Time elapsed = std::max(now - *m_startTime, Time(0));
    const auto seconds = elapsed.count() / 1000;
    m_timeText = u"%1:%2s"_s.arg(seconds / 60).arg(seconds % 60, 2, 10, QChar(u'0'));
    if (m_transferred > 0)
        m_timeText += u' ' + rateText(m_transferred, m_rateUnit, elapsed);
    update();
}
