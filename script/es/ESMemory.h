#pragma once

#include "script/es/ESErrors.h"

/// What a context may take: its objects and texts live until it dies, so that a loop would take all
/// there is.
class ESMemory {
public:
    /// In bytes, about.
    void setLimit(qsizetype bytes) { m_limit = bytes; }
    /// Counts bytes that are about to be taken. Throws ESFatalError "out of memory" beyond the
    /// limit.
    void charge(qsizetype bytes)
    {
        m_size += bytes;
        if (m_size > m_limit)
            throw ESFatalError(QStringLiteral("out of memory"));
    }

private:
    qsizetype m_size = 0;
    qsizetype m_limit = qsizetype(2) << 30;
};
