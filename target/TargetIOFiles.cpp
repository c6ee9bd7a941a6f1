#include "target/TargetIOFiles.h"

int TargetIOFiles::add(std::FILE* file)
{
    if (file == nullptr)
        return -1;
    for (int handle = First; handle < Count; ++handle) {
        if (find(handle) != nullptr)
            continue;
        m_files[static_cast<std::size_t>(handle)] = file;
        return handle;
    }
    std::fclose(file);
    return -1;
}

std::FILE* TargetIOFiles::find(int handle) const
{
    return handle >= First && handle < Count ? m_files[static_cast<std::size_t>(handle)] : nullptr;
}

int TargetIOFiles::close(int handle)
{
    std::FILE* file = find(handle);
    if (file == nullptr)
        return -1;
    m_files[static_cast<std::size_t>(handle)] = nullptr;
    return std::fclose(file);
}

int TargetIOFiles::reopen(const char* name, const char* mode, int handle)
{
    std::FILE* file = find(handle);
    if (file == nullptr)
        return -1;
    file = std::freopen(name, mode, file);
    m_files[static_cast<std::size_t>(handle)] = file;
    return file != nullptr ? handle : -1;
}

void TargetIOFiles::closeAll()
{
    for (int handle = First; handle < Count; ++handle)
        close(handle);
}
