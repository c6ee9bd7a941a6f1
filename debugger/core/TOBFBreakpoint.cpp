#include "debugger/core/TOBFBreakpoint.h"

using namespace Qt::Literals::StringLiterals;

TOBFBreakpoint::TOBFBreakpoint(std::vector<std::unique_ptr<HBreakpoint>> chain, bool temporary)
    : m_chain(std::move(chain)),
      m_temporary(temporary)
{
    for (std::size_t i = 1; i < m_chain.size(); ++i)
        m_chain[i]->next = m_chain[i - 1].get();
}

QString TOBFBreakpoint::getDescription() const
{
    const QString first = u"0x"_s + QString::number(head().address, 16);
    if (head().length < 2)
        return first;
    return first + u"-0x"_s + QString::number(head().address + head().length - 1, 16);
}

QString TOBFBreakpoint::getAddress() const
{
    return head().isRegister ? u"@r"_s + QString::number(head().address)
                             : u"0x"_s + QString::number(head().address, 16);
}
