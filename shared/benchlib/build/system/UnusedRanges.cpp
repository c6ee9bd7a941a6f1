#include "build/system/UnusedRanges.h"

#include <algorithm>

QList<MemoryRange> findUnusedRanges(const MemoryRange& segment, QList<MemoryRange> used)
{
    std::sort(used.begin(), used.end(),
              [](const MemoryRange& a, const MemoryRange& b) { return a.start < b.start; });
    QList<MemoryRange> unused;
    const quint64 end = quint64(segment.start) + segment.length;
    quint64 at = segment.start;
    for (const MemoryRange& range : used) {
        const quint64 gapEnd = std::min<quint64>(range.start, end);
        if (gapEnd > at)
            unused << MemoryRange{quint32(at), quint32(gapEnd - at)};
        at = std::max(at, quint64(range.start) + range.length);
    }
    if (end > at)
        unused << MemoryRange{quint32(at), quint32(end - at)};
    return unused;
}
