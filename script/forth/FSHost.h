#pragma once

#include <QString>

/// Where a Forth context lives: what it prints to, and who may stop it.
class FSHost {
public:
    virtual ~FSHost() = default;
    virtual void output(const QString& text) = 0;
    /// Asked now and then while words run; false ends them with "user interrupt".
    virtual bool carryOnExecuting() { return true; }
};
