#pragma once

#include "objfile/loadfiles/LoadFileList.h"
#include "objfile/loadfiles/LoadFileSections.h"

#include <QString>

#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

class ProjectElement;

/// The load files of a download with their owner.
struct TargetLoadFiles {
    std::vector<std::unique_ptr<LoadFileInterface>> owned;
    LoadFileList list;
};

/// What a verification has found to differ.
struct TargetDifferences {
    QString fileName;
    const LoadFileSections::List& file;
    QString targetName; ///< device and title
    const LoadFileSections::List& target;
    unsigned columnWidth; ///< in characters
};

/// What target control asks of the window, or of the command line. The defaults are those of a host
/// without a user: every question is answered with no.
class TargetControlHost {
public:
    virtual ~TargetControlHost() = default;
    virtual bool ask(const QString& /*text*/, const QString& /*title*/) { return false; }
    virtual void inform(const QString& /*text*/, const QString& /*title*/) { }
    /// In the status bar.
    virtual void showStatus(const QString& /*text*/) { }
    virtual void showDifferences(const TargetDifferences& /*differences*/) { }
    virtual void showTranscript() { }
    virtual void logError(const QString& /*text*/) { }
    /// Asks the user to end a debug session; false leaves everything as it is.
    virtual bool checkNotDebugging() { return true; }
    /// Stops polling the debugger and ends its session.
    virtual void endDebugging() { }
    /// The connected target, its state, or the list is another one than before.
    virtual void targetChanged() { }
    /// The value of an address or a size that the user has typed.
    virtual std::optional<std::uint64_t> evaluate(const QString& text);
    /// The project's program behind its additional load files; false if there is none.
    virtual bool loadFilesOf(ProjectElement*, const QString& /*configuration*/, TargetLoadFiles&)
    {
        return false;
    }
};
