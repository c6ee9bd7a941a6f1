#pragma once

#include <QList>

/// Bytes of memory from an address on.
struct MemoryRange {
    quint32 start = 0;
    quint32 length = 0;
    friend bool operator==(const MemoryRange&, const MemoryRange&) = default;
};

/// The parts of a segment that the used ranges leave, in the order of their addresses.
QList<MemoryRange> findUnusedRanges(const MemoryRange& segment, QList<MemoryRange> used);
