#include "editor/parsers/CodeEditParser.h"

using namespace Qt::Literals::StringLiterals;

QString CodeEditParser::delimiters() const { return u"\\{\\}\\[\\]\\(\\)"_s; }
