#pragma once

#include <array>
#include <cstdio>

/// The host files that a target program has open, by the handles it knows them under. 0, 1 and 2
/// are the standard streams, which are the terminal and never a file.
class TargetIOFiles {
public:
    static constexpr int Count = 200;
    static constexpr int First = 3;

    ~TargetIOFiles() { closeAll(); }
    static bool isStandard(int handle) { return handle >= 0 && handle < First; }

    /// Takes over `file` and returns its handle; -1 if it is null or no handle is left, in which
    /// case it is closed.
    int add(std::FILE* file);
    /// Null for a handle that is out of range or not open.
    std::FILE* find(int handle) const;
    int close(int handle);
    /// Puts `name` in the place of an open file; the handle, or -1 with the handle free.
    int reopen(const char* name, const char* mode, int handle);
    void closeAll();

private:
    std::array<std::FILE*, Count> m_files{};
};
