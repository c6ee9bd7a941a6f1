#include "toolchain/kcc/VectorPragma.h"

#include "base/HException.h"
#include "toolchain/common/TemporaryFile.h"

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string_view>

namespace {

std::string_view trimLeft(std::string_view text)
{
    const std::size_t at = text.find_first_not_of(" \t");
    return at == std::string_view::npos ? std::string_view() : text.substr(at);
}

bool takeWord(std::string_view& text, std::string_view word)
{
    text = trimLeft(text);
    if (!text.starts_with(word))
        return false;
    text.remove_prefix(word.size());
    return true;
}

/// The vector of the pragma on this line; empty if there is none.
std::string_view vectorOf(std::string_view line)
{
    if (!takeWord(line, "#") || !takeWord(line, "pragma") || !takeWord(line, "vector")
        || !takeWord(line, "="))
        return {};
    line = trimLeft(line);
    const std::size_t comment = std::min(line.find("//"), line.find("/*"));
    line = line.substr(0, comment);
    const std::size_t end = line.find_last_not_of(" \t\r");
    return line.substr(0, end + 1);
}

std::string quoted(const std::string& text)
{
    std::string result = "'";
    for (const char c : text)
        result += c == '\'' ? std::string("''") : std::string(1, c);
    return result + "'";
}

} // namespace

struct VectorPragma::Overlay {
    TemporaryFile text{".c"};
    TemporaryFile map{".yaml"};
};

VectorPragma::VectorPragma(const std::string& source)
{
    std::ifstream in(source, std::ios::binary);
    if (!in || std::filesystem::is_directory(source))
        throw HException("cannot open " + source);
    const std::string text{std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
    if (text.find("vector") == std::string::npos)
        return;
    const std::string changed = rewrite(text);
    if (changed == text)
        return;
    m_overlay = std::make_unique<Overlay>();
    std::ofstream(m_overlay->text.path(), std::ios::binary) << changed;
    const std::string absolute = std::filesystem::absolute(source).lexically_normal().string();
    std::ofstream(m_overlay->map.path())
        << "{'version': 0, 'use-external-names': 'false', 'roots': [{'type': 'file', 'name': "
        << quoted(absolute) << ", 'external-contents': " << quoted(m_overlay->text.path())
        << "}]}\n";
}

VectorPragma::~VectorPragma() = default;

std::string VectorPragma::compilerOption() const
{
    return m_overlay ? "-ivfsoverlay" + m_overlay->map.path() : std::string();
}

std::string VectorPragma::rewrite(const std::string& text)
{
    std::string result;
    result.reserve(text.size());
    for (std::size_t at = 0; at < text.size();) {
        const std::size_t end = std::min(text.find('\n', at), text.size());
        const std::string_view line = std::string_view(text).substr(at, end - at);
        const std::string_view vector = vectorOf(line);
        if (vector.empty())
            result += line;
        else
            result += "__gantry_vector(" + std::string(vector) + ")";
        if (end < text.size())
            result += '\n';
        at = end + 1;
    }
    return result;
}
