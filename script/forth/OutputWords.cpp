// Words that print.

#include "script/forth/WordSupport.h"

namespace {

void printSpaces(FSContext* context, qint64 count)
{
    constexpr qint64 Chunk = 4096;
    for (; count > 0; count -= Chunk) {
        context->print(QString(std::min(count, Chunk), u' '));
        context->spend(Chunk);
    }
}

/// As a program would have to write it.
QString quoted(const X& x) { return x.isString() ? u'"' + x.str() + u'"' : x.toString(); }

} // namespace

// clang-format off
void PDot::execute(FSContext* context) { context->print(context->pop().toString() + u' '); }
void PCr::execute(FSContext* context) { context->print(u'\n'); }
void PSpace::execute(FSContext* context) { context->print(u' '); }
void PSpaces::execute(FSContext* context) { printSpaces(context, context->popLiteral()); }
void PEmit::execute(FSContext* context) { context->print(characterText(context->popLiteral())); }
void PDotParen::execute(FSContext* context) { context->print(parseTo(context, u')')); }
// clang-format on

void PDotR::execute(FSContext* context)
{
    const qint64 width = context->popLiteral();
    const QString text = context->pop().toString();
    printSpaces(context, width - text.size());
    context->print(text);
}

void PDotS::execute(FSContext* context)
{
    Stack& stack = context->data();
    context->print(u'<' + QString::number(stack.depth()) + QStringLiteral("> "));
    for (int n = stack.depth(); n-- > 0;)
        context->print(quoted(stack.pick(n)) + u' ');
    context->spend(stack.depth());
}

void PDotQuote::execute(FSContext* context)
{
    const QString text = parseTo(context, u'"');
    if (context->getFSState())
        context->compileNew<PDotQuoteRun>(text);
    else
        context->print(text);
}
