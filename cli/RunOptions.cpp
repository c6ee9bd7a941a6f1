#include "cli/RunOptions.h"

#include "cli/Command.h"

#include <charconv>
#include <functional>
#include <map>

namespace {

constexpr std::uint64_t highestAddress = 0xFFFFF;
constexpr std::uint64_t longestTrace = 655536;

std::uint64_t number(const std::string& option, const std::string& text, std::uint64_t highest)
{
    const std::optional<std::uint64_t> value = parseAddress(text);
    if (!value || *value > highest)
        throw UsageError{option + " " + text + " isn't a number from 0 to "
                         + std::to_string(highest)};
    return *value;
}

using Setter =
    std::function<void(RunOptions&, const std::string& option, const std::string& value)>;

Setter small(std::optional<unsigned> RunOptions::*field, std::uint64_t highest)
{
    return [=](RunOptions& options, const std::string& option, const std::string& value) {
        options.*field = static_cast<unsigned>(number(option, value, highest));
    };
}

Setter text(std::string RunOptions::*field)
{
    return [=](RunOptions& options, const std::string&, const std::string& value) {
        options.*field = value;
    };
}

Setter limit(std::uint64_t RunLimits::*field)
{
    return [=](RunOptions& options, const std::string& option, const std::string& value) {
        options.limits.*field = number(option, value, RunLimits::None - 1);
    };
}

const std::map<std::string, Setter>& valueOptions()
{
    static const std::map<std::string, Setter> all = {
        {"--device", text(&RunOptions::device)},
        {"--type", text(&RunOptions::type)},
        {"--stdin", text(&RunOptions::input)},
        {"--peripherals", text(&RunOptions::peripherals)},
        {"--address", small(&RunOptions::address, highestAddress)},
        {"--pc", small(&RunOptions::pc, highestAddress)},
        {"--fill", small(&RunOptions::fill, 0xFF)},
        {"--trace", small(&RunOptions::trace, longestTrace)},
        {"--steps", limit(&RunLimits::passes)},
        {"--max-cycles", limit(&RunLimits::cycles)},
        {"--break",
         [](RunOptions& options, const std::string&, const std::string& value) {
             options.breakpoints.push_back(value);
         }},
    };
    return all;
}

const std::map<std::string, bool RunOptions::*>& switches()
{
    static const std::map<std::string, bool RunOptions::*> all = {
        {"--counts", &RunOptions::counts},
        {"--registers", &RunOptions::registers},
        {"--stats", &RunOptions::stats},
    };
    return all;
}

void setProgram(RunOptions& options, const std::string& word)
{
    if (!options.program.empty())
        throw UsageError{"more than one program: " + word};
    options.program = word;
}

} // namespace

std::optional<std::uint64_t> parseAddress(const std::string& text)
{
    const bool hex = text.starts_with("0x") || text.starts_with("0X");
    const char* begin = text.data() + (hex ? 2 : 0);
    const char* end = text.data() + text.size();
    std::uint64_t value = 0;
    const auto [stopped, error] = std::from_chars(begin, end, value, hex ? 16 : 10);
    return error == std::errc() && stopped == end ? std::optional(value) : std::nullopt;
}

RunOptions parseRunOptions(std::span<const std::string> words)
{
    RunOptions options;
    for (std::size_t i = 0; i < words.size(); ++i) {
        const std::string& word = words[i];
        if (word == "--") {
            options.arguments.assign(words.begin() + static_cast<std::ptrdiff_t>(i) + 1,
                                     words.end());
            break;
        }
        if (const auto found = switches().find(word); found != switches().end()) {
            options.*found->second = true;
        } else if (const auto option = valueOptions().find(word); option != valueOptions().end()) {
            if (++i == words.size())
                throw UsageError{"option " + word + " needs a value"};
            option->second(options, word, words[i]);
        } else if (word.starts_with("--")) {
            throw UsageError{"unknown option " + word};
        } else {
            setProgram(options, word);
        }
    }
    if (options.program.empty())
        throw UsageError{"no program is named"};
    return options;
}
