#pragma once

#include "shell/actions/BenchAction.h"

/// Every command of the program. Each is a child with its name.
class Actions : public QObject {
    Q_OBJECT
public:
    /// The texts come from the builder and the settings from the environment that there are by
    /// then.
    explicit Actions(QObject* parent = nullptr);

    /// Null for a name that there isn't.
    BenchAction* find(const QString& name) const;
    /// Carries a command out, unless it is disabled. False if there is no such command.
    bool activate(const QString& name);
    QList<BenchAction*> all() const;

#define ACTION(member, name) BenchAction* member = nullptr;
#define DEFERRED_ACTION(member, name) DeferredBenchAction* member = nullptr;
#define PROPERTY_ACTION(member, name, key) PropertyAction* member = nullptr;
#include "shell/actions/Actions.inc"
};

/// Null until its owner sets it.
extern Actions* actions;
