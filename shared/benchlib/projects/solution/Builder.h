#pragma once

#include <QString>
#include <QStringList>

class ProjectElement;

/// The receiver of a build's steps: runs them, counts them or writes them down.
///
/// A step is init, then the set operations, then doit. Directories and files are absolute; a
/// command's first word is the program.
class Builder {
public:
    /// The element may be null for a group that belongs to no element.
    virtual void beginGroup(ProjectElement* element, const QString& title, unsigned flags = 0) = 0;
    virtual void endGroup(ProjectElement* element) = 0;
    virtual void init() = 0;
    virtual void setTotalSteps(ProjectElement*, int) { }
    virtual void setDirectory(const QString& directory) = 0;
    virtual void setCommand(const QStringList& command) = 0;
    virtual void setEnvironment(const QStringList& environment) = 0;
    /// Removed when the command fails or is stopped.
    virtual void setOutputFiles(const QStringList& files) = 0;
    virtual void setTemporaryFiles(const QStringList& files) = 0;
    virtual void doit() = 0;
    virtual void nextStep() { }
    virtual void error(const QString& text) = 0;
    virtual void note(const QString&) { }
    virtual void success(const QString&) { }
    virtual void message(const QString&) { }
    virtual void idle() { }
    virtual ~Builder() = default;
    /// False for a receiver that only counts steps or writes them down: nothing on disk is to
    /// change then.
    virtual bool executes() const { return true; }

    /// One line for showing: words that hold a blank in double quotes, joined by blanks.
    static QString commandLine(const QStringList& command);
};
