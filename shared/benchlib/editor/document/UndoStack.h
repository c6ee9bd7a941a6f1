#pragma once

#include "editor/document/CodeEditTransaction.h"

/// Transactions that can be undone, or redone; the newest is the head.
class UndoStack {
public:
    bool isEmpty() const { return m_transactions.empty(); }
    std::size_t size() const { return m_transactions.size(); }
    /// Null when empty.
    CodeEditTransaction* head() const { return isEmpty() ? nullptr : m_transactions.back().get(); }
    /// 0 for the newest.
    const CodeEditTransaction& at(std::size_t depth) const
    {
        return *m_transactions[m_transactions.size() - 1 - depth];
    }
    void push(std::unique_ptr<CodeEditTransaction> transaction)
    {
        m_transactions.push_back(std::move(transaction));
    }
    /// There must be one.
    std::unique_ptr<CodeEditTransaction> pop()
    {
        std::unique_ptr<CodeEditTransaction> head = std::move(m_transactions.back());
        m_transactions.pop_back();
        return head;
    }
    void clear() { m_transactions.clear(); }

private:
    std::vector<std::unique_ptr<CodeEditTransaction>> m_transactions;
};
