#pragma once

#include "target/control/TargetControl.h"

#include <QStringList>

/// Programming a memory of the target by hand.
class TargetProgramming {
public:
    TargetProgramming(TargetInterface& target, TargetControl& control, TargetControlHost& host)
        : m_target(target),
          m_control(control),
          m_host(host)
    {
    }

    /// What can be done with a memory, in the order of the dialog.
    static QStringList actions(const TargetMemoryInterface& memory);
    /// The file formats that a memory can be uploaded to, by their names in the dialog.
    static QStringList uploadTypes();

    /// Does one of the actions with the memory of that name. `type` is the file's format, empty to
    /// go by its name; `address` and `size` are expressions. True unless a verification failed.
    /// Throws HException "invalid start address", "invalid size", "invalid load address", "invalid
    /// file" or what the operation fails with.
    bool doProgrammingAction(const QString& memory, const QString& file, const QString& type,
                             const QString& address, const QString& size, const QString& action);
    /// Writes a range of the memory to a file of one of the upload types. Throws HException
    /// "invalid start address" or "invalid length", or what the operation fails with.
    void upload(const QString& memory, const QString& file, const QString& type,
                const QString& address, const QString& size);

private:
    bool act(const QString& name, const QString& file, const QString& type, const QString& address,
             const QString& size, const QString& action);
    bool actOnRange(TargetMemoryInterface& memory, const QString& address, const QString& size,
                    const QString& action);
    bool actOnFile(TargetMemoryInterface& memory, const QString& name, const QString& path,
                   LoadFileInterface& file, const QString& action);
    unsigned number(const QString& text, const char* failure);
    std::unique_ptr<LoadFileInterface> open(const QString& path, const QString& type,
                                            const QString& address);

    TargetInterface& m_target;
    TargetControl& m_control;
    TargetControlHost& m_host;
};
