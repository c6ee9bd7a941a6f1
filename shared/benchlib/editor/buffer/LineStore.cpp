#include "editor/buffer/LineStore.h"

#include <algorithm>
#include <iterator>

namespace {

constexpr std::size_t ChunkSize = 256;
/// A chunk that editing has filled is cut in two.
constexpr std::size_t MaximumChunkSize = 2 * ChunkSize;

} // namespace

void LineStore::clear()
{
    m_chunks.clear();
    m_starts.clear();
    m_lastChunk = 0;
    m_count = 0;
}

void LineStore::reserveForAppending(int lines)
{
    const std::size_t chunks = m_chunks.size() + static_cast<std::size_t>(lines) / ChunkSize + 1;
    m_chunks.reserve(chunks);
    m_starts.reserve(chunks);
}

void LineStore::append(QCodeLine&& line)
{
    if (m_chunks.empty() || m_chunks.back()->lines.size() >= ChunkSize) {
        m_chunks.push_back(std::make_unique<Chunk>());
        m_chunks.back()->lines.reserve(ChunkSize);
        m_starts.push_back(m_count);
    }
    Chunk& chunk = *m_chunks.back();
    chunk.mayHaveUnknown |= line.state < 0;
    chunk.lines.push_back(std::move(line));
    ++m_count;
}

void LineStore::insert(int index, std::vector<QCodeLine>&& lines)
{
    if (lines.empty())
        return;
    if (index >= m_count) {
        for (QCodeLine& line : lines)
            append(std::move(line));
        return;
    }
    const Place place = find(index);
    Chunk& chunk = *m_chunks[place.chunk];
    const auto added = static_cast<int>(lines.size());
    const auto first = std::make_move_iterator(lines.begin());
    const auto last = std::make_move_iterator(lines.end());
    if (chunk.lines.size() + lines.size() <= MaximumChunkSize) {
        chunk.lines.insert(chunk.lines.begin() + place.offset, first, last);
        chunk.mayHaveUnknown = true;
    } else {
        splitAt(place.chunk, place.offset);
        std::vector<std::unique_ptr<Chunk>> chunks;
        for (std::size_t from = 0; from < lines.size(); from += ChunkSize) {
            const std::size_t to = std::min(from + ChunkSize, lines.size());
            chunks.push_back(std::make_unique<Chunk>());
            chunks.back()->lines.assign(first + static_cast<std::ptrdiff_t>(from),
                                        first + static_cast<std::ptrdiff_t>(to));
        }
        const std::size_t at = place.chunk + (place.offset > 0 ? 1 : 0);
        m_chunks.insert(m_chunks.begin() + static_cast<std::ptrdiff_t>(at),
                        std::make_move_iterator(chunks.begin()),
                        std::make_move_iterator(chunks.end()));
    }
    m_count += added;
    updateStarts(place.chunk);
}

void LineStore::erase(int index, int count)
{
    count = std::min(count, m_count - index);
    if (index < 0 || count <= 0)
        return;
    const Place place = find(index);
    std::size_t chunk = place.chunk;
    int offset = place.offset;
    m_count -= count;
    std::size_t firstEmpty = m_chunks.size();
    std::size_t lastEmpty = 0;
    while (count > 0) {
        std::vector<QCodeLine>& lines = m_chunks[chunk]->lines;
        const int here = std::min(count, static_cast<int>(lines.size()) - offset);
        lines.erase(lines.begin() + offset, lines.begin() + offset + here);
        if (lines.empty()) {
            firstEmpty = std::min(firstEmpty, chunk);
            lastEmpty = chunk + 1;
        }
        count -= here;
        offset = 0;
        ++chunk;
    }
    if (firstEmpty < lastEmpty)
        m_chunks.erase(m_chunks.begin() + static_cast<std::ptrdiff_t>(firstEmpty),
                       m_chunks.begin() + static_cast<std::ptrdiff_t>(lastEmpty));
    updateStarts(std::min(place.chunk, m_chunks.size()));
}

void LineStore::invalidate(int index)
{
    const Place place = find(index);
    Chunk& chunk = *m_chunks[place.chunk];
    chunk.lines[static_cast<std::size_t>(place.offset)].state = QCodeLine::UnknownState;
    chunk.mayHaveUnknown = true;
}

int LineStore::nextUnknown(int index)
{
    if (index >= m_count)
        return m_count;
    const Place place = find(index);
    auto offset = static_cast<std::size_t>(place.offset);
    for (std::size_t chunk = place.chunk; chunk < m_chunks.size(); ++chunk, offset = 0) {
        Chunk& candidate = *m_chunks[chunk];
        if (!candidate.mayHaveUnknown)
            continue;
        const auto first = candidate.lines.begin();
        const auto found =
            std::find_if(first + static_cast<std::ptrdiff_t>(offset), candidate.lines.end(),
                         [](const QCodeLine& line) { return line.state < 0; });
        if (found != candidate.lines.end())
            return m_starts[chunk] + static_cast<int>(found - first);
        if (offset == 0)
            candidate.mayHaveUnknown = false;
    }
    return m_count;
}

QCodeLine& LineStore::at(int index)
{
    const Place place = find(index);
    return m_chunks[place.chunk]->lines[static_cast<std::size_t>(place.offset)];
}

LineStore::Place LineStore::find(int index)
{
    // Most look-ups are near the one before.
    if (m_lastChunk >= m_chunks.size() || index < m_starts[m_lastChunk]
        || index - m_starts[m_lastChunk] >= static_cast<int>(m_chunks[m_lastChunk]->lines.size())) {
        const auto next = std::upper_bound(m_starts.begin(), m_starts.end(), index);
        m_lastChunk = static_cast<std::size_t>(next - m_starts.begin()) - 1;
    }
    return {m_lastChunk, index - m_starts[m_lastChunk]};
}

/// From that chunk on, whose own start is right unless it is new.
void LineStore::updateStarts(std::size_t from)
{
    m_starts.resize(m_chunks.size());
    int start = 0;
    if (from > 0 && from <= m_chunks.size())
        start = m_starts[from - 1] + static_cast<int>(m_chunks[from - 1]->lines.size());
    for (std::size_t chunk = from; chunk < m_chunks.size(); ++chunk) {
        m_starts[chunk] = start;
        start += static_cast<int>(m_chunks[chunk]->lines.size());
    }
    m_lastChunk = 0;
}

/// The lines from that offset on go into a chunk of their own. The starts are left to the caller.
void LineStore::splitAt(std::size_t chunk, int offset)
{
    if (offset == 0)
        return;
    std::vector<QCodeLine>& lines = m_chunks[chunk]->lines;
    auto tail = std::make_unique<Chunk>();
    tail->lines.assign(std::make_move_iterator(lines.begin() + offset),
                       std::make_move_iterator(lines.end()));
    lines.erase(lines.begin() + offset, lines.end());
    m_chunks.insert(m_chunks.begin() + static_cast<std::ptrdiff_t>(chunk) + 1, std::move(tail));
}
