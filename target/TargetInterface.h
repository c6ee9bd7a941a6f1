#pragma once

#include "target/TargetMemoryInterface.h"
#include "target/TargetRegisterInterface.h"

#include <QString>

#include <cstdint>

/// A connection to one target. Every operation reports failure by throwing HException. On the
/// simulator `go` returns when the target has stopped; on hardware, once it runs.
class TargetInterface {
public:
    TargetInterface(QString title, unsigned capabilities)
        : m_title(std::move(title)),
          m_capabilities(capabilities)
    {
    }
    virtual ~TargetInterface();
    TargetInterface(const TargetInterface&) = delete;
    TargetInterface& operator=(const TargetInterface&) = delete;

    virtual void connect(bool identify) = 0;
    virtual void disconnect() = 0;
    virtual bool isConnected() const = 0;
    virtual bool isStopped() = 0;
    virtual TargetMemoryInterface* codeMemory() = 0;
    virtual TargetMemoryInterface* dataMemory() = 0;
    virtual TargetRegisterInterface* registers() { return nullptr; }
    virtual std::uint64_t cycleCount() const { return 0; }
    virtual unsigned capabilities() const { return m_capabilities; }
    virtual void setCapability(unsigned bits, bool on);
    virtual void reset(bool stayStopped, bool forDownload) = 0;
    virtual void go() = 0;
    /// Sets the PC if asked, then runs.
    virtual void start(bool setPC, unsigned pc) = 0;
    virtual void step() = 0;
    virtual void stop() = 0;
    /// Forgets all breakpoints and trace state.
    virtual void clear() = 0;
    virtual int getNumInterrupts() { return 0; }
    virtual void getInterruptInformation(unsigned, unsigned&, QString&, QString&) { }
    virtual void raiseInterrupt(int) { }

    const QString& title() const { return m_title; }
    const QString& deviceId() const { return m_deviceId; }
    void setDeviceId(const QString& id) { m_deviceId = id; }

private:
    QString m_title;
    unsigned m_capabilities;
    QString m_deviceId;
};

/// A target that runs programs of the native object format.
class TOBFTargetInterface : public TargetInterface {
public:
    using TargetInterface::TargetInterface;
    /// Sets the PC if asked, then runs or, with `stayStopped`, stays where it is.
    virtual void startDebugging(bool setPC, unsigned pc, bool stayStopped) = 0;
};
