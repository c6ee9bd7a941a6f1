#include "cli/TargetChoice.h"

#include "base/QTx.h"
#include "target/control/TargetList.h"

using namespace Qt::Literals::StringLiterals;

TargetInterface& chooseTarget(const TargetList& list, const QString& name)
{
    QStringList names;
    for (const TargetListItem& item : list) {
        if (name.isEmpty() || item.target->title() == name)
            return *item.target;
        names << item.target->title();
    }
    throw missing(u"target"_s, name, names);
}

QString installedTargets() { return QTx::rootDirectory() + u"/targets/targets.xml"_s; }

HException missing(const QString& what, const QString& name, const QStringList& known)
{
    const QString others =
        known.isEmpty() ? u"there are none"_s : u"there are: "_s + known.join(u", "_s);
    return HException(u"there is no %1 %2; %3"_s.arg(what, name, others).toStdString());
}
