#pragma once

#include "build/log/DiagnosticParser.h"

/// The messages of the STAPL compiler: "FILE(LINE): error: TEXT".
class STAPLDiagnosticParser : public DiagnosticParser {
public:
    bool parse(const Path& directory, const QString& line, DiagnosticData& data) override;
};
