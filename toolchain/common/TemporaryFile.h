#pragma once

#include <string>

/// An empty file under a name of its own, removed at the end.
class TemporaryFile {
public:
    /// Throws HException "cannot write PATH (reason)".
    explicit TemporaryFile(const std::string& ending);
    ~TemporaryFile();
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;

    const std::string& path() const { return m_path; }

private:
    std::string m_path;
};
