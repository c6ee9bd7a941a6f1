#pragma once

#include <QString>
#include <QStringList>

/// The words of a command as a user writes it: separated by blanks, with double quotes around those
/// that hold blanks.
QStringList commandWords(const QString& command);

/// Without white space around it, and without a pair of double quotes around all of it.
QString stripOuterQuotes(const QString& command);
