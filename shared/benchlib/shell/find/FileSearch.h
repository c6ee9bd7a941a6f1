#pragma once

#include "editor/commands/TextSearch.h"

#include <QString>
#include <QStringList>

#include <functional>

class BuildLogModel;
class QDir;
class QFileInfo;

/// A search through the files of a folder, whose hits become results of a log. It keeps the program
/// alive by letting it handle events.
class FileSearch {
public:
    struct Request {
        QString text;
        FindOptions options;
        QString folder;
        /// Patterns of file names, separated by ";", "," or blanks, such as "*.c;*.h". "*.*" stands
        /// for all files.
        QString fileTypes = QStringLiteral("*.*");
        bool subfolders = true;
    };
    enum class Outcome { Done, Stopped, NoSuchFolder, BadExpression };

    explicit FileSearch(BuildLogModel& log) : m_log(log) { }

    /// Runs to the end, or until stop().
    Outcome run(const Request& request);
    void stop() { m_stopped = true; }
    int found() const { return m_found; }
    // Of the last run.
    Outcome outcome() const { return m_outcome; }
    const Request& request() const { return m_request; }
    /// The files with hits of the last run.
    const QStringList& files() const { return m_files; }
    /// What is told of the last run, such as "2 occurrences have been found".
    QString summary() const;

private:
    void findInFolder(const QDir& folder, const QStringList& filter, bool subfolders);
    void findInFile(const QFileInfo& info);
    /// Handles events when enough work has been done since the last time.
    void worked(int lines);

    BuildLogModel& m_log;
    Request m_request;
    TextSearch m_search;
    Outcome m_outcome = Outcome::Done;
    bool m_stopped = false;
    int m_found = 0;
    QStringList m_files;
    int m_sinceEvents = 0; ///< in lines
};
