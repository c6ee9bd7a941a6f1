#include "target/TargetJTAGInterface.h"

#include "base/QTx.h"
#include "base/XMLDocument.h"

#include <algorithm>
#include <iterator>

namespace {

constexpr unsigned longestRegister = 4096;
constexpr unsigned probedBits = 256;
constexpr unsigned idcodeBits = 32;
constexpr unsigned mostDevices = 256;
constexpr int resetCycles = 6;

constexpr const char* typeNames[] = {"",      "AVR",   "AVRX", "ARM7",  "ARM9",
                                     "ARM10", "ARM11", "CM3",  "XSCALE"};

/// The number of bits after which ones follow the zeros that were shifted in, below `limit`; 0 if
/// none do.
unsigned firstOne(TargetJTAGInterface& chain, unsigned limit)
{
    for (unsigned p = 0; p < limit; ++p)
        if (chain.readBits(p + limit, p + limit) != 0)
            return p;
    return 0;
}

void shift(TargetJTAGInterface& chain, bool instruction, unsigned bits)
{
    if (instruction)
        chain.shiftInstructionRegister(bits, true);
    else
        chain.shiftDataRegister(bits, true);
}

/// Shifts `limit` zeros and then as many ones.
void shiftZerosAndOnes(TargetJTAGInterface& chain, bool instruction, unsigned limit)
{
    chain.setBits(0, 0, limit - 1);
    chain.setBits(~0u, limit, 2 * limit - 1);
    shift(chain, instruction, 2 * limit);
}

void goIdle(TargetJTAGInterface& chain)
{
    chain.trst();
    chain.runTestIdle();
}

} // namespace

void TargetJTAGInterface::cycleTCK(int n)
{
    for (int i = 0; i < n; ++i)
        cycleTCK();
}

void TargetJTAGInterface::trst()
{
    setTMS(true);
    cycleTCK(resetCycles);
}

void TargetJTAGInterface::runTestIdle()
{
    setTMS(false);
    cycleTCK();
}

unsigned TargetJTAGInterface::detectScanChainLength(bool instruction, unsigned maxBits)
{
    const unsigned limit = std::min(maxBits, longestRegister);
    if (limit == 0)
        return 0;
    shiftZerosAndOnes(*this, instruction, limit);
    return firstOne(*this, limit);
}

void TargetJTAGInterface::probeJTAGDevices(unsigned* idcodes, unsigned& maxDevices,
                                           unsigned& irBits, unsigned* irLengths, unsigned& devices)
{
    const unsigned capacity = maxDevices;
    goIdle(*this);
    shiftZerosAndOnes(*this, true, probedBits);
    irBits = firstOne(*this, probedBits);
    // Each instruction register captures ...01: a one begins a device.
    devices = 0;
    unsigned start = 0;
    for (unsigned p = 0; p <= irBits && irBits != 0; ++p) {
        const bool mark = p == irBits || readBits(p, p) != 0;
        if (!mark)
            continue;
        if (p != 0 && devices++ < capacity)
            irLengths[devices - 1] = p - start;
        start = p;
    }
    shiftZerosAndOnes(*this, false, probedBits);
    const unsigned bypassed = std::min({firstOne(*this, probedBits), capacity, mostDevices});
    goIdle(*this);
    setBits(0, 0, bypassed * idcodeBits - (bypassed != 0 ? 1 : 0));
    if (bypassed != 0)
        shiftDataRegister(bypassed * idcodeBits, true);
    unsigned at = 0;
    for (unsigned i = 0; i < bypassed; ++i) {
        const bool has = readBits(at, at) != 0;
        idcodes[i] = has ? readBits(at, at + idcodeBits - 1) : 0;
        at += has ? idcodeBits : 1;
    }
    maxDevices = bypassed;
}

bool TargetJTAGInterface::identifyDevice(unsigned idcode, DeviceType& type)
{
    return identifyDevice(QTx::rootDirectory() + QStringLiteral("/targets/devices.xml"), idcode,
                          type);
}

bool TargetJTAGInterface::identifyDevice(const QString& deviceFile, unsigned idcode,
                                         DeviceType& type)
{
    XMLDocument document;
    if (!document.load(deviceFile) || document.documentElement() == nullptr)
        return false;
    for (const XMLElement& device : document.documentElement()->children()) {
        const unsigned code = device.attribute("idcode").toUInt(nullptr, 0);
        const unsigned mask = device.attribute("mask").toUInt(nullptr, 0);
        if (!device.hasTag("device") || (idcode & mask) != code)
            continue;
        const QString name = device.attribute("type");
        const auto* found =
            std::find_if(std::begin(typeNames), std::end(typeNames),
                         [&](const char* entry) { return name == QLatin1String(entry); });
        type = found == std::end(typeNames) ? DeviceType::Unknown
                                            : static_cast<DeviceType>(found - typeNames);
        return true;
    }
    return false;
}
