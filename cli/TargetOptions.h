#pragma once

#include <QString>

#include <span>
#include <string>
#include <vector>

/// One operation on a target.
struct TargetAction {
    enum class Kind { Program, Verify, Erase, Lock, Unlock, Upload };

    Kind kind = Kind::Program;
    QString file;    ///< the load file, or where an upload goes; empty for none
    QString type;    ///< the format of the file; empty to go by its name
    QString address; ///< expressions; empty if they aren't given
    QString size;
    bool eraseAll = false; ///< ahead of programming
    bool verify = true;    ///< behind it
};

/// The command line of `gantry target`.
struct TargetOptions {
    bool list = false;
    QString target;     ///< a name of the list; empty for the first
    std::string device; ///< of a simulator; empty for the one that it is set to
    QString memory;     ///< empty for the target's code memory
    std::vector<TargetAction> actions;
};

/// Throws UsageError.
TargetOptions parseTargetOptions(std::span<const std::string> arguments);
