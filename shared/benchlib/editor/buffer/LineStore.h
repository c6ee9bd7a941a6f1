#pragma once

#include "editor/buffer/QCodeLine.h"

#include <memory>
#include <vector>

/// The lines of a buffer, in chunks of some hundred: a line is found, put in or taken out in a time
/// that hardly depends on how many there are.
class LineStore {
public:
    int count() const { return m_count; }

    QCodeLine& operator[](int index) { return at(index); }
    const QCodeLine& operator[](int index) const { return const_cast<LineStore*>(this)->at(index); }

    void clear();
    void reserveForAppending(int lines);
    void append(QCodeLine&& line);
    /// In front of the line with that index, which may be count().
    void insert(int index, std::vector<QCodeLine>&& lines);
    void erase(int index, int count);

    /// Makes the line's state unknown.
    void invalidate(int index);
    /// The first line from that index on whose state is unknown; count() if there is none.
    int nextUnknown(int index);

private:
    struct Chunk {
        std::vector<QCodeLine> lines;
        /// False only if every line's state is known.
        bool mayHaveUnknown = true;
    };
    struct Place {
        std::size_t chunk;
        int offset;
    };

    QCodeLine& at(int index);
    Place find(int index);
    void updateStarts(std::size_t from);
    void splitAt(std::size_t chunk, int offset);

    std::vector<std::unique_ptr<Chunk>> m_chunks;
    std::vector<int> m_starts; ///< the index of each chunk's first line
    std::size_t m_lastChunk = 0;
    int m_count = 0;
};
