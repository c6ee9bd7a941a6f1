#pragma once

#include "build/projectsystem/TOBFProjectSystem.h"

/// The project system for the MSP430.
class MSP430ProjectSystem : public TOBFProjectSystem {
public:
    void appendLinkerProperties(PropertyClassList& list) override;
    /// Brings files of version 1 up to date: they named the section placement among their files,
    /// and had the target's properties of their time.
    void munge(ProjectElement* element) override;

private:
    void mungeProject(ProjectElement* project);
};
