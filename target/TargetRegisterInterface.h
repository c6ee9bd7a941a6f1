#pragma once

#include <QString>

/// The register file of a target, by register number.
class TargetRegisterInterface {
public:
    virtual ~TargetRegisterInterface() = default;
    virtual unsigned numRegisters() = 0;
    /// Null string for a number that names no register.
    virtual QString numberToName(unsigned number) = 0;
    /// -1 for an unknown name.
    virtual int nameToNumber(QString name) = 0;
    virtual unsigned sizeInBytes(unsigned number) = 0;
    virtual unsigned getValue(unsigned number) = 0;
    virtual void setValue(unsigned number, unsigned value) = 0;
    virtual unsigned pcIndex() const = 0;
    virtual unsigned getPC() = 0;
    virtual unsigned getSP() = 0;
    virtual void setPC(unsigned value) = 0;
};
