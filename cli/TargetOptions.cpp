#include "cli/TargetOptions.h"

#include "cli/Command.h"

#include <algorithm>
#include <map>

using namespace Qt::Literals::StringLiterals;

namespace {

using Kind = TargetAction::Kind;
using Words = std::span<const std::string>;

constexpr std::string_view Separator = "then";

QString toText(const std::string& word) { return QString::fromLocal8Bit(word.c_str()); }

const std::map<std::string, Kind> Kinds = {
    {"program", Kind::Program}, {"verify", Kind::Verify}, {"erase", Kind::Erase},
    {"lock", Kind::Lock},       {"unlock", Kind::Unlock}, {"upload", Kind::Upload},
};

/// Where an option's value goes; null for a word that has none.
QString* placeOf(const std::string& option, TargetAction& action, TargetOptions& options)
{
    static const std::map<std::string, QString TargetAction::*> ofAction = {
        {"--type", &TargetAction::type},
        {"--address", &TargetAction::address},
        {"--size", &TargetAction::size},
    };
    if (const auto found = ofAction.find(option); found != ofAction.end())
        return &(action.*found->second);
    return option == "--target" ? &options.target
        : option == "--memory"  ? &options.memory
                                : nullptr;
}

void takeOption(Words& words, TargetAction& action, TargetOptions& options)
{
    const std::string option = words[0];
    words = words.subspan(1);
    if (option == "--erase-all") {
        action.eraseAll = true;
        return;
    }
    if (option == "--no-verify") {
        action.verify = false;
        return;
    }
    QString* const place = placeOf(option, action, options);
    if (!place && option != "--device")
        throw UsageError{"unknown option " + option};
    if (words.empty())
        throw UsageError{"option " + option + " needs a value"};
    if (place)
        *place = toText(words[0]);
    else
        options.device = words[0];
    words = words.subspan(1);
}

void check(const TargetAction& action, const std::string& name)
{
    const bool isRange = !action.address.isEmpty() && !action.size.isEmpty();
    const bool takesAFile = action.kind == Kind::Program || action.kind == Kind::Verify;
    if (takesAFile && action.file.isEmpty())
        throw UsageError{"target " + name + " needs a load file"};
    if (takesAFile && !action.size.isEmpty())
        throw UsageError{"target " + name + " takes no size: it is that of the file"};
    if (action.kind == Kind::Upload && (action.file.isEmpty() || !isRange))
        throw UsageError{"target upload needs a file, --address and --size"};
    if (!takesAFile && action.kind != Kind::Upload && action.file.isEmpty()
        && action.address.isEmpty() != action.size.isEmpty())
        throw UsageError{"--address and --size go together"};
    if (action.kind != Kind::Program && (action.eraseAll || !action.verify))
        throw UsageError{"--erase-all and --no-verify are for target program"};
}

TargetAction parseAction(Words words, TargetOptions& options)
{
    const auto found = words.empty() ? Kinds.end() : Kinds.find(words[0]);
    if (found == Kinds.end())
        throw UsageError{"target takes list, program, verify, erase, lock, unlock or upload"};
    const std::string name = words[0];
    TargetAction action;
    action.kind = found->second;
    for (words = words.subspan(1); !words.empty();) {
        if (words[0].starts_with("--")) {
            takeOption(words, action, options);
            continue;
        }
        if (!action.file.isEmpty())
            throw UsageError{"target " + name + " takes one file"};
        action.file = toText(words[0]);
        words = words.subspan(1);
    }
    check(action, name);
    return action;
}

} // namespace

TargetOptions parseTargetOptions(std::span<const std::string> arguments)
{
    TargetOptions options;
    if (!arguments.empty() && arguments[0] == "list") {
        if (arguments.size() > 1)
            throw UsageError{"target list takes nothing else"};
        options.list = true;
        return options;
    }
    for (auto begin = arguments.begin();; ++begin) {
        const auto end = std::find(begin, arguments.end(), Separator);
        options.actions.push_back(parseAction(Words(begin, end), options));
        begin = end;
        if (begin == arguments.end())
            return options;
    }
}
