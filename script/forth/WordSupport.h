#pragma once

#include "script/forth/FSContext.h"
#include "script/forth/ForthCore.h"
#include "script/forth/ForthInterpreter.h"

/// Shapes that many words have. Operands are taken before anything can fail.

template <class Operation> void unary(FSContext* context, Operation operation)
{
    const X operand = context->pop();
    context->push(operation(operand));
}

template <class Operation> void binary(FSContext* context, Operation operation)
{
    const X right = context->pop();
    const X left = context->pop();
    context->push(operation(left, right));
}

/// ( x1 x2 -- flag )
template <class Comparison> void compare(FSContext* context, Comparison comparison)
{
    binary(context, [&](const X& a, const X& b) { return X::flag(comparison(a, b)); });
}

/// ( x -- flag ) of a comparison with 0
template <class Comparison> void compareZero(FSContext* context, Comparison comparison)
{
    unary(context, [&](const X& x) { return X::flag(comparison(x, X(0))); });
}

/// A word named by the text that follows; throws -13 if there is none.
inline PCFA* parseWordToFind(FSContext* context)
{
    const QString name = parseName(context);
    PCFA* const word = context->findWord(name);
    if (!word)
        throw ForthException(ForthError::UndefinedWord).about(name);
    return word;
}

/// The text of a string cell, or of memory whose first cell counts the characters behind it.
inline QString countedText(FSContext* context, const X& string)
{
    return string.isString() ? string.str() : textAt(context, string + X(1), string.fetch().lit());
}
