#include "target/TargetInterfaceHelperFunctions.h"

namespace {

TargetInterfaceHelperFunctions silentHost;
TargetInterfaceHelperFunctions* host = &silentHost;

} // namespace

TargetInterfaceHelperFunctions* targetInterfaceHelperFunctions() { return host; }

void setTargetInterfaceHelperFunctions(TargetInterfaceHelperFunctions* functions)
{
    host = functions != nullptr ? functions : &silentHost;
}
