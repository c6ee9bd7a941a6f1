#include "script/forth/PCFA.h"

#include "script/forth/FSContext.h"
#include "script/forth/PNodes.h"

#include <vector>

void PCFA::execute(FSContext* context) { m_first->execute(context); }

pcode* PCFA::reference(FSContext* context)
{
    if (std::unique_ptr<pcode> node = m_first->copy())
        return context->own(std::move(node));
    return context->make<PCall>(this);
}

void PCFA::addPcode(pcode* code)
{
    if (m_closed)
        throw ForthException(ForthError::Sealed);
    if (m_last)
        m_last->setNext(code);
    else
        m_first = code;
    m_last = code;
}

void PCFA::close()
{
    if (m_closed)
        return;
    m_closed = true;
    std::vector<pcode*> body;
    for (pcode* node = m_first; node; node = node->next())
        body.push_back(node);
    // Backwards, so that what follows a label leads behind all labels already.
    const auto behindLabel = [](pcode* node) {
        return dynamic_cast<PLabel*>(node) ? node->next() : node;
    };
    for (auto node = body.rbegin(); node != body.rend(); ++node)
        (*node)->setNext(behindLabel((*node)->next()));
    m_first = behindLabel(m_first);
    for (pcode* node : body)
        node->passLabels();
}

void PColonChild::execute(FSContext* context) { context->enter(this); }

pcode* PColonChild::reference(FSContext* context) { return context->make<PCall>(this); }

void PCreateChild::execute(FSContext* context)
{
    pfa()->execute(context);
    if (m_does)
        context->enter(m_does);
}

pcode* PCreateChild::reference(FSContext* context) { return context->make<PCall>(this); }

pcode* PVariableChild::reference(FSContext* context) { return context->own(pfa()->copy()); }

void PConstantChild::execute(FSContext* context) { context->push(m_value); }

pcode* PConstantChild::reference(FSContext* context)
{
    return context->make<PLiteralChild>(m_value);
}

void PValueChild::execute(FSContext* context) { context->push(m_value); }

pcode* PValueChild::reference(FSContext* context) { return context->make<PCall>(this); }

void PValueChild::Store::execute(FSContext* context) { *m_value = context->pop(); }

void PLocalChild::execute(FSContext*) { throw ForthException(ForthError::OutOfContext); }

pcode* PLocalChild::reference(FSContext* context) { return context->make<PLocalRun>(m_index); }

void PLocalChild::PLocalStore::execute(FSContext* context)
{
    context->local(m_index) = context->pop();
}
