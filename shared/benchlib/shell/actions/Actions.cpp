#include "shell/actions/Actions.h"

using namespace Qt::Literals::StringLiterals;

Actions* actions = nullptr;

Actions::Actions(QObject* parent) : QObject(parent)
{
#define ACTION(member, name) member = new BenchAction(u"" name ""_s, this);
#define DEFERRED_ACTION(member, name) member = new DeferredBenchAction(u"" name ""_s, this);
#define PROPERTY_ACTION(member, name, key)                                                         \
    member = new PropertyAction(u"" name ""_s, u"" key ""_s, this);
#include "shell/actions/Actions.inc"
}

BenchAction* Actions::find(const QString& name) const
{
    return findChild<BenchAction*>(name, Qt::FindDirectChildrenOnly);
}

bool Actions::activate(const QString& name)
{
    BenchAction* const action = name.isEmpty() ? nullptr : find(name);
    if (!action)
        return false;
    if (action->isEnabled())
        action->trigger();
    return true;
}

QList<BenchAction*> Actions::all() const
{
    return findChildren<BenchAction*>(QString(), Qt::FindDirectChildrenOnly);
}
