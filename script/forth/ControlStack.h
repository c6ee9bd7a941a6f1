#pragma once

#include "script/forth/PNodes.h"

#include <memory>
#include <vector>

/// What is open while a definition is being compiled.
class CSEntry {
public:
    virtual ~CSEntry() = default;
};

/// The definition itself.
class CSColonSys : public CSEntry {
public:
    explicit CSColonSys(PCFA* definition) : definition(definition) { }
    PCFA* const definition;
};

/// A branch forward that has no target yet.
class CSOrig : public CSEntry {
public:
    explicit CSOrig(PBranch* branch) : branch(branch) { }
    PBranch* const branch;
};

/// A place to branch back to.
class CSDest : public CSEntry {
public:
    explicit CSDest(PLabel* label) : label(label) { }
    PLabel* const label;
};

class CSDoSys : public CSEntry {
public:
    explicit CSDoSys(PLabel* label) : label(label) { }
    PLabel* const label;          ///< of the first turn
    std::vector<PBranch*> leaves; ///< what goes behind the loop
};

class CSCaseSys : public CSEntry {
public:
    std::vector<PBranch*> exits; ///< of the cases that have ended
};

class CSOfSys : public CSEntry {
public:
    explicit CSOfSys(POfBranch* branch) : branch(branch) { }
    POfBranch* const branch; ///< to the next case
};

class ControlStack {
public:
    void push(std::unique_ptr<CSEntry> entry) { m_entries.push_back(std::move(entry)); }
    template <class Entry, class... Arguments> void open(Arguments&&... arguments)
    {
        push(std::make_unique<Entry>(std::forward<Arguments>(arguments)...));
    }
    /// The top entry, which has to be of that class.
    template <class Entry> std::unique_ptr<Entry> pop()
    {
        Entry& entry = top<Entry>();
        static_cast<void>(m_entries.back().release());
        m_entries.pop_back();
        return std::unique_ptr<Entry>(&entry);
    }
    template <class Entry> Entry& top()
    {
        Entry* entry = dynamic_cast<Entry*>(pick(0));
        if (!entry)
            throw ForthException(ForthError::ControlMismatch);
        return *entry;
    }
    /// The entry below `n` others; null if there is none.
    CSEntry* pick(std::size_t n) const
    {
        return n < m_entries.size() ? m_entries[m_entries.size() - 1 - n].get() : nullptr;
    }
    /// The uppermost entry of a class that has at least `start` others on it; null for none.
    template <class Entry> Entry* find(std::size_t start = 0) const
    {
        for (std::size_t n = start; n < m_entries.size(); ++n)
            if (auto* entry = dynamic_cast<Entry*>(pick(n)))
                return entry;
        return nullptr;
    }
    /// The first entry; null if there is none.
    CSEntry* bottom() const { return m_entries.empty() ? nullptr : m_entries.front().get(); }
    std::size_t depth() const { return m_entries.size(); }
    void clear() { m_entries.clear(); }

private:
    std::vector<std::unique_ptr<CSEntry>> m_entries;
};
