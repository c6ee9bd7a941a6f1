// Integer arithmetic, logic and comparison, and the four words for floats.

#include "script/forth/WordSupport.h"

#include <cmath>
#include <functional>

namespace {

__extension__ using Wide = __int128;

X low(Wide value) { return X(static_cast<long long>(static_cast<quint64>(value))); }

struct Division {
    X quotient;
    X remainder;
};

// Rounds down like `/`, with the whole product of the two factors.
Division popProductDivided(FSContext* context)
{
    const X divisor = context->pop();
    const X factor = context->pop();
    const X start = context->pop();
    static_cast<void>(start * factor / divisor); // throws for what can't be divided
    const Wide by = divisor.lit();
    const Wide product = static_cast<Wide>(start.lit()) * factor.lit();
    Wide quotient = product / by;
    Wide remainder = product % by;
    if (remainder != 0 && (remainder < 0) != (by < 0)) {
        --quotient;
        remainder += by;
    }
    return {low(quotient), low(remainder)};
}

// Bits that are shifted out are gone, however far.
template <class Shift> void shift(FSContext* context, Shift by)
{
    const auto count = static_cast<quint64>(context->popLiteral());
    const auto bits = static_cast<quint64>(context->popLiteral());
    context->push(static_cast<long long>(count < 64 ? by(bits, count) : 0));
}

void ofFloat(FSContext* context, double (*function)(double))
{
    context->push(function(context->pop().flt()));
}

} // namespace

// clang-format off
void PPlus::execute(FSContext* context) { binary(context, std::plus<>()); }
void PMinus::execute(FSContext* context) { binary(context, std::minus<>()); }
void PStar::execute(FSContext* context) { binary(context, std::multiplies<>()); }
void PSlash::execute(FSContext* context) { binary(context, std::divides<>()); }
void PMod::execute(FSContext* context) { binary(context, std::modulus<>()); }
void PAnd::execute(FSContext* context) { binary(context, std::bit_and<>()); }
void POr::execute(FSContext* context) { binary(context, std::bit_or<>()); }
void PXor::execute(FSContext* context) { binary(context, std::bit_xor<>()); }
void PInvert::execute(FSContext* context) { unary(context, std::bit_not<>()); }
void PNegate::execute(FSContext* context) { unary(context, std::negate<>()); }
void POnePlus::execute(FSContext* context) { unary(context, [](const X& x) { return x + X(1); }); }
void POneMinus::execute(FSContext* context) { unary(context, [](const X& x) { return x - X(1); }); }
void PTwoStar::execute(FSContext* context) { unary(context, [](const X& x) { return x * X(2); }); }
void PTwoSlash::execute(FSContext* context) { unary(context, [](const X& x) { return x / X(2); }); }
void PAbs::execute(FSContext* context) { unary(context, [](const X& x) { return x.lit() < 0 ? -x : x; }); }
void PMax::execute(FSContext* context) { binary(context, [](const X& a, const X& b) { return a < b ? b : a; }); }
void PMin::execute(FSContext* context) { binary(context, [](const X& a, const X& b) { return b < a ? b : a; }); }

void PEquals::execute(FSContext* context) { compare(context, std::equal_to<>()); }
void PNotEquals::execute(FSContext* context) { compare(context, std::not_equal_to<>()); }
void PLess::execute(FSContext* context) { compare(context, std::less<>()); }
void PGreater::execute(FSContext* context) { compare(context, std::greater<>()); }
void PGreaterEquals::execute(FSContext* context) { compare(context, std::greater_equal<>()); }
void PULess::execute(FSContext* context) { compare(context, X::below); }
void PUGreater::execute(FSContext* context) { compare(context, [](const X& a, const X& b) { return X::below(b, a); }); }

void PZeroEquals::execute(FSContext* context) { unary(context, [](const X& x) { return X::flag(!x.isTrue()); }); }
void PZeroNotEquals::execute(FSContext* context) { unary(context, [](const X& x) { return X::flag(x.isTrue()); }); }
void PZeroLess::execute(FSContext* context) { compareZero(context, std::less<>()); }
void PZeroGreater::execute(FSContext* context) { compareZero(context, std::greater<>()); }
void PZeroGreaterEquals::execute(FSContext* context) { compareZero(context, std::greater_equal<>()); }

void PLshift::execute(FSContext* context) { shift(context, [](quint64 bits, quint64 count) { return bits << count; }); }
void PRshift::execute(FSContext* context) { shift(context, [](quint64 bits, quint64 count) { return bits >> count; }); }

void PFloor::execute(FSContext* context) { ofFloat(context, std::floor); }
void PFSin::execute(FSContext* context) { ofFloat(context, std::sin); }
void PFCos::execute(FSContext* context) { ofFloat(context, std::cos); }
void PFTan::execute(FSContext* context) { ofFloat(context, std::tan); }
// clang-format on

void PWithin::execute(FSContext* context)
{
    const X limit = context->pop();
    const X first = context->pop();
    const X value = context->pop();
    context->push(X::flag(X::below(value - first, limit - first)));
}

void PSlashMod::execute(FSContext* context)
{
    const X divisor = context->pop();
    const X dividend = context->pop();
    const X quotient = dividend / divisor;
    context->push(dividend - quotient * divisor);
    context->push(quotient);
}

void PStarSlash::execute(FSContext* context) { context->push(popProductDivided(context).quotient); }

void PStarSlashMod::execute(FSContext* context)
{
    const Division division = popProductDivided(context);
    context->push(division.remainder);
    context->push(division.quotient);
}
