#include "script/forth/PNodes.h"

#include "script/forth/FSContext.h"

void PLiteralChild::execute(FSContext* context) { context->push(m_value); }

void PExitRun::execute(FSContext* context) { context->branch(nullptr); }

void PBranch::execute(FSContext* context) { context->branch(m_target); }

void PBranch::passLabels()
{
    if (m_target)
        m_target = m_target->next();
}

void PZeroBranch::execute(FSContext* context)
{
    if (!context->pop().isTrue())
        context->branch(target());
}

void POfBranch::execute(FSContext* context)
{
    context->data().demand(2);
    const X wanted = context->pop();
    if (wanted == context->data().pick(0))
        context->pop();
    else
        context->branch(target());
}

void PDoRun::execute(FSContext* context)
{
    context->data().demand(2);
    const X start = context->pop();
    context->beginLoop(context->pop(), start);
}

void PQuestionDoRun::execute(FSContext* context)
{
    context->data().demand(2);
    const X start = context->pop();
    const X limit = context->pop();
    if (start == limit)
        context->branch(target());
    else
        context->beginLoop(limit, start);
}

void PLoopRun::execute(FSContext* context)
{
    if (context->currentLoop().step())
        context->branch(target());
    else
        context->endLoop();
}

void PPlusLoopRun::execute(FSContext* context)
{
    if (context->currentLoop().step(context->popLiteral()))
        context->branch(target());
    else
        context->endLoop();
}

void PLeaveRun::execute(FSContext* context)
{
    context->currentLoop();
    context->endLoop();
    context->branch(target());
}

void PIRun::execute(FSContext* context) { context->push(context->loopAt(0).index()); }

void PJRun::execute(FSContext* context) { context->push(context->loopAt(1).index()); }

void PLocalRun::execute(FSContext* context) { context->push(context->local(m_index)); }

void PPostponeRun::execute(FSContext* context) { context->compile(m_word->reference(context)); }

void PDoesRun::execute(FSContext* context)
{
    if (!context->latestCreated())
        throw ForthException(ForthError::NoBody);
    context->latestCreated()->setDoes(m_does);
    context->branch(nullptr);
}

void PDotQuoteRun::execute(FSContext* context) { context->print(m_text); }

void PCatchRun::execute(FSContext* context) { context->endCatch(); }
