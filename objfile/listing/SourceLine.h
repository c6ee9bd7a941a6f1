#pragma once

#include "base/HString.h"

#include <map>
#include <string>
#include <vector>

/// The lines of source files, read when first asked for.
class SourceLine {
public:
    virtual ~SourceLine() = default;

    /// The text of a line, counted from 1. Outside the file it says so.
    std::string getSourceLine(HString* name, int line);

protected:
    /// The lines of a file; none if it can't be read.
    virtual std::vector<std::string> readFile(HString* name);

private:
    std::map<HString*, std::vector<std::string>> m_files;
};
