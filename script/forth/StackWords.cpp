// Words that move cells between and within the stacks.

#include "script/forth/WordSupport.h"

#include <algorithm>

namespace {

/// Turns the upper `count` cells so that the one `by` places below the top of them comes to be the
/// lowest but `by`.
void rotate(Stack& stack, int count, int by)
{
    stack.demand(count);
    X* const top = &stack.pick(0);
    X* const first = top - (count - 1);
    std::rotate(first, first + by, top + 1);
}

void copyPair(FSContext* context, Stack& from, int depth)
{
    from.demand(depth + 2);
    X low = from.pick(depth + 1);
    X high = from.pick(depth);
    context->push(std::move(low));
    context->push(std::move(high));
}

} // namespace

void PDup::execute(FSContext* context) { context->push(context->data().pick(0)); }

void PQuestionDup::execute(FSContext* context)
{
    if (context->data().pick(0).isTrue())
        context->push(context->data().pick(0));
}

void PDrop::execute(FSContext* context) { context->pop(); }

void PSwap::execute(FSContext* context)
{
    Stack& stack = context->data();
    std::swap(stack.pick(1), stack.pick(0));
}

void POver::execute(FSContext* context) { context->push(context->data().pick(1)); }

void PNip::execute(FSContext* context)
{
    Stack& stack = context->data();
    stack.demand(2);
    X top = stack.pop();
    stack.pick(0) = std::move(top);
}

void PTuck::execute(FSContext* context)
{
    rotate(context->data(), 2, 1);
    context->push(context->data().pick(1));
}

void PRot::execute(FSContext* context) { rotate(context->data(), 3, 1); }

void PMinusRot::execute(FSContext* context) { rotate(context->data(), 3, 2); }

void PPick::execute(FSContext* context)
{
    context->push(context->data().pick(context->popLiteral()));
}

void PRoll::execute(FSContext* context)
{
    const qint64 depth = context->popLiteral();
    context->data().pick(depth);
    rotate(context->data(), static_cast<int>(depth) + 1, 1);
}

void PDepth::execute(FSContext* context) { context->push(context->data().depth()); }

void PTwoDrop::execute(FSContext* context)
{
    context->pop();
    context->pop();
}

void PTwoDup::execute(FSContext* context) { copyPair(context, context->data(), 0); }

void PTwoOver::execute(FSContext* context) { copyPair(context, context->data(), 2); }

void PTwoSwap::execute(FSContext* context) { rotate(context->data(), 4, 2); }

void PToR::execute(FSContext* context) { context->returns().push(context->pop()); }

void PRFrom::execute(FSContext* context)
{
    context->demandReturns(1);
    context->push(context->returns().pop());
}

void PRFetch::execute(FSContext* context)
{
    context->demandReturns(1);
    context->push(context->returns().pick(0));
}

void PTwoToR::execute(FSContext* context)
{
    X high = context->pop();
    context->returns().push(context->pop());
    context->returns().push(std::move(high));
}

void PTwoRFrom::execute(FSContext* context)
{
    PTwoRFetch().execute(context);
    context->returns().pop();
    context->returns().pop();
}

void PTwoRFetch::execute(FSContext* context)
{
    context->demandReturns(2);
    copyPair(context, context->returns(), 0);
}
