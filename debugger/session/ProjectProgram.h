#pragma once

#include "base/Path.h"
#include "target/control/TargetControlHost.h"

#include <QStringList>

class LoadFileList;
class ProjectElement;

/// What a project says of the program that it makes: what is loaded, and how it is started.
class ProjectProgram {
public:
    ProjectProgram() = default;
    /// Both outlive this object; the build system must be there.
    ProjectProgram(ProjectElement* project, const QString& configuration)
        : m_project(project),
          m_configuration(configuration)
    {
    }

    ProjectElement* project() const { return m_project; }
    const QString& configuration() const { return m_configuration; }

    QString name() const;
    /// Empty if the project makes nothing that can be loaded.
    Path executable() const;
    /// The symbol, or the hexadecimal number behind "0x", at which the program starts; empty for
    /// the reset vector.
    QString entryPointSymbol() const { return value("debug_entry_point_symbol"); }
    /// An expression; empty if the program has no start-up of its own.
    QString startupCompletionPoint() const { return value("debug_startup_completion_point"); }
    QString workingDirectory() const;
    QStringList commandArguments() const;

    /// The format of a load file of the project, by its setting or by the file's name; null for an
    /// unknown one.
    const char* loadFileType(const Path& path) const;
    /// The additional load files and, behind them, the executable. Throws HException for a file
    /// that can't be loaded.
    void addLoadFiles(TargetLoadFiles& files) const;

private:
    QString value(const char* property) const;
    void addLoadFile(TargetLoadFiles& files, const Path& path, bool isAdditional) const;
    void addAdditionalLoadFiles(TargetLoadFiles& files) const;

    ProjectElement* m_project = nullptr;
    QString m_configuration;
};
