#include "base/Pool.h"

#include <algorithm>
#include <cstring>
#include <new>

Pool::Chunk* Pool::s_released = nullptr;
Pool* Pool::s_current = nullptr;

void* Pool::allocate(unsigned size)
{
    size = (size + 7u) & ~7u;
    if (m_head == nullptr || size > m_capacity - m_used)
        addChunk(std::max(size, ChunkSize));
    void* result = m_head->data + m_used;
    m_used += size;
    return result;
}

void Pool::addChunk(unsigned size)
{
    Chunk** link = &s_released;
    while (*link != nullptr && (*link)->size < size)
        link = &(*link)->next;
    Chunk* chunk = *link;
    if (chunk != nullptr)
        *link = chunk->next;
    else
        chunk = new Chunk{nullptr, size, new unsigned char[size]};
    chunk->next = m_head;
    m_head = chunk;
    m_capacity = chunk->size;
    m_used = 0;
}

void Pool::addFinalizer(void* object, void (*finalize)(void*))
{
    m_finalizers = new (allocate(sizeof(Finalizer))) Finalizer{m_finalizers, object, finalize};
}

void Pool::clear()
{
    while (m_finalizers != nullptr) {
        Finalizer* finalizer = m_finalizers;
        m_finalizers = finalizer->next;
        finalizer->run(finalizer->object);
    }
    // Only the newest chunk may have a part that was never given out.
    unsigned given = m_used;
    while (m_head != nullptr) {
        Chunk* chunk = m_head;
        m_head = chunk->next;
        std::memset(chunk->data, ReleasedByte, given);
        given = m_head != nullptr ? m_head->size : 0;
        chunk->next = s_released;
        s_released = chunk;
    }
    m_used = 0;
    m_capacity = 0;
}

Pool* Pool::setCurrentPool(Pool* pool)
{
    Pool* previous = s_current;
    s_current = pool;
    return previous;
}

Pool* Pool::currentPool()
{
    if (s_current == nullptr)
        s_current = new Pool;
    return s_current;
}
