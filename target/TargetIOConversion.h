#pragma once

#include <string>
#include <string_view>

/// One conversion of a printf or scanf format, as it stands behind its "%".
struct TargetIOConversion {
    static constexpr int Unset = -1;
    /// Taken from the arguments.
    static constexpr int FromArgument = -2;

    enum class Length { Char, Short, Int, Long, LongLong };

    std::string flags;     ///< of "-+ #0"
    bool suppress = false; ///< "*" of a scanf format
    int width = Unset;
    int precision = Unset;
    Length length = Length::Int;
    std::string set; ///< scanf: the characters of [...], with a leading "^" if it excludes them
    char letter = 0; ///< 0 if the format ends within the conversion
};

/// Reads the conversion at `position`, just behind its "%", and moves past it. Widths and
/// precisions are capped at 1024.
TargetIOConversion parsePrintConversion(std::string_view format, std::size_t& position);
TargetIOConversion parseScanConversion(std::string_view format, std::size_t& position);
