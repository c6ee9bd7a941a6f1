#pragma once

#include "debugger/expressions/Lexer.h"

/// Tokens in the manner of C.
class CStyleLexer : public Lexer {
public:
    enum Token {
        Decimal = 3,
        Hexadecimal = 4,
        Floating = 5,
        String = 6,
        Identifier = 7,
        Register = 8,
        Semicolon = 9,
        Colon = 10,
        Scope = 11,
        OpenParenthesis = 12,
        CloseParenthesis = 13,
        OpenBracket = 14,
        CloseBracket = 15,
        OpenBrace = 16,
        CloseBrace = 17,
        Dot = 18,
        Arrow = 19,
        Increment = 20,
        Decrement = 21,
        Tilde = 22,
        Exclamation = 23,
        Star = 24,
        Slash = 25,
        Percent = 26,
        Plus = 27,
        Minus = 28,
        ShiftLeft = 29,
        ShiftRight = 30,
        ShiftRightUnsigned = 31,
        Less = 32,
        LessEqual = 33,
        Greater = 34,
        GreaterEqual = 35,
        Equal = 36,
        NotEqual = 37,
        Ampersand = 38,
        Caret = 39,
        Bar = 40,
        LogicalAnd = 41,
        LogicalOr = 42,
        Question = 43,
        Assign = 44,
        PlusAssign = 45,
        MinusAssign = 46,
        StarAssign = 47,
        SlashAssign = 48,
        PercentAssign = 49,
        ShiftRightAssign = 50,
        ShiftLeftAssign = 51,
        ShiftRightUnsignedAssign = 52,
        AmpersandAssign = 53,
        CaretAssign = 54,
        BarAssign = 55,
        Comma = 56,
    };

protected:
    Match match(std::string_view rest) const override;
};
