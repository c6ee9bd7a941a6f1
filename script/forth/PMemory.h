#pragma once

#include "script/forth/pcode.h"

#include <vector>

/// A memory segment. One address unit is one cell, whatever its kind.
class PMemory : public pcode {
public:
    /// The most cells that a segment may have, 96 MB.
    static constexpr qint64 MostCells = 4'000'000;

    explicit PMemory(const QString& name) : m_name(name) { }

    /// Pushes the base address.
    void execute(FSContext* context) override;
    QString name() const override { return m_name; }

    /// Takes `n` cells, or gives back -n. The former `here`.
    X allot(qint64 n);
    X here() { return X(static_cast<unsigned long>(m_here), this); }
    qint64 unused() const { return MostCells - m_here; }

    X fetch(qint64 offset) const { return m_cells[index(offset)]; }
    void store(qint64 offset, const X& value) { m_cells[index(offset)] = value; }
    /// Throws unless the `count` cells at the offset exist.
    void demand(qint64 offset, qint64 count) const;

private:
    std::size_t index(qint64 offset) const
    {
        const auto at = static_cast<std::size_t>(offset);
        if (at >= m_cells.size())
            throw ForthException(ForthError::InvalidAddress);
        return at;
    }

    QString m_name;
    std::vector<X> m_cells;
    qint64 m_here = 0;
};
