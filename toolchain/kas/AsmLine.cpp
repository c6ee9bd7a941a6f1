#include "toolchain/kas/AsmLine.h"

#include <algorithm>
#include <charconv>

namespace {

constexpr std::string_view ByteOrderMark = "\xEF\xBB\xBF";

bool isBlank(char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\f' || c == '\0'; }

std::string_view trimmed(std::string_view text)
{
    while (!text.empty() && isBlank(text.front()))
        text.remove_prefix(1);
    while (!text.empty() && isBlank(text.back()))
        text.remove_suffix(1);
    return text;
}

class Splitter {
public:
    Splitter(std::string_view text, const std::string& fileName, std::vector<std::string>* files)
        : m_text(text),
          m_file(HString::intern(fileName)),
          m_files(files)
    {
    }

    AsmLinesPtr run()
    {
        if (m_text.starts_with(ByteOrderMark))
            m_text.remove_prefix(ByteOrderMark.size());
        while (!m_text.empty()) {
            const std::size_t end = std::min(m_text.find('\n'), m_text.size());
            physicalLine(m_text.substr(0, end));
            m_text.remove_prefix(std::min(end + 1, m_text.size()));
            ++m_line;
        }
        return std::make_shared<const AsmLines>(std::move(m_lines));
    }

private:
    void physicalLine(std::string_view line)
    {
        if (!m_inComment && trimmed(line).starts_with('#')) {
            lineMarker(trimmed(line).substr(1));
            return;
        }
        std::string statement;
        for (std::size_t i = 0; i < line.size();)
            i = scan(line, i, statement);
        emit(statement);
    }

    /// Takes in what stands at `i` and returns where to go on.
    std::size_t scan(std::string_view line, std::size_t i, std::string& statement)
    {
        const std::string_view rest = line.substr(i);
        if (m_inComment) {
            const std::size_t end = rest.find("*/");
            m_inComment = end == std::string_view::npos;
            return m_inComment ? line.size() : i + end + 2;
        }
        if (rest.starts_with("/*")) {
            m_inComment = true;
            statement += ' ';
            return i + 2;
        }
        if (rest[0] == ';' || rest.starts_with("//"))
            return line.size();
        if (rest[0] == '{') {
            emit(statement);
            statement.clear();
            return i + 1;
        }
        const std::size_t length = quotedLength(rest);
        statement += rest.substr(0, length);
        return i + length;
    }

    /// The length of a string or character constant at the front, 1 for anything else.
    static std::size_t quotedLength(std::string_view text)
    {
        const char quote = text[0];
        if (quote != '"' && quote != '\'')
            return 1;
        for (std::size_t i = 1; i < text.size(); ++i) {
            if (text[i] == '\\')
                ++i;
            else if (text[i] == quote)
                return i + 1;
        }
        return quote == '"' ? text.size() : 1;
    }

    void emit(std::string_view statement)
    {
        const std::string_view text = trimmed(statement);
        if (!text.empty())
            m_lines.push_back({std::string(text), m_file, m_line});
    }

    /// `LINE "FILE"`, with or without "line" in front; the number is that of the next line.
    void lineMarker(std::string_view text)
    {
        text = trimmed(text);
        if (text.starts_with("line"))
            text = trimmed(text.substr(4));
        int number = 0;
        const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
        if (error != std::errc())
            return;
        text = trimmed(text.substr(static_cast<std::size_t>(end - text.data())));
        const std::size_t close = text.find('"', 1);
        if (text.empty() || text[0] != '"' || close == std::string_view::npos)
            return;
        m_line = number - 1;
        const std::string_view name = text.substr(1, close - 1);
        if (name != m_file->view())
            m_file = HString::intern(name);
        if (m_files != nullptr && !name.starts_with('<')
            && std::find(m_files->begin(), m_files->end(), name) == m_files->end())
            m_files->emplace_back(name);
    }

    std::string_view m_text;
    HString* m_file;
    std::vector<std::string>* m_files;
    int m_line = 1;
    bool m_inComment = false;
    AsmLines m_lines;
};

} // namespace

AsmLinesPtr splitAssembly(std::string_view text, const std::string& fileName,
                          std::vector<std::string>* files)
{
    return Splitter(text, fileName, files).run();
}
