#include "script/forth/PMemory.h"

#include "script/forth/FSContext.h"

namespace {

// Cells behind `here` may be used as a scratch area.
constexpr qint64 Slack = 256;

} // namespace

void PMemory::execute(FSContext* context) { context->push(X(0UL, this)); }

X PMemory::allot(qint64 n)
{
    if (n > unused() || n < -m_here)
        throw ForthException(ForthError::InvalidArgument);
    const X former = here();
    m_here += n;
    const auto wanted = static_cast<std::size_t>(m_here + Slack);
    if (m_cells.size() < wanted)
        m_cells.resize(wanted);
    return former;
}

void PMemory::demand(qint64 offset, qint64 count) const
{
    const auto size = static_cast<qint64>(m_cells.size());
    if (count < 0 || offset < 0 || offset > size || count > size - offset)
        throw ForthException(ForthError::InvalidAddress);
}
