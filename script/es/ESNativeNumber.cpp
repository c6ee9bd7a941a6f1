// Number and Math.

#include "script/es/ESNatives.h"

#include <cmath>
#include <cstdlib>
#include <limits>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr double NaN = std::numeric_limits<double>::quiet_NaN();
constexpr double Infinity = std::numeric_limits<double>::infinity();

double numberOf(const ESCall& call, const char* function)
{
    const ESValue value = call.thisObject->primitive;
    if (!call.context.isnumobj(ESValue(call.thisObject)))
        call.context.throwTypeError(
            u"Number.prototype.%1 called on non-Number object"_s.arg(QLatin1String(function)));
    return value.number;
}

ESValue number(const ESCall& call) { return call.argc > 0 ? call.number(0) : 0.0; }

ESValue numberToString(const ESCall& call)
{
    const double value = numberOf(call, "toString");
    const double radix = call.integer(0, 10);
    return call.string(ESContext::numberText(value, radix >= 2 && radix <= 36 ? int(radix) : 10));
}

ESValue numberToFixed(const ESCall& call)
{
    const double value = numberOf(call, "toFixed");
    const double digits = call.integer(0, 0);
    if (digits < 0 || digits > 20)
        call.context.throwException(ESContext::ErrorKind::RangeError,
                                    u"fraction digits should 0 through 20"_s);
    return call.string(QString::asprintf("%40.*f", int(digits), value).trimmed());
}

ESValue numberValueOf(const ESCall& call) { return numberOf(call, "valueOf"); }

constexpr ESNative NumberFunctions[] = {{"Number", 1, number},
                                        {"toString", 1, numberToString},
                                        {"toFixed", 1, numberToFixed},
                                        {"valueOf", 0, numberValueOf}};

template <double (*Function)(double)> ESValue of(const ESCall& call)
{
    return Function(call.number(0));
}
template <double (*Function)(double, double)> ESValue ofTwo(const ESCall& call)
{
    return Function(call.number(0), call.number(1));
}

double roundHalfUp(double value)
{
    return value < 0 && value >= -0.5 ? -0.0 : std::floor(value + 0.5);
}

/// The greater of two, with NaN winning and +0 above -0.
double greater(double a, double b)
{
    if (std::isnan(a) || std::isnan(b))
        return NaN;
    if (a == 0 && b == 0)
        return std::signbit(a) ? b : a;
    return a > b ? a : b;
}

double lesser(double a, double b) { return -greater(-a, -b); }

template <double (*Better)(double, double)> ESValue fold(const ESCall& call, double start)
{
    for (int i = 0; i < call.argc; ++i) {
        const double value = call.number(i);
        start = Better(start, std::isnan(value) ? value : ESContext::toInteger(value));
    }
    return start;
}

ESValue mathMax(const ESCall& call) { return fold<greater>(call, -Infinity); }
ESValue mathMin(const ESCall& call) { return fold<lesser>(call, Infinity); }
ESValue mathRandom(const ESCall&) { return std::rand() / (double(RAND_MAX) + 1); }

constexpr ESNative MathFunctions[] = {{"abs", 1, of<std::fabs>},
                                      {"acos", 1, of<std::acos>},
                                      {"asin", 1, of<std::asin>},
                                      {"atan", 1, of<std::atan>},
                                      {"atan2", 2, ofTwo<std::atan2>},
                                      {"ceil", 1, of<std::ceil>},
                                      {"cos", 1, of<std::cos>},
                                      {"exp", 1, of<std::exp>},
                                      {"floor", 1, of<std::floor>},
                                      {"log", 1, of<std::log>},
                                      {"max", 0, mathMax},
                                      {"min", 0, mathMin},
                                      {"pow", 2, ofTwo<std::pow>},
                                      {"random", 0, mathRandom},
                                      {"round", 1, of<roundHalfUp>},
                                      {"sin", 1, of<std::sin>},
                                      {"sqrt", 1, of<std::sqrt>},
                                      {"tan", 1, of<std::tan>}};

struct Constant {
    const char* name;
    double value;
};
constexpr Constant NumberConstants[] = {{"MAX_VALUE", std::numeric_limits<double>::max()},
                                        {"MIN_VALUE", std::numeric_limits<double>::denorm_min()},
                                        {"NaN", NaN},
                                        {"NEGATIVE_INFINITY", -Infinity},
                                        {"POSITIVE_INFINITY", Infinity}};
constexpr Constant MathConstants[] = {
    {"E", M_E},           {"LN10", M_LN10}, {"LN2", M_LN2},         {"LOG2E", M_LOG2E},
    {"LOG10E", M_LOG10E}, {"PI", M_PI},     {"SQRT1_2", M_SQRT1_2}, {"SQRT2", M_SQRT2}};

class ESNativeNumber : public ESNativeClass {
public:
    ESNativeNumber() : ESNativeClass("Number", NumberFunctions) { }

protected:
    ESObject* make(const ESCall& call) override { return call.context.hardToObject(number(call)); }
};

} // namespace

std::unique_ptr<ESNativeClass> makeNumberClass() { return std::make_unique<ESNativeNumber>(); }

std::unique_ptr<ESNativeClass> makeMathClass()
{
    return std::make_unique<ESNativeClass>("Math", MathFunctions);
}

void installNumberConstants(ESObject* constructor)
{
    for (const Constant& constant : NumberConstants)
        ESContext::define(constructor, constant.name, ESValue(constant.value));
}

void installMathConstants(ESObject* math)
{
    for (const Constant& constant : MathConstants)
        ESContext::define(math, constant.name, ESValue(constant.value));
}
