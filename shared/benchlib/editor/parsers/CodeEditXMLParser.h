#pragma once

#include "editor/parsers/CodeEditParser.h"

/// XML and HTML.
class CodeEditXMLParser : public CodeEditParser {
public:
    enum State {
        Normal = 0,
        InComment = 1,
        InTag = 2,
        InInstruction = 3,
        InValue = 4,
        InEntity = 5, ///< never beyond its line
    };

    qsizetype parse(QStringView in, char16_t* out) override;
    QString delimiters() const override;
};
