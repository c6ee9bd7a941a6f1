#pragma once

#include <functional>
#include <map>
#include <vector>

/// The bytes of a location, for decoding and encoding. Bytes behind its end read as 0, and aren't
/// written.
class MemoryBlock {
public:
    /// Moves bytes between a buffer and the location, `offset` bytes from its beginning.
    using Read = std::function<void(unsigned offset, unsigned size, unsigned char* buffer)>;
    using Write = std::function<void(unsigned offset, unsigned size, const unsigned char* buffer)>;

    virtual ~MemoryBlock() = default;

    virtual void get(unsigned offset, unsigned size, unsigned char* buffer) = 0;
    virtual void put(unsigned offset, unsigned size, const unsigned char* buffer) = 0;
    /// Writes what the location is to hold.
    virtual void store(const Write& write) = 0;
};

/// Bytes that were read when the block was made; stored whole.
class WholeMemoryBlock final : public MemoryBlock {
public:
    WholeMemoryBlock(unsigned size, const Read& read);
    void get(unsigned offset, unsigned size, unsigned char* buffer) override;
    void put(unsigned offset, unsigned size, const unsigned char* buffer) override;
    void store(const Write& write) override;

private:
    std::vector<unsigned char> m_bytes;
};

/// Bytes that are read when they are asked for, so that a field of a large value costs no more than
/// itself. What was put is stored, and nothing else.
class LazyMemoryBlock final : public MemoryBlock {
public:
    LazyMemoryBlock(unsigned size, Read read) : m_size(size), m_read(std::move(read)) { }
    void get(unsigned offset, unsigned size, unsigned char* buffer) override;
    void put(unsigned offset, unsigned size, const unsigned char* buffer) override;
    void store(const Write& write) override;

private:
    unsigned m_size;
    Read m_read;
    std::map<unsigned, unsigned char> m_changed;
};
