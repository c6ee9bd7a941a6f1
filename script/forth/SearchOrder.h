#pragma once

#include "script/forth/ForthException.h"
#include "script/forth/WordList.h"

#include <array>
#include <span>

/// The word lists that a name is looked up in. There is always one at least.
class SearchOrder {
public:
    static constexpr int Capacity = 8;

    explicit SearchOrder(WordList* first) { m_lists[0] = first; }

    /// From the top down; null if no list has it.
    PCFA* findWord(const QString& name) const
    {
        const QString upper = name.toUpper();
        PCFA* found = nullptr;
        for (int i = m_top; i >= 0 && !found; --i)
            found = m_lists[static_cast<std::size_t>(i)]->find(upper);
        return found;
    }
    void pushWordList(WordList* list)
    {
        if (m_top + 1 == Capacity)
            throw ForthException(ForthError::SearchOrderOverflow);
        m_lists[static_cast<std::size_t>(++m_top)] = list;
    }
    void popWordList()
    {
        if (m_top == 0)
            throw ForthException(ForthError::SearchOrderUnderflow);
        --m_top;
    }
    WordList* top() const { return m_lists[static_cast<std::size_t>(m_top)]; }
    void setTop(WordList* list) { m_lists[static_cast<std::size_t>(m_top)] = list; }
    /// All lists, the one searched last in front. A change takes all or none.
    std::span<WordList* const> lists() const
    {
        return {m_lists.data(), static_cast<std::size_t>(m_top + 1)};
    }
    void setLists(std::span<WordList* const> lists)
    {
        if (lists.empty())
            throw ForthException(ForthError::SearchOrderUnderflow);
        if (lists.size() > Capacity)
            throw ForthException(ForthError::SearchOrderOverflow);
        std::copy(lists.begin(), lists.end(), m_lists.begin());
        m_top = static_cast<int>(lists.size()) - 1;
    }

private:
    std::array<WordList*, Capacity> m_lists{};
    int m_top = 0;
};
