#pragma once

#include <cstddef>

/// An arena. Objects are made in the current pool by PoolObject's operator new, and go with it,
/// never singly. Chunks of a cleared pool are kept for the next one and never go back to the
/// system, so that reloading a file does not grow the process.
///
/// Pools are process-wide and unguarded: one thread at a time.
class Pool {
public:
    /// Bytes of an ordinary chunk; a larger request gets a chunk of its own size.
    static constexpr unsigned ChunkSize = 8192;
    /// What released memory is filled with, so that a stale pointer is seen at once.
    static constexpr unsigned char ReleasedByte = 0xFE;

    Pool() = default;
    ~Pool() { clear(); }
    Pool(const Pool&) = delete;
    Pool& operator=(const Pool&) = delete;

    /// `size` bytes, rounded up to a multiple of 8, aligned to 8.
    void* allocate(unsigned size);

    /// Runs the finalizers, then hands every chunk to the list of released ones.
    void clear();

    /// Has `finalize(object)` run when the pool is cleared, last registered first. For the objects
    /// that hold standard containers, whose nodes live on the ordinary heap.
    void addFinalizer(void* object, void (*finalize)(void*));

    /// Makes `pool` the current one and returns the one that was.
    static Pool* setCurrentPool(Pool* pool);

    /// The current pool, made first if there is none.
    static Pool* currentPool();

private:
    struct Chunk {
        Chunk* next;
        unsigned size;
        unsigned char* data;
    };
    struct Finalizer {
        Finalizer* next;
        void* object;
        void (*run)(void*);
    };

    void addChunk(unsigned size);

    Chunk* m_head = nullptr;
    unsigned m_used = 0;
    unsigned m_capacity = 0;
    Finalizer* m_finalizers = nullptr;

    static Chunk* s_released;
    static Pool* s_current;
};

/// Makes a pool current for a scope.
class CurrentPool {
public:
    explicit CurrentPool(Pool* pool) : m_previous(Pool::setCurrentPool(pool)) { }
    ~CurrentPool() { Pool::setCurrentPool(m_previous); }
    CurrentPool(const CurrentPool&) = delete;
    CurrentPool& operator=(const CurrentPool&) = delete;

private:
    Pool* m_previous;
};

/// Base of everything that is made in the current pool. A class that holds standard containers
/// calls `finalizeWithPool` in its constructor.
class PoolObject {
public:
    static void* operator new(std::size_t size)
    {
        return Pool::currentPool()->allocate(static_cast<unsigned>(size));
    }
    static void* operator new(std::size_t, void* where) { return where; }
    static void operator delete(void*) { }

protected:
    template <typename T> static void finalizeWithPool(T* object)
    {
        Pool::currentPool()->addFinalizer(object, [](void* it) { static_cast<T*>(it)->~T(); });
    }
};
