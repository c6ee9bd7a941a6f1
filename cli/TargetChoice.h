#pragma once

#include "base/HException.h"

#include <QStringList>

class TargetInterface;
class TargetList;

/// The target of that name, or the first for an empty one. Throws HException, which tells the names
/// that there are.
TargetInterface& chooseTarget(const TargetList& list, const QString& name);

/// The file of the targets that the installation brings.
QString installedTargets();

/// "there is no WHAT NAME; there are: ...".
HException missing(const QString& what, const QString& name, const QStringList& known);
