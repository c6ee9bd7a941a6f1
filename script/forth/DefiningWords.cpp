// Words that make words, and what gives access to what they made.

#include "script/forth/WordSupport.h"

namespace {

template <class Word> Word* addDataWord(FSContext* context, const X& address, const QString& name)
{
    auto* const word = context->make<Word>(name);
    word->setPFA(context->make<PLiteralChild>(address));
    context->addWord(word);
    return word;
}

} // namespace

void PColon::execute(FSContext* context)
{
    const QString name = parseName(context);
    context->openDefinition(context->make<PColonChild>(name));
}

void PColonNoname::execute(FSContext* context)
{
    auto* const definition = context->make<PColonChild>(QString());
    context->openDefinition(definition);
    context->push(X(definition));
}

void PSemicolon::execute(FSContext* context)
{
    context->ensureCompilationMode();
    const auto colon = context->control().pop<CSColonSys>();
    context->closeDefinition();
    context->setFSState(false);
    if (!colon->definition->name().isEmpty())
        context->addWord(colon->definition);
}

void PDoes::execute(FSContext* context)
{
    context->ensureCompilationMode();
    context->control().top<CSColonSys>();
    auto* const does = context->make<PDoesChild>();
    context->compileNew<PDoesRun>(does);
    context->continueDefinition(does);
}

void PCreate::execute(FSContext* context)
{
    const QString name = parseName(context);
    context->setLatestCreated(
        addDataWord<PCreateChild>(context, context->dataArea()->here(), name));
}

void PVariable::execute(FSContext* context)
{
    const QString name = parseName(context);
    const X address = context->dataArea()->allot(1);
    address.store(X());
    addDataWord<PVariableChild>(context, address, name);
}

void PConstant::execute(FSContext* context)
{
    const X value = context->pop();
    newConstant(context, parseName(context), value);
}

void PValue::execute(FSContext* context)
{
    const X value = context->pop();
    context->addWord(context->make<PValueChild>(parseName(context), value));
}

void PTo::execute(FSContext* context)
{
    pcode* const store = parseWordToFind(context)->getToMethod();
    if (context->getFSState())
        context->compile(context->own(store->copy()));
    else
        store->execute(context);
}

void PImmediate::execute(FSContext* context)
{
    PCFA* const word = context->latest();
    word->setFlags(word->flags() | PCFA::Immediate);
}

void PToBody::execute(FSContext* context) { context->pop().getCFA()->getPFA()->execute(context); }
