#include "build/log/DiagnosticRecords.h"

#include <algorithm>

int DiagnosticRecords::findNextDiagnosticAt(int level, int from) const
{
    for (; level > DiagnosticData::NoLevel; --level, from = 0) {
        for (int i = from; i < count(); ++i) {
            if (at(i).level == level)
                return i;
        }
    }
    return -1;
}

int DiagnosticRecords::findPreviousDiagnosticAt(int level, int from) const
{
    for (; level > DiagnosticData::NoLevel; --level, from = count() - 1) {
        for (int i = std::min(from, count() - 1); i >= 0; --i) {
            if (at(i).level == level)
                return i;
        }
    }
    return -1;
}
