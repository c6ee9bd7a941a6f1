#include "target/TargetInterface.h"

TargetInterface::~TargetInterface() = default;

void TargetInterface::setCapability(unsigned bits, bool on)
{
    m_capabilities = on ? m_capabilities | bits : m_capabilities & ~bits;
}
