#include "objfile/listing/SourceLine.h"

#include <fstream>

std::string SourceLine::getSourceLine(HString* name, int line)
{
    auto it = m_files.find(name);
    if (it == m_files.end())
        it = m_files.emplace(name, readFile(name)).first;
    const std::vector<std::string>& lines = it->second;
    if (line >= 1 && static_cast<std::size_t>(line) <= lines.size())
        return lines[static_cast<std::size_t>(line) - 1];
    return "File " + name->str() + " line " + std::to_string(line) + "***out of range***";
}

std::vector<std::string> SourceLine::readFile(HString* name)
{
    std::ifstream in(name->text());
    std::vector<std::string> lines;
    for (std::string line; std::getline(in, line);) {
        if (line.ends_with('\r'))
            line.pop_back();
        lines.push_back(std::move(line));
    }
    return lines;
}
