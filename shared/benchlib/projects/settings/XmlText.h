#pragma once

#include <QString>

/// Any text as XML text or attribute value on one line: markup, line breaks and what a reader would
/// drop or normalise become references.
///
/// XML 1.0 has no form at all for control characters. They are written as U+FDD0 to U+FDEF, 32 code
/// points that Unicode reserves for a program's own use. One of them also keeps text that is all
/// white space. Halves of surrogate pairs and U+FFFE,
/// U+FFFF become U+FFFD.
QString xmlEscape(const QString& text);

/// Replaces the five named references and numeric ones, once. What isn't a reference stays.
QString xmlUnescapeEntities(const QString& text);

/// Undoes what xmlEscape did with U+FDD0 to U+FDEF.
QString xmlRestoreControls(QString text);
