#pragma once

#include "editor/parsers/CodeEditStandardParser.h"

/// The standard test and programming language (JESD71).
class CodeEditSTAPLParser : public CodeEditStandardParser {
public:
    CodeEditSTAPLParser();

    qsizetype parse(QStringView in, char16_t* out) override;
};
