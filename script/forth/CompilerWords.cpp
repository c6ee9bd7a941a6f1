// Words that steer the compiler and the text interpreter.

#include "script/forth/WordSupport.h"

namespace {

X codeAddress(PCFA* word) { return X(static_cast<pcode*>(word)); }

void pushWhetherDefined(FSContext* context, bool wanted)
{
    context->push(X::flag((context->findWord(parseName(context)) != nullptr) == wanted));
}

/// Passes over text up to the [THEN] of an [IF], or its [ELSE].
void skipConditional(FSContext* context, bool stopAtElse)
{
    for (qint64 nested = 0;;) {
        context->spend(1);
        const QString word = parseWord(context, u' ', true, true);
        if (word.isEmpty()) {
            if (!context->refill())
                throw ForthException(ForthError::UnexpectedEnd);
        } else if (word == u"[IF]") {
            ++nested;
        } else if (word == u"[THEN]") {
            if (nested-- == 0)
                return;
        } else if (word == u"[ELSE]" && nested == 0 && stopAtElse) {
            return;
        }
    }
}

} // namespace

// clang-format off
void PLeftBracket::execute(FSContext* context) { context->setFSState(false); }
void PRightBracket::execute(FSContext* context) { context->setFSState(true); }
void PTick::execute(FSContext* context) { context->push(codeAddress(parseWordToFind(context))); }
void PExecute::execute(FSContext* context) { context->pop().getCFA()->execute(context); }
void PBracketDefined::execute(FSContext* context) { pushWhetherDefined(context, true); }
void PBracketUndefined::execute(FSContext* context) { pushWhetherDefined(context, false); }
void PBracketElse::execute(FSContext* context) { skipConditional(context, false); }
void PBracketThen::execute(FSContext*) { }
// clang-format on

void PBracketIf::execute(FSContext* context)
{
    if (!context->pop().isTrue())
        skipConditional(context, true);
}

void PLiteral::execute(FSContext* context)
{
    context->ensureCompilationMode();
    context->compileNew<PLiteralChild>(context->pop());
}

void PBracketTick::execute(FSContext* context)
{
    context->ensureCompilationMode();
    context->compileNew<PLiteralChild>(codeAddress(parseWordToFind(context)));
}

void PCompileComma::execute(FSContext* context)
{
    PCFA* const word = context->pop().getCFA();
    context->checkDefinitionOpen();
    context->compile(word->reference(context));
}

void PBracketCompile::execute(FSContext* context)
{
    context->ensureCompilationMode();
    context->compile(parseWordToFind(context)->reference(context));
}

void PPostpone::execute(FSContext* context)
{
    context->ensureCompilationMode();
    PCFA* const word = parseWordToFind(context);
    if (word->isImmediate())
        context->compile(word->reference(context));
    else
        context->compileNew<PPostponeRun>(word);
}
