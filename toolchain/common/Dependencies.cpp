#include "toolchain/common/Dependencies.h"

#include <fstream>
#include <iterator>

std::string parseDependencies(std::string_view rule)
{
    const std::size_t colon = rule.find(": ");
    if (colon == std::string_view::npos)
        return {};
    rule.remove_prefix(colon + 2);
    std::string result;
    bool inName = false;
    for (std::size_t i = 0; i < rule.size(); ++i) {
        char c = rule[i];
        const char next = i + 1 < rule.size() ? rule[i + 1] : '\n';
        const bool escaped =
            (c == '\\' && (next == ' ' || next == '#')) || (c == '$' && next == '$');
        if (!escaped && (c == ' ' || c == '\n' || (c == '\\' && next == '\n'))) {
            inName = false;
            continue;
        }
        if (escaped)
            c = rule[++i];
        if (!inName && !result.empty())
            result += ';';
        inName = true;
        result += c;
    }
    return result;
}

std::string readDependencies(const std::string& path)
{
    std::ifstream in(path, std::ios::binary);
    return parseDependencies(
        std::string{std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()});
}
