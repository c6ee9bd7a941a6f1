#pragma once

#include "build/log/DiagnosticParser.h"

/// The messages of the toolchain: "FILE(LINE): SEVERITY CODE: TEXT", with or without the code, and
/// "TOOL: SEVERITY: TEXT". Severities are note, warning, error and fatal.
class TOBFDiagnosticParser : public DiagnosticParser {
public:
    bool parse(const Path& directory, const QString& line, DiagnosticData& data) override;
};
