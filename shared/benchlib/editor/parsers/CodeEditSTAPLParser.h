#pragma once

#include "editor/parsers/CodeEditStandardParser.h"

/// The standard test and programming language (JESD71).
class CodeEditSTAPLParser : public CodeEditStandardParser {
public:
    /// Never beyond its line.
    static constexpr int InNumber = 1;

    CodeEditSTAPLParser();

    qsizetype parse(QStringView in, char16_t* out) override;
};
