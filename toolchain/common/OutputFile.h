#pragma once

#include <string>
#include <string_view>

/// A file that comes to stand under its name only when it is complete: it is written beside its
/// target and renamed by `commit`. Without a commit nothing is left and an older file stays. A
/// target that is no regular file, such as /dev/null, is written directly.
class OutputFile {
public:
    /// Throws HException "cannot write PATH (reason)".
    explicit OutputFile(const std::string& path);
    ~OutputFile();
    OutputFile(const OutputFile&) = delete;
    OutputFile& operator=(const OutputFile&) = delete;

    /// Where to write until the commit.
    const std::string& path() const { return m_temporary; }

    /// Writes the whole contents; throws HException as the constructor does.
    void write(std::string_view contents);

    /// Gives the file its name; throws HException as the constructor does.
    void commit();

private:
    [[noreturn]] void fail(int error) const;

    std::string m_target;
    std::string m_temporary;
    bool m_direct = false;
    bool m_committed = false;
};
