#pragma once

#include <QString>

/// The word that a message names in single quotes, preferably one behind " before ", to put the
/// cursor on; empty if it names none.
QString quotedToken(const QString& message);
