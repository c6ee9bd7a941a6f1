#pragma once

#include "editor/parsers/CodeEditStandardParser.h"

/// Serial vector format: scripts for boundary scan.
class CodeEditSVFParser : public CodeEditStandardParser {
public:
    CodeEditSVFParser();

    qsizetype parse(QStringView in, char16_t* out) override;
};
