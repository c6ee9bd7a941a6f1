#pragma once

#include <QString>
#include <QStringList>

class ProjectElement;

/// What the runner of commands needs of the build system.
class BuildCommands {
public:
    virtual ~BuildCommands() = default;

    /// True if the command has been carried out, with what failed in `errorText`, if anything. May
    /// rewrite a command that it doesn't carry out itself.
    virtual bool builtinCommand(const QString& directory, QStringList& command,
                                QString& errorText) = 0;
    /// True for an element whose group shows the progress of its steps.
    virtual bool isProject(const ProjectElement* element) const = 0;

    virtual void setFailed() = 0;
    virtual bool cancelled() const = 0;
    virtual void setCancelled() = 0;
};
