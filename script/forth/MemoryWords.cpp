// Words for cells in memory, and for characters in cells and strings.

#include "script/forth/ForthNumber.h"
#include "script/forth/WordSupport.h"

#include <functional>

namespace {

__extension__ using Wide = unsigned __int128;

Wide popUnsignedDouble(FSContext* context)
{
    const auto high = static_cast<quint64>(context->popLiteral());
    const auto low = static_cast<quint64>(context->popLiteral());
    return static_cast<Wide>(high) << 64 | low;
}

void pushDouble(FSContext* context, Wide value)
{
    context->push(static_cast<long long>(static_cast<quint64>(value)));
    context->push(static_cast<long long>(static_cast<quint64>(value >> 64)));
}

/// Adds digits to a number, up to the first character that is none; how many there are.
qsizetype convertDigits(Wide& number, const QString& text)
{
    qsizetype at = 0;
    for (; at < text.size(); ++at) {
        const int digit = digitValue(text[at], 10);
        if (digit < 0)
            break;
        number = number * 10 + static_cast<Wide>(digit);
    }
    return at;
}

/// A string cell without its first characters, or a later address.
X advanced(const X& string, qsizetype count)
{
    return string.isString() ? X(string.str().sliced(count)) : string + X(qint64(count));
}

/// The characters that memory has from an address on, as far as they can be digits.
QString digitsAt(FSContext* context, const X& address)
{
    QString text;
    for (X at = address;; at = at + X(1)) {
        const X character = at.fetch();
        if (!character.is_lit() || character < X(int(u'0')) || character > X(int(u'9')))
            return text;
        context->spend(1);
        text += characterText(character.lit());
    }
}

} // namespace

// clang-format off
void PFetch::execute(FSContext* context) { unary(context, [](const X& x) { return x.fetch(); }); }
void PHere::execute(FSContext* context) { context->push(context->dataArea()->here()); }
void PUnused::execute(FSContext* context) { context->push(context->dataArea()->unused()); }
void PAllot::execute(FSContext* context) { context->dataArea()->allot(context->popLiteral()); }
void PChars::execute(FSContext* context) { context->push(context->popLiteral()); }
void PCharPlus::execute(FSContext* context) { unary(context, [](const X& x) { return x + X(1); }); }
void PState::execute(FSContext* context) { context->push(context->stateAddress()); }
// clang-format on

void PStore::execute(FSContext* context)
{
    const X address = context->pop();
    address.store(context->pop());
}

void PPlusStore::execute(FSContext* context)
{
    const X address = context->pop();
    const X value = context->pop();
    address.store(address.fetch() + value);
}

void PTwoStore::execute(FSContext* context)
{
    const X address = context->pop();
    const X first = context->pop();
    const X second = context->pop();
    (address + X(1)).store(second);
    address.store(first);
}

void PTwoFetch::execute(FSContext* context)
{
    const X address = context->pop();
    X second = (address + X(1)).fetch();
    X first = address.fetch();
    context->push(std::move(second));
    context->push(std::move(first));
}

void PComma::execute(FSContext* context)
{
    const X value = context->pop();
    context->dataArea()->allot(1).store(value);
}

void PMove::execute(FSContext* context)
{
    const qint64 count = context->popLiteral();
    const X to = context->pop();
    const X from = context->pop();
    if (count == 0)
        return;
    to.segment()->demand(to.offset(), count);
    context->spend(count / 16);
    if (from.isString()) {
        const QString text = textAt(context, from, count);
        for (qint64 i = 0; i < count; ++i)
            to.segment()->store(to.offset() + i, X(int(text[i].unicode())));
        return;
    }
    from.segment()->demand(from.offset(), count);
    const bool upwards = from.offset() < to.offset(); // where the two overlap, the end goes first
    for (qint64 i = 0; i < count; ++i) {
        const qint64 at = upwards ? count - 1 - i : i;
        to.segment()->store(to.offset() + at, from.segment()->fetch(from.offset() + at));
    }
}

void PCount::execute(FSContext* context)
{
    const X string = context->pop();
    if (string.isString()) {
        context->push(string);
        context->push(qint64(string.str().size()));
    } else {
        X count = string.fetch();
        context->push(string + X(1));
        context->push(std::move(count));
    }
}

void PToNumber::execute(FSContext* context)
{
    const X top = context->pop();
    const X address = top.isString() ? top : context->pop();
    const QString text = top.isString() ? top.str() : textAt(context, address, top.lit());
    Wide number = popUnsignedDouble(context);
    const qsizetype used = convertDigits(number, text);
    pushDouble(context, number);
    context->push(used > 0 ? advanced(address, used) : address);
    if (!top.isString())
        context->push(top - X(qint64(used)));
}

void PConvert::execute(FSContext* context)
{
    const X string = context->pop();
    const X start = string.isString() ? string : string + X(1);
    const QString text = string.isString() ? string.str() : digitsAt(context, start);
    Wide number = popUnsignedDouble(context);
    const qsizetype used = convertDigits(number, text);
    pushDouble(context, number);
    context->push(used > 0 ? advanced(start, used) : start);
}
