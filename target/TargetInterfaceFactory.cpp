#include "target/TargetInterfaceFactory.h"

#include "target/msp430/MSP430TargetInterfaceFactory.h"

#include <cstring>

std::unique_ptr<TargetInterface> TargetInterfaceFactory::create(const char*) { return nullptr; }

const char* TargetInterfaceFactory::classnameFromShortname(const char* shortname) const
{
    for (const TargetInterfaceInfo& info : m_infos)
        if (std::strcmp(info.shortname, shortname) == 0)
            return info.classname;
    return nullptr;
}

TargetInterfaceFactory* TargetInterfaceFactory::instance()
{
    static MSP430TargetInterfaceFactory factory;
    return &factory;
}
