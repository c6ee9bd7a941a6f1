#pragma once

#include "editor/parsers/CodeEditParser.h"

class MarkedLine;

/// The mark-up of documentation: whole files of it, and comments that begin with "/*!".
class CodeEditDocGenParser : public CodeEditParser {
public:
    enum State { Normal = 0, InCode = 4 };

    qsizetype parse(QStringView in, char16_t* out) override;

    /// Up to the end of the line or, in a comment, ahead of its end. The state becomes InCode
    /// inside of \code, and that of the documentation behind \endcode.
    static void scan(MarkedLine& line, bool inComment, int& state);
};
