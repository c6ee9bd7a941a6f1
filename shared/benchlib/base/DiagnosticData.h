#pragma once

#include "base/Path.h"

#include <QString>

/// One result of a tool or a search, with the source line that it is about.
struct DiagnosticData {
    /// In rising severity; the numbers are the low byte of the build log's flag word.
    enum Level { NoLevel = 0, Find = 1, Note = 2, Warning = 3, Error = 4, Fatal = 5 };
    static constexpr int LevelCount = 6;

    /// Empty for a message that is about no file.
    Path path;
    /// 1-based; 0 or less means none.
    int line = -1;
    /// -1 when unknown.
    int column = -1;
    QString message;
    Level level = NoLevel;
    /// The part of the log's text to highlight, in characters; -1 for none.
    int selectionStart = -1;
    int selectionLength = 0;
};
