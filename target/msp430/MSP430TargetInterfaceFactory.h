#pragma once

#include "target/TargetInterfaceFactory.h"

class MSP430TargetInterfaceFactory : public TargetInterfaceFactory {
public:
    MSP430TargetInterfaceFactory();
    std::unique_ptr<TargetInterface> create(const char* classname) override;
};
