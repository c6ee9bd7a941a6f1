#pragma once

#include "target/TargetInterface.h"

class TOBFModule;

/// A target that runs programs of the native object format.
class TOBFTargetInterface : public TargetInterface {
public:
    using TargetInterface::TargetInterface;
    /// Sets the PC if asked, then runs or, with `stayStopped`, stays where it is.
    virtual void startDebugging(bool setPC, unsigned pc, bool stayStopped) = 0;
    /// Programs every loadable section. Throws HException.
    virtual void loadTOBFModule(TOBFModule* module);
    /// Throws HException "Section NAME is too big for target" if the code memory has no room.
    void checkTOBFModuleMemoryExists(TOBFModule* module);
};
