#pragma once

#include <vector>

/// Which line of a text shows which addresses, both ways.
class FileMappings {
public:
    static constexpr int None = -1;

    /// The line shows `length` bytes from `address` on.
    void add(int line, unsigned address, unsigned length);
    /// Makes the map ready for look-ups; to be called after the last `add`.
    void create();
    void clear();

    /// The line that shows the byte at the address, or None.
    int lineOf(unsigned address) const;
    /// Whether the line shows addresses; `address` is then its first one.
    bool addressOf(int line, unsigned& address) const;

private:
    struct Entry {
        int line;
        unsigned address;
        unsigned length;
    };
    std::vector<Entry> m_entries; ///< by address
    std::vector<Entry> m_lines;   ///< by line
};
