#include "debugger/views/TypedValue.h"

#include "debugger/views/ValueFormat.h"

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr unsigned LargestInteger = 8;

/// Characters, with or without quotes around them, as `toStr` writes them: the highest byte first.
bool typedCharacters(const ExpressionType& shown, QString text, ExpressionType& value)
{
    if (text.size() >= 2 && text.startsWith(u'\'') && text.endsWith(u'\''))
        text = text.sliced(1, text.size() - 2);
    const auto longest = std::min(shown.getSizeInBytes(), LargestInteger);
    if (text.isEmpty() || text.size() > static_cast<qsizetype>(longest))
        return false;
    quint64 bytes = 0;
    for (const QChar it : text) {
        if (it.unicode() > 0xFF)
            return false;
        bytes = bytes << 8 | it.unicode();
    }
    value = ExpressionType(shown, QString::number(bytes), DecimalDisplay);
    return true;
}

bool areDigits(QString text, int base)
{
    if (base == DecimalDisplay && text.startsWith(u'-'))
        text.remove(0, 1);
    else if ((base == HexadecimalDisplay && text.startsWith(u"0x", Qt::CaseInsensitive))
             || (base == BinaryDisplay && text.startsWith(u"0b", Qt::CaseInsensitive)))
        text.remove(0, 2);
    bool ok = false;
    text.toULongLong(&ok, base);
    return ok && text.front().isLetterOrNumber();
}

} // namespace

bool typedValue(const ExpressionType& shown, const QString& typed, int radix, ExpressionType& value)
{
    const QString text = typed.trimmed();
    const int base = radix == UnsignedDisplay ? int(DecimalDisplay) : radix;
    bool ok = false;
    if (shown.getType() == ExpressionType::Boolean)
        ok = text == u"true" || text == u"false";
    else if (shown.getType() == ExpressionType::Floating && base <= DecimalDisplay
             && base != BinaryDisplay && base != OctalDisplay)
        text.toDouble(&ok);
    else if (shown.isIntegerType() && radix == AsciiDisplay)
        return typedCharacters(shown, text, value);
    else if (shown.isNumberType())
        ok = areDigits(text, base);
    if (ok)
        value = ExpressionType(shown, text, base);
    return ok;
}
