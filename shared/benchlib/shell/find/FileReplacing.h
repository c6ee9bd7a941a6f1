#pragma once

#include <QString>
#include <QStringList>

#include <functional>

class CodeEditor;
class FileSearch;

/// Replaces the hits of a search through files. A file that is open is changed in its editor, and
/// left for the user to save; others are loaded, changed and saved.
class FileReplacing {
public:
    struct Result {
        int replaced = 0;
        int files = 0;
        QStringList failed; ///< files that couldn't be changed

        /// "2 occurrences have been replaced.", and which files couldn't be.
        QString summary() const;
    };
    /// The editor that shows a file; null for none.
    using OpenEditor = std::function<CodeEditor*(const QString& path)>;

    static Result run(const FileSearch& search, const QString& replacement,
                      const OpenEditor& openEditor);
};
