#include "objfile/model/RecursionLimit.h"

#include "base/HException.h"

int RecursionLimit::s_depth = 0;
int RecursionLimit::s_steps = 0;

void RecursionLimit::check() const
{
    if (tooDeep())
        throw HException("object file is nested too deeply");
}
