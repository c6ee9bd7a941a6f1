// Locals: those that take their first value from the stack, and those that begin as 0.

#include "script/forth/WordSupport.h"

namespace {

void declare(FSContext* context, bool initialised)
{
    const QString name = forthPopString(context);
    context->checkDefinitionOpen();
    if (!name.isEmpty()) // an empty name ends a list
        context->addLocal(name, initialised);
}

void declareNames(FSContext* context, bool initialised)
{
    context->ensureCompilationMode();
    for (QString name = parseName(context); name != u"|"; name = parseName(context))
        context->addLocal(name, initialised);
}

} // namespace

// clang-format off
void PParenLocal::execute(FSContext* context) { declare(context, true); }
void PParenTemp::execute(FSContext* context) { declare(context, false); }
void PLocalsBar::execute(FSContext* context) { declareNames(context, true); }
void PTempsBar::execute(FSContext* context) { declareNames(context, false); }
// clang-format on
