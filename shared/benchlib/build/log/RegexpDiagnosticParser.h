#pragma once

#include "build/log/DiagnosticParser.h"

#include <QRegularExpression>

#include <array>

/// Messages told by regular expressions, one for each level, whose captures are path, line and
/// message. The lowest level whose expression matches anywhere in the line wins.
///
/// Only the first 8,192 characters of a line are looked at, so that an expression can't take
/// minutes over one.
class RegexpDiagnosticParser : public DiagnosticParser {
public:
    /// An empty expression matches nothing. Answers what is wrong with one that can't be used, and
    /// then matches nothing; empty if all is well.
    QString setRegexp(DiagnosticData::Level level, const QString& expression);

    bool parse(const Path& directory, const QString& line, DiagnosticData& data) override;

private:
    std::array<QRegularExpression, DiagnosticData::LevelCount> m_expressions;
};
