#include "script/forth/ForthNumber.h"

#include <QLocale>

#include <limits>

namespace {

__extension__ using Wide = unsigned __int128;

bool isDigit(QChar c) { return c >= u'0' && c <= u'9'; }

bool isSign(QChar c) { return c == u'+' || c == u'-'; }

// [sign] digits [. digits] e [sign] [digits], with a digit ahead of the e.
bool hasFloatForm(const QString& text)
{
    qsizetype at = !text.isEmpty() && isSign(text[0]) ? 1 : 0;
    const auto digits = [&] {
        const qsizetype start = at;
        while (at < text.size() && isDigit(text[at]))
            ++at;
        return at - start;
    };
    qsizetype count = digits();
    if (at < text.size() && text[at] == u'.') {
        ++at;
        count += digits();
    }
    if (count == 0 || at >= text.size() || text[at].toLower() != u'e')
        return false;
    ++at;
    if (at < text.size() && isSign(text[at]))
        ++at;
    digits();
    return at == text.size();
}

double toDouble(QString text)
{
    if (!isDigit(text.back()))
        text += u'0';
    return QLocale::c().toDouble(text);
}

// The digits of a number, its sign and base taken off.
struct Digits {
    Wide value = 0;
    bool any = false;
    bool tooLarge = false;
    int behindPoint = -1; ///< -1 without a point
};

std::optional<Digits> readDigits(QStringView text, int base)
{
    Digits digits;
    constexpr Wide largest = ~Wide(0);
    for (const QChar c : text) {
        if (c == u'.' && digits.behindPoint < 0) {
            digits.behindPoint = 0;
            continue;
        }
        const int value = digitValue(c, base);
        if (value < 0)
            return std::nullopt;
        digits.any = true;
        const auto wideBase = static_cast<Wide>(base);
        digits.tooLarge |= digits.value > (largest - static_cast<Wide>(value)) / wideBase;
        digits.value = digits.value * wideBase + static_cast<Wide>(value);
        if (digits.behindPoint >= 0)
            ++digits.behindPoint;
    }
    return digits.any ? std::optional(digits) : std::nullopt;
}

int takeBase(QStringView& text)
{
    const int base = text.startsWith(u'$') ? 16 : text.startsWith(u'%') ? 2 : 10;
    if (base != 10 || text.startsWith(u'#'))
        text = text.sliced(1);
    return base;
}

X lowCell(Wide value) { return X(static_cast<long long>(static_cast<quint64>(value))); }

} // namespace

int digitValue(QChar digit, int base)
{
    const char16_t c = digit.toUpper().unicode();
    const int value = c >= u'0' && c <= u'9' ? c - u'0'
        : c >= u'A' && c <= u'Z'             ? c - u'A' + 10
                                             : -1;
    return value < base ? value : -1;
}

std::optional<ForthNumber> parseNumber(const QString& text)
{
    if (hasFloatForm(text))
        return ForthNumber{X(toDouble(text)), std::nullopt, 0};
    QStringView rest = text;
    const bool negative = rest.startsWith(u'-');
    if (negative || rest.startsWith(u'+'))
        rest = rest.sliced(1);
    const int base = takeBase(rest);
    const std::optional<Digits> digits = readDigits(rest, base);
    if (!digits)
        return std::nullopt;
    const bool wide = digits->behindPoint >= 0;
    // A number without a sign may use all bits.
    const Wide largest = (~Wide(0) >> (wide ? 0 : 64)) >> (negative ? 1 : 0);
    if (digits->tooLarge || digits->value > largest + (negative ? 1 : 0))
        throw ForthException(ForthError::InvalidArgument, QStringLiteral("number too large"));
    const Wide value = negative ? 0 - digits->value : digits->value;
    if (!wide)
        return ForthNumber{lowCell(value), std::nullopt, 0};
    return ForthNumber{lowCell(value), lowCell(value >> 64), digits->behindPoint};
}
