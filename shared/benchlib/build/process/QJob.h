#pragma once

#include "projects/solution/Builder.h"

#include <QString>
#include <QStringList>

#include <utility>

/// A command for a JobQueue. Its first word is a program, or "cp", which copies a file without one.
class QJob {
public:
    /// An empty environment is that of this process.
    QJob(QString title, QString directory, QStringList command, QStringList environment = {})
        : m_title(std::move(title)),
          m_directory(std::move(directory)),
          m_command(std::move(command)),
          m_environment(std::move(environment))
    {
    }

    const QString& title() const { return m_title; }
    const QString& directory() const { return m_directory; }
    const QStringList& command() const { return m_command; }
    const QStringList& environment() const { return m_environment; }
    /// For showing.
    QString commandLine() const { return Builder::commandLine(m_command); }
    bool isCopy() const { return m_command.value(0) == QLatin1String("cp"); }

private:
    QString m_title;
    QString m_directory;
    QStringList m_command;
    QStringList m_environment;
};
