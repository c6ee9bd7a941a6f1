#pragma once

#include "editor/parsers/CodeEditParser.h"

class MarkedLine;

class CodeEditForthParser : public CodeEditParser {
public:
    enum State { Normal = 0, InComment = 1 };

    CodeEditForthParser();

    qsizetype parse(QStringView in, char16_t* out) override;
    QString delimiters() const override;

private:
    void copyToken(MarkedLine& line, QStringView token);

    KeywordSet m_nameWords;
    KeywordSet m_definingWords;
};
