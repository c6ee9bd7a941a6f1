#pragma once

#include "toolchain/kas/AsmLine.h"

#include <unordered_map>
#include <vector>

struct AsmMacro {
    struct Parameter {
        std::string name;
        std::string standard; ///< what it is without an argument
        bool required = false;
        bool takesRest = false; ///< takes all further arguments with their commas
    };
    std::string name;
    std::vector<Parameter> parameters;
    AsmLinesPtr body;
};

/// Macros, and the substitution of arguments: `\name` for a parameter, `\@` for a number that each
/// expansion has anew, `\()` for nothing.
class AsmMacros {
public:
    /// A statement grown longer than this by its arguments is given up.
    static constexpr std::size_t MaximumLineLength = 65536;

    /// Reads `NAME PARAMETER[=DEFAULT | :req | :vararg], …`. Throws AsmError.
    static AsmMacro parseHeader(std::string_view text);

    void define(AsmMacro macro);
    /// Null if there is none; the case of letters doesn't matter.
    const AsmMacro* find(const std::string& name) const;

    /// The body with the arguments of a call put in. Throws AsmError.
    AsmLinesPtr expand(const AsmMacro& macro, std::string_view arguments);
    /// The body with one parameter replaced.
    AsmLinesPtr substitute(const AsmLines& body, const std::string& parameter,
                           const std::string& value);

private:
    std::unordered_map<std::string, AsmMacro> m_macros;
    unsigned m_expansions = 0;
};

/// The parts of a text between commas that stand outside quotes and brackets, without blanks
/// around.
std::vector<std::string> splitArguments(std::string_view text);
