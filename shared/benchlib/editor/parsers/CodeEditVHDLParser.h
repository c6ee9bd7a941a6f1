#pragma once

#include "editor/parsers/CodeEditStandardParser.h"

/// The VHSIC hardware description language. Only words in small letters are keywords.
class CodeEditVHDLParser : public CodeEditStandardParser {
public:
    CodeEditVHDLParser();

    qsizetype parse(QStringView in, char16_t* out) override;
};
