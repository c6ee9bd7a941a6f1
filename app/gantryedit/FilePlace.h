#pragma once

#include <QString>

/// A file and a place in it, as a command line names them: "FILE", "FILE:LINE" or
/// "FILE:LINE:COLUMN", from 1 on.
struct FilePlace {
    QString path;
    int line = 0; ///< 0 for none
    int column = 1;

    /// A file whose own name looks like that comes first.
    static FilePlace from(const QString& argument);
};
