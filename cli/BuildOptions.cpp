#include "cli/BuildOptions.h"

#include "cli/Command.h"

namespace {

QString text(const std::string& word) { return QString::fromLocal8Bit(word.c_str()); }

void setProperty(BuildOptions& options, const QString& assignment)
{
    const qsizetype equals = assignment.indexOf(QLatin1Char('='));
    if (equals <= 0)
        throw UsageError{"--set needs NAME=VALUE"};
    options.properties.emplace_back(assignment.left(equals), assignment.mid(equals + 1));
}

bool setSwitch(BuildOptions& options, const std::string& word)
{
    if (word == "--batch")
        options.batch = true;
    else if (word == "--rebuild")
        options.kind = BuildOptions::Kind::Rebuild;
    else if (word == "--clean")
        options.kind = BuildOptions::Kind::Clean;
    else if (word == "--command-lines")
        options.commandLines = true;
    else if (word == "--export")
        options.exported = true;
    else
        return false;
    return true;
}

bool setValue(BuildOptions& options, const std::string& word, const std::string& value)
{
    if (word == "--configuration")
        options.configurations << text(value);
    else if (word == "--project")
        options.project = text(value);
    else if (word == "--set")
        setProperty(options, text(value));
    else
        return false;
    return true;
}

} // namespace

BuildOptions BuildOptions::parse(std::span<const std::string> arguments)
{
    BuildOptions options;
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        const std::string& word = arguments[i];
        if (!word.starts_with("-")) {
            if (!options.solution.isEmpty())
                throw UsageError{"more than one solution is given"};
            options.solution = text(word);
        } else if (!setSwitch(options, word)) {
            const bool last = i + 1 == arguments.size();
            if (last && (word == "--configuration" || word == "--project" || word == "--set"))
                throw UsageError{word + " needs a value"};
            if (last || !setValue(options, word, arguments[i + 1]))
                throw UsageError{"unknown option " + word};
            ++i;
        }
    }
    if (options.solution.isEmpty())
        throw UsageError{"no solution is given"};
    return options;
}
