#include "toolchain/common/Options.h"

#include "base/HException.h"

#include <algorithm>
#include <cstring>

namespace {

bool fits(const ToolOption& option, const std::string& word)
{
    return option.form == ToolOption::Flag ? word == option.spelling
                                           : word.starts_with(option.spelling);
}

const ToolOption* findOption(std::span<const ToolOption> options, const std::string& word)
{
    const ToolOption* best = nullptr;
    for (const ToolOption& option : options)
        if (fits(option, word)
            && (best == nullptr || std::strlen(option.spelling) > std::strlen(best->spelling)))
            best = &option;
    return best;
}

std::string shownForm(const ToolOption& option)
{
    static constexpr const char* Suffixes[] = {"", "VALUE", " VALUE"};
    return std::string(option.spelling) + Suffixes[option.form];
}

} // namespace

std::vector<std::string> parseToolOptions(std::span<const std::string> words,
                                          std::span<const ToolOption> options)
{
    std::vector<std::string> inputs;
    for (std::size_t i = 0; i < words.size(); ++i) {
        const std::string& word = words[i];
        if (word == "--") {
            inputs.insert(inputs.end(), words.begin() + static_cast<std::ptrdiff_t>(i) + 1,
                          words.end());
            break;
        }
        if (word.size() < 2 || word[0] != '-') {
            inputs.push_back(word);
            continue;
        }
        const ToolOption* option = findOption(options, word);
        if (option == nullptr)
            throw HException("unknown option " + word);
        std::string value = word.substr(std::strlen(option->spelling));
        if (value.empty() && option->form == ToolOption::Separate && i + 1 < words.size())
            value = words[++i];
        if (value.empty() && option->form != ToolOption::Flag)
            throw HException("option " + word + " needs a value");
        option->take(value);
    }
    return inputs;
}

std::string toolHelp(const ToolDescription& tool, std::span<const ToolOption> options)
{
    std::size_t width = std::strlen("--help");
    for (const ToolOption& option : options)
        width = std::max(width, shownForm(option).size());
    const auto row = [width](const std::string& form, const char* help) {
        return "  " + form + std::string(width + 2 - form.size(), ' ') + help + "\n";
    };
    std::string text =
        std::string("usage: ") + tool.name + " " + tool.usage + "\n" + tool.about + "\n\n";
    for (const ToolOption& option : options)
        if (option.help != nullptr)
            text += row(shownForm(option), option.help);
    return text + row("--help", "show this text") + row("--version", "show the version");
}
