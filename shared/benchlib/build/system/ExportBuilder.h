#pragma once

#include "projects/solution/Builder.h"

#include <QSet>

/// Writes a build down as the lines of a shell script.
class ExportBuilder : public Builder {
public:
    void beginGroup(ProjectElement*, const QString&, unsigned) override { }
    void endGroup(ProjectElement*) override { }
    void init() override { }
    /// "cd" when the directory changes.
    void setDirectory(const QString& directory) override;
    void setCommand(const QStringList& command) override;
    void setEnvironment(const QStringList&) override { }
    /// "mkdir" of the directories that outputs lie in, each once.
    void setOutputFiles(const QStringList& files) override;
    void setTemporaryFiles(const QStringList&) override { }
    void doit() override { }
    void error(const QString& text) override;
    bool executes() const override { return false; }

    const QStringList& lines() const { return m_lines; }
    bool hadErrors() const { return m_errors; }

private:
    QStringList m_lines;
    QString m_directory;
    QSet<QString> m_outputDirectories;
    bool m_errors = false;
};
