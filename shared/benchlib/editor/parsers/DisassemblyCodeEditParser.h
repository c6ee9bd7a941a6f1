#pragma once

#include "editor/parsers/CodeEditParser.h"

/// What the disassembly shows: instructions, labels, rules and lines of source.
class DisassemblyCodeEditParser : public CodeEditParser {
public:
    /// Each "-" of a rule is shown as an em dash.
    qsizetype parse(QStringView in, char16_t* out) override;
};
