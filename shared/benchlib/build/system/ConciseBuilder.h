#pragma once

#include "projects/solution/Builder.h"

/// Runs nothing: asks whether anything would build, and how many steps there are.
class ConciseBuilder : public Builder {
public:
    void beginGroup(ProjectElement*, const QString&, unsigned) override { }
    void endGroup(ProjectElement*) override { }
    void init() override { }
    void setDirectory(const QString&) override { }
    void setCommand(const QStringList&) override { }
    void setEnvironment(const QStringList&) override { }
    void setOutputFiles(const QStringList&) override { }
    void setTemporaryFiles(const QStringList&) override { }
    void doit() override { }
    void nextStep() override { ++m_steps; }
    void error(const QString&) override { }
    bool executes() const override { return false; }

    int steps() const { return m_steps; }

private:
    int m_steps = 0;
};
