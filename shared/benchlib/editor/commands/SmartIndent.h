#pragma once

#include "editor/commands/CodeEditSettings.h"

#include <QStringList>

#include <optional>

/// The screen column that the last line's text should begin at, estimated from the lines above it;
/// nothing if the line stays as it is. The caret stands in the last line, in that column. A
/// `forced` line is indented in any case, others only when their brace was just typed.
///
/// `indents` has the indentation of each line in screen columns. `fromStart` tells that the first
/// of the lines is the first of the text.
std::optional<int> smartIndent(const QStringList& lines, const QList<int>& indents, int caretColumn,
                               bool forced, bool fromStart, const CodeEditSettings& settings);
