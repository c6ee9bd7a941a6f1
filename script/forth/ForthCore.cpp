#include "script/forth/ForthCore.h"

#include "script/forth/FSContext.h"

void addDictionary(FSContext* context, pcode* code, const QString& name, int flags)
{
    auto* word = context->make<PCFA>(name);
    word->addPcode(code);
    word->close();
    word->setFlags(flags);
    context->addWord(word);
}

void newConstant(FSContext* context, const QString& name, const X& value)
{
    context->addWord(context->make<PConstantChild>(name, value));
}

void init_core(FSContext* context)
{
#define FORTH_ADD_WORD(Class, text, flags)                                                         \
    addDictionary(context, context->make<Class>(), QStringLiteral(text), flags);
    FORTH_CORE_WORDS(FORTH_ADD_WORD, PCFA::Immediate)
#undef FORTH_ADD_WORD
    newConstant(context, QStringLiteral("TRUE"), X::flag(true));
    newConstant(context, QStringLiteral("FALSE"), X::flag(false));
}
