#include "build/log/SourceReference.h"

namespace {

bool isDigit(QChar c) { return c >= u'0' && c <= u'9'; }

} // namespace

std::optional<SourceReference> findSourceReference(QStringView text, QStringView mark,
                                                   qsizetype limit, bool needsDigits)
{
    for (qsizetype close = limit - mark.size() - 1; close > 0; --close) {
        if (text[close] != u')' || !text.sliced(close + 1).startsWith(mark))
            continue;
        qsizetype first = close;
        while (first > 0 && isDigit(text[first - 1]))
            --first;
        const bool found = first > 0 && text[first - 1] == u'(' && (first < close || !needsDigits);
        if (found)
            return SourceReference{text.first(first - 1), text.sliced(first, close - first),
                                   close + 1 + mark.size()};
    }
    return std::nullopt;
}
