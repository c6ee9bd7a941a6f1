#pragma once

#include "projects/macros/MacroSystem.h"

#include <optional>

/// The turns of a <for>: its index, and numbers that grow linearly with it.
class XmlRepetition {
public:
    /// The attributes as they stand in the file; a null text is a missing one. Numbers are read by
    /// strtoul with base 0.
    struct Attributes {
        QString index;
        QString start;
        QString end;
        QString incr;
        QString add;
        QString sub;
        QString mul;
    };

    /// Nothing if index, start, end or incr is missing.
    static std::optional<XmlRepetition> fromAttributes(const Attributes& attributes);

    /// False for a step of 0, which would never come to the end.
    bool advances() const { return m_increment != 0; }
    bool atEnd() const { return m_at >= m_end; }
    void next() { m_at += m_increment; }

    /// Stores the macros of this turn.
    void addMacros(MacroMap& macros) const;

private:
    QString m_index;
    // Wider than the 32 bits of the numbers, so that no sum wraps around.
    qint64 m_at = 0;
    qint64 m_end = 0;
    qint64 m_increment = 0;
    qint64 m_base = 0;
    qint64 m_factor = 1;
};
