#pragma once

#include "base/DiagnosticData.h"

/// Knows the messages of one family of tools.
class DiagnosticParser {
public:
    virtual ~DiagnosticParser() = default;

    /// True if the line is a diagnostic: path, line, message and level of `data` are then filled,
    /// the path as the tool named it. Otherwise `data` stays as it was. `directory` is where the
    /// tool ran.
    virtual bool parse(const Path& directory, const QString& line, DiagnosticData& data) = 0;

    /// True if the line is to vanish from the log.
    virtual bool filterOut(const Path&, const QString&) { return false; }
};
