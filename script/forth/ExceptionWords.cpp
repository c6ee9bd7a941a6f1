// Words that throw and catch.

#include "script/forth/WordSupport.h"

void PAbort::execute(FSContext*) { throw ForthException(ForthError::Abort); }

void PThrow::execute(FSContext* context)
{
    if (const qint64 code = context->popLiteral())
        throw ForthException(code);
}

void PCatch::execute(FSContext* context) { context->beginCatch(context->pop().getCFA()); }
