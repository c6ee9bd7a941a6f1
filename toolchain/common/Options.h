#pragma once

#include <functional>
#include <span>
#include <string>
#include <vector>

/// One option of a tool.
struct ToolOption {
    enum Form {
        Flag,     ///< `-g`; the handler gets an empty text
        Attached, ///< `-DNAME`; the value may not be empty
        Separate, ///< `-o FILE`, or `-oFILE`
    };
    const char* spelling;
    Form form;
    const char* help; ///< a line of the help text; null leaves the option out of it
    std::function<void(const std::string& value)> take;
};

/// What a tool is, for its help text.
struct ToolDescription {
    const char* name;
    const char* usage; ///< what stands behind the name in the usage line
    const char* about; ///< one or more lines
};

/// Hands each option's value to its handler and returns the other words in their order. Where two
/// spellings fit, the longer one counts. Throws HException for an unknown option and for one
/// without its value. A single "-" isn't an option; behind "--" nothing is.
std::vector<std::string> parseToolOptions(std::span<const std::string> words,
                                          std::span<const ToolOption> options);

std::string toolHelp(const ToolDescription& tool, std::span<const ToolOption> options);
