#pragma once

#include "projects/settings/FindOptions.h"

#include <QRegularExpression>
#include <QString>

/// Searching one line for an expression.
namespace QTx {

/// The expression that matches just this text.
QString literalRegularExpressionString(const QString& text);
/// Quantifiers take as little as they can. A text that isn't an expression gives one that isn't
/// valid.
QRegularExpression constructSearchRegularExpression(const QString& text, bool regexp,
                                                    bool matchCase);
QRegularExpression constructSearchRegularExpression(const QString& text, FindOptions options);

/// The first match from `from` on, or the last that starts there or ahead of it: its position, or
/// -1. Matches of nothing don't count, and with `wholeWord` none next to a letter, a digit or "_".
/// `matched`, if not null, becomes the part of the line that matches.
int search(const QRegularExpression& expression, QStringView line, int from, bool forward,
           bool wholeWord, QStringView* matched);
int search(const QRegularExpression& expression, QStringView line, int from, FindOptions options,
           QStringView* matched);
/// Whether that stretch of a line isn't part of a longer word.
bool isWholeWord(QStringView line, qsizetype start, qsizetype end);

/// What the match that starts at that position is replaced by: in `text` stand "\1" to "\9" for
/// what its groups took, "\0" for all of it, "\n" and "\t" for a line break and a tab.
QString expandSearchResults(const QRegularExpression& expression, QStringView line, int position,
                            const QString& text);

} // namespace QTx
