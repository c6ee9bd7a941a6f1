#pragma once

#include "editor/parsers/CodeEditStandardParser.h"

/// Assembly language. The word behind the first white space of a line is taken for the mnemonic,
/// whatever it is.
class CodeEditAssemblyParser : public CodeEditStandardParser {
public:
    CodeEditAssemblyParser();

    qsizetype parse(QStringView in, char16_t* out) override;
};
