#pragma once

#include "editor/parsers/CodeEditParser.h"

class MarkedLine;

/// Languages that look like C: comments of both kinds, documentation comments, texts in quotes,
/// directives behind "#".
class CodeEditStandardParser : public CodeEditParser {
public:
    enum State {
        Normal = 0,
        InComment = 1,
        InDocumentation = 3,
        InDocumentedCode = 4,
        // Inside of a text it is the quote.
    };

    using CodeEditParser::CodeEditParser;

    qsizetype parse(QStringView in, char16_t* out) override;

protected:
    // What other parsers share. Each begins where its beginning was seen.

    /// Up to the closing quote; the state tells whether the text goes on in the next line.
    void copyLiteral(MarkedLine& line);
    /// A comment that may go on in the next lines, with its words checked.
    void copyComment(MarkedLine& line);
    /// Up to the end of the line, with its words checked.
    static void copyLineComment(MarkedLine& line);

private:
    void copyDocumentation(MarkedLine& line);
    int styleOf(QStringView word) const;
};

class CodeEditCParser : public CodeEditStandardParser {
public:
    CodeEditCParser();
};

class CodeEditJavaParser : public CodeEditStandardParser {
public:
    CodeEditJavaParser();
};

class CodeEditJavaScriptParser : public CodeEditStandardParser {
public:
    CodeEditJavaScriptParser();
};

class CodeEditBatchParser : public CodeEditStandardParser {
public:
    CodeEditBatchParser();
};
