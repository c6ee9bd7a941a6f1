#pragma once

#include <QStringView>

#include <optional>

/// The "FILE(NUMBER)" in front of a message.
struct SourceReference {
    QStringView file;
    /// The text between the parentheses: decimal digits only.
    QStringView number;
    /// Behind the mark that follows the parenthesis.
    qsizetype end;

    /// The number; 0 if it is missing or too large.
    int line() const { return number.toInt(); }
};

/// Finds the last "(digits)" in the text that is followed by `mark`, as far as the mark ends at or
/// before `limit`. With `needsDigits` the parentheses must not be empty. Takes time in proportion
/// to the text, which a pattern with several ".*" doesn't.
std::optional<SourceReference> findSourceReference(QStringView text, QStringView mark,
                                                   qsizetype limit, bool needsDigits);
