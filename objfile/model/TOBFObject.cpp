#include "objfile/model/TOBFObject.h"

#include "objfile/model/TOBFScope.h"

void TOBFObject::setScope(TOBFScope* scope)
{
    if (m_scope != nullptr)
        return;
    m_scope = scope;
    if (scope != nullptr)
        scope->enter(this);
}
