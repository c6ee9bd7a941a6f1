// Control structures: what compiles branches, and keeps their ends on the control stack.

#include "script/forth/WordSupport.h"

namespace {

ControlStack& control(FSContext* context)
{
    context->ensureCompilationMode();
    return context->control();
}

PLabel* compileLabel(FSContext* context)
{
    PLabel* const label = context->get_label();
    context->compile(label);
    return label;
}

void landHere(FSContext* context, PBranch* branch) { branch->setTarget(compileLabel(context)); }

void landHere(FSContext* context, const std::vector<PBranch*>& branches)
{
    PLabel* const label = compileLabel(context);
    for (PBranch* branch : branches)
        branch->setTarget(label);
}

template <class Branch> void compileLoopEnd(FSContext* context)
{
    const std::unique_ptr<CSDoSys> loop = control(context).pop<CSDoSys>();
    context->compileNew<Branch>(loop->label);
    landHere(context, loop->leaves);
}

template <class Branch> void compileBackward(FSContext* context)
{
    context->compileNew<Branch>(control(context).pop<CSDest>()->label);
}

} // namespace

void PIf::execute(FSContext* context)
{
    control(context).open<CSOrig>(context->compileNew<PZeroBranch>());
}

// Not immediate, so that it may run in brackets, in interpreting state.
void PAhead::execute(FSContext* context)
{
    context->checkDefinitionOpen();
    context->control().open<CSOrig>(context->compileNew<PBranch>());
}

void PElse::execute(FSContext* context)
{
    const auto condition = control(context).pop<CSOrig>();
    context->control().open<CSOrig>(context->compileNew<PBranch>());
    landHere(context, condition->branch);
}

void PThen::execute(FSContext* context)
{
    landHere(context, control(context).pop<CSOrig>()->branch);
}

void PBegin::execute(FSContext* context) { control(context).open<CSDest>(compileLabel(context)); }

void PWhile::execute(FSContext* context)
{
    auto start = control(context).pop<CSDest>();
    context->control().open<CSOrig>(context->compileNew<PZeroBranch>());
    context->control().push(std::move(start));
}

void PRepeat::execute(FSContext* context)
{
    compileBackward<PBranch>(context);
    landHere(context, context->control().pop<CSOrig>()->branch);
}

void PUntil::execute(FSContext* context) { compileBackward<PZeroBranch>(context); }

void PAgain::execute(FSContext* context) { compileBackward<PBranch>(context); }

void PCase::execute(FSContext* context) { control(context).open<CSCaseSys>(); }

void POf::execute(FSContext* context)
{
    control(context).top<CSCaseSys>();
    context->control().open<CSOfSys>(context->compileNew<POfBranch>());
}

void PEndof::execute(FSContext* context)
{
    const auto open = control(context).pop<CSOfSys>();
    context->control().top<CSCaseSys>().exits.push_back(context->compileNew<PBranch>());
    landHere(context, open->branch);
}

void PEndcase::execute(FSContext* context)
{
    const auto cases = control(context).pop<CSCaseSys>();
    context->compileNew<PDrop>();
    landHere(context, cases->exits);
}

void PDo::execute(FSContext* context)
{
    control(context);
    context->compileNew<PDoRun>();
    context->control().open<CSDoSys>(compileLabel(context));
}

void PQuestionDo::execute(FSContext* context)
{
    control(context);
    auto* const start = context->compileNew<PQuestionDoRun>();
    context->control().open<CSDoSys>(compileLabel(context));
    context->control().top<CSDoSys>().leaves.push_back(start);
}

void PLoop::execute(FSContext* context) { compileLoopEnd<PLoopRun>(context); }

void PPlusLoop::execute(FSContext* context) { compileLoopEnd<PPlusLoopRun>(context); }

void PLeave::execute(FSContext* context)
{
    CSDoSys* const loop = control(context).find<CSDoSys>();
    context->spend(static_cast<qint64>(context->control().depth() / 16));
    if (!loop)
        throw ForthException(ForthError::LeaveOutsideLoop);
    loop->leaves.push_back(context->compileNew<PLeaveRun>());
}

void PI::execute(FSContext* context)
{
    context->ensureCompilationMode();
    context->compileNew<PIRun>();
}

void PJ::execute(FSContext* context)
{
    context->ensureCompilationMode();
    context->compileNew<PJRun>();
}

void PExit::execute(FSContext* context)
{
    context->ensureCompilationMode();
    context->compileNew<PExitRun>();
}

void PRecurse::execute(FSContext* context)
{
    auto* const colon = dynamic_cast<CSColonSys*>(control(context).bottom());
    if (!colon || colon->definition != context->definition())
        throw ForthException(ForthError::InvalidRecursion);
    context->compileNew<PCall>(colon->definition);
}
