#pragma once

#include <QChar>

/// What words are made of, to the commands and searches of the editor: letters, digits and "_".
inline bool isWordChar(QChar c) { return c.isLetterOrNumber() || c == u'_'; }
