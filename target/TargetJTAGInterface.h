#pragma once

#include <QString>

#include <vector>

/// What kind of device an IDCODE tells.
enum class DeviceType { Unknown, AVR, AVRX, ARM7, ARM9, ARM10, ARM11, CM3, XSCALE };

/// The raw scan chain of a target. Scans go through one buffer: what setBits puts there is shifted
/// out, and what has been shifted in is read from there. Bit 0 is shifted first; it belongs to the
/// device nearest to TDO.
class TargetJTAGInterface {
public:
    /// Bits that a scan may have.
    static constexpr unsigned MaximumScan = 8192;

    virtual ~TargetJTAGInterface() = default;

    /// Bits `first` to `last` of what the last scan captured, at most 32 of them.
    virtual unsigned readBits(unsigned first, unsigned last) = 0;
    /// Sets those bits of the scan's output. Behind the 32 bits of `value` its highest bit is
    /// repeated, so that 0 and ~0 fill runs of any length.
    virtual void setBits(unsigned value, unsigned first, unsigned last) = 0;
    /// `leave`: go to run-test/idle behind the last bit.
    virtual void shiftInstructionRegister(unsigned bits, bool leave) = 0;
    virtual void shiftDataRegister(unsigned bits, bool leave) = 0;
    virtual void setTMS(bool high) = 0;
    virtual void setTDI(bool high) = 0;
    virtual void cycleTCK() = 0;
    virtual void cycleTCK(int n);
    /// To the state test logic reset.
    virtual void trst();
    virtual void runTestIdle();

    /// Bits of the instruction or data registers in the chain, 0 if it isn't closed or has more
    /// than min(maxBits, 4096).
    unsigned detectScanChainLength(bool instruction, unsigned maxBits);
    /// What is in the chain: on the way in `maxDevices` is the room in both arrays, behind it the
    /// number of IDCODEs stored (0 for a device without one). `irBits` is the length of all
    /// instruction registers, `irLengths` that of each, and `devices` their number.
    void probeJTAGDevices(unsigned* idcodes, unsigned& maxDevices, unsigned& irBits,
                          unsigned* irLengths, unsigned& devices);

    /// Looks the code up in "/targets/devices.xml" under the system's root. False if it isn't
    /// there, or the file can't be read.
    static bool identifyDevice(unsigned idcode, DeviceType& type);
    static bool identifyDevice(const QString& deviceFile, unsigned idcode, DeviceType& type);
};
