#include "toolchain/kas/AsmMacros.h"

#include <algorithm>
#include <cctype>

namespace {

using Values = std::unordered_map<std::string, std::string>;

bool isNameCharacter(char c) { return std::isalnum(static_cast<unsigned char>(c)) || c == '_'; }

std::string trimmed(std::string_view text)
{
    const auto blank = [](char c) { return std::isspace(static_cast<unsigned char>(c)) != 0; };
    while (!text.empty() && blank(text.front()))
        text.remove_prefix(1);
    while (!text.empty() && blank(text.back()))
        text.remove_suffix(1);
    return std::string(text);
}

std::string lowerCase(std::string text)
{
    std::transform(text.begin(), text.end(), text.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return text;
}

std::string_view leadingName(std::string_view text)
{
    const auto end = std::find_if_not(text.begin(), text.end(), isNameCharacter);
    return text.substr(0, static_cast<std::size_t>(end - text.begin()));
}

AsmMacro::Parameter parseParameter(const std::string& text)
{
    AsmMacro::Parameter parameter;
    parameter.name = leadingName(text);
    if (parameter.name.empty())
        throw AsmError{"malformed parameter '" + text + "'"};
    const std::string rest = trimmed(std::string_view(text).substr(parameter.name.size()));
    if (rest.starts_with('='))
        parameter.standard = trimmed(rest.substr(1));
    else if (rest == ":req")
        parameter.required = true;
    else if (rest == ":vararg")
        parameter.takesRest = true;
    else if (!rest.empty())
        throw AsmError{"malformed parameter '" + text + "'"};
    return parameter;
}

/// The line with each "\name" replaced that has a value.
std::string substituted(const std::string& line, const Values& values)
{
    std::string result;
    for (std::size_t i = 0; i < line.size();) {
        if (line[i] != '\\') {
            result += line[i++];
            continue;
        }
        const std::string_view rest = std::string_view(line).substr(i + 1);
        if (rest.starts_with("()")) {
            i += 3;
            continue;
        }
        const std::string name(rest.starts_with('@') ? rest.substr(0, 1) : leadingName(rest));
        const auto value = values.find(name);
        if (value == values.end()) {
            result += line[i++];
            continue;
        }
        result += value->second;
        i += 1 + name.size();
        if (result.size() > AsmMacros::MaximumLineLength)
            throw AsmError{"line becomes too long in the expansion of a macro"};
    }
    return result;
}

AsmLinesPtr substituted(const AsmLines& body, const Values& values)
{
    auto lines = std::make_shared<AsmLines>();
    lines->reserve(body.size());
    for (const AsmLine& line : body)
        lines->push_back({substituted(line.text, values), line.file, line.line});
    return lines;
}

/// The parameter that "name=" at the front of an argument names, or null.
const AsmMacro::Parameter* namedParameter(const AsmMacro& macro, const std::string& argument)
{
    const std::string_view name = leadingName(argument);
    if (name.empty() || argument.size() <= name.size() || argument[name.size()] != '=')
        return nullptr;
    const auto it = std::find_if(macro.parameters.begin(), macro.parameters.end(),
                                 [&](const AsmMacro::Parameter& p) { return p.name == name; });
    return it != macro.parameters.end() ? &*it : nullptr;
}

Values bindArguments(const AsmMacro& macro, const std::vector<std::string>& arguments)
{
    Values values;
    std::size_t position = 0;
    for (const std::string& argument : arguments) {
        if (const AsmMacro::Parameter* named = namedParameter(macro, argument)) {
            values[named->name] = argument.substr(named->name.size() + 1);
            continue;
        }
        if (position == macro.parameters.size())
            throw AsmError{"too many arguments for macro '" + macro.name + "'"};
        const AsmMacro::Parameter& parameter = macro.parameters[position];
        if (parameter.takesRest) {
            std::string& rest = values[parameter.name];
            rest += (rest.empty() ? "" : ", ") + argument;
            continue;
        }
        if (!argument.empty())
            values[parameter.name] = argument;
        ++position;
    }
    for (const AsmMacro::Parameter& parameter : macro.parameters) {
        const bool given = values.try_emplace(parameter.name, parameter.standard).second == false;
        if (parameter.required && !given)
            throw AsmError{"macro '" + macro.name + "' needs the argument '" + parameter.name
                           + "'"};
    }
    return values;
}

} // namespace

std::vector<std::string> splitArguments(std::string_view text)
{
    std::vector<std::string> parts;
    std::size_t start = 0;
    int brackets = 0;
    char quote = 0;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char c = text[i];
        if (quote != 0) {
            i += c == '\\' ? 1 : 0;
            quote = c == quote ? '\0' : quote;
        } else if (c == '"' || (c == '\'' && i + 2 < text.size() && text[i + 2] == '\'')) {
            quote = c;
        } else if (c == '(') {
            ++brackets;
        } else if (c == ')') {
            --brackets;
        } else if (c == ',' && brackets <= 0) {
            parts.push_back(trimmed(text.substr(start, i - start)));
            start = i + 1;
        }
    }
    std::string last = trimmed(text.substr(std::min(start, text.size())));
    if (!last.empty() || !parts.empty())
        parts.push_back(std::move(last));
    return parts;
}

AsmMacro AsmMacros::parseHeader(std::string_view text)
{
    AsmMacro macro;
    const std::string header = trimmed(text);
    const auto isName = [](char c) { return isNameCharacter(c) || c == '.' || c == '$'; };
    const auto end = std::find_if_not(header.begin(), header.end(), isName);
    macro.name = std::string(header.begin(), end);
    if (macro.name.empty())
        throw AsmError{"missing macro name"};
    std::string parameters = trimmed(std::string_view(header).substr(macro.name.size()));
    if (parameters.starts_with(','))
        parameters.erase(0, 1);
    for (const std::string& parameter : splitArguments(parameters))
        macro.parameters.push_back(parseParameter(parameter));
    return macro;
}

void AsmMacros::define(AsmMacro macro)
{
    std::string key = lowerCase(macro.name);
    m_macros[std::move(key)] = std::move(macro);
}

const AsmMacro* AsmMacros::find(const std::string& name) const
{
    const auto it = m_macros.find(lowerCase(name));
    return it != m_macros.end() ? &it->second : nullptr;
}

AsmLinesPtr AsmMacros::expand(const AsmMacro& macro, std::string_view arguments)
{
    Values values = bindArguments(macro, splitArguments(arguments));
    values["@"] = std::to_string(m_expansions++);
    return substituted(*macro.body, values);
}

AsmLinesPtr AsmMacros::substitute(const AsmLines& body, const std::string& parameter,
                                  const std::string& value)
{
    return substituted(body, {{parameter, value}, {"@", std::to_string(m_expansions++)}});
}
