#include "script/es/ESNativeDate.h"

#include "script/es/ESNatives.h"

#include <array>
#include <cmath>
#include <limits>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr double NaN = std::numeric_limits<double>::quiet_NaN();
constexpr double MsPerSecond = 1000;
constexpr double MsPerMinute = 60 * MsPerSecond;
constexpr double MsPerHour = 60 * MsPerMinute;
constexpr double MsPerDay = 24 * MsPerHour;
/// As many days from 1970 as a date may lie (ECMA-262, 15.9.1.1).
constexpr double LargestTime = 1e8 * MsPerDay;
constexpr double MonthsPerYear = 12;

/// Days before each month, of a common year and of a leap year.
constexpr int DaysBefore[2][13] = {{0, 31, 59, 90, 120, 151, 181, 212, 243, 273, 304, 334, 365},
                                   {0, 31, 60, 91, 121, 152, 182, 213, 244, 274, 305, 335, 366}};

double modulo(double value, double modulus)
{
    return value - std::floor(value / modulus) * modulus;
}

double dayFromYear(double year)
{
    return 365 * (year - 1970) + std::floor((year - 1969) / 4) - std::floor((year - 1901) / 100)
        + std::floor((year - 1601) / 400);
}

double dayWithinYear(double time)
{
    return ESNativeDate::Day(time) - dayFromYear(ESNativeDate::YearFromTime(time));
}

// A date in parts, in the order in which constructor and setters take them.
enum Part { Year, Month, Date, Hours, Minutes, Seconds, Milliseconds, Parts };
using DateParts = std::array<double, Parts>;

DateParts partsOf(double time)
{
    using D = ESNativeDate;
    return {D::YearFromTime(time), D::MonthFromTime(time), D::DateFromTime(time),
            D::HourFromTime(time), D::MinFromTime(time),   D::SecFromTime(time),
            D::msFromTime(time)};
}

double timeOf(const DateParts& parts)
{
    const double day = ESNativeDate::MakeDay(parts[Year], parts[Month], parts[Date]);
    const double time =
        ESNativeDate::MakeTime(parts[Hours], parts[Minutes], parts[Seconds], parts[Milliseconds]);
    return ESNativeDate::TimeClip(ESNativeDate::UTC(ESNativeDate::MakeDate(day, time)));
}

double timeOfText(const QString& text)
{
    for (const Qt::DateFormat format : {Qt::TextDate, Qt::ISODateWithMs, Qt::RFC2822Date}) {
        QDateTime date = QDateTime::fromString(text.trimmed(), format);
        if (!date.isValid())
            continue;
        // A text without a zone is in UTC, as all times are.
        if (date.timeSpec() == Qt::LocalTime)
            date = QDateTime(date.date(), date.time(), Qt::UTC);
        return ESNativeDate::esdate(QAzDateTime(date));
    }
    return NaN;
}

double timeOfArguments(const ESCall& call)
{
    if (call.argc == 0)
        return ESNativeDate::esdate(QAzDateTime::current());
    if (call.argc == 1) {
        const ESValue value = call.context.toPrimitive(call.argument(0), ESClass::NoPreference);
        return value.isString() ? timeOfText(call.context.toString(value))
                                : ESNativeDate::TimeClip(call.context.toNumber(value));
    }
    DateParts parts = {0, 0, 1, 0, 0, 0, 0};
    for (int i = 0; i < std::min<int>(call.argc, Parts); ++i)
        parts[std::size_t(i)] = call.number(i);
    const double year = ESContext::toInteger(parts[Year]);
    if (!std::isnan(parts[Year]) && year >= 0 && year <= 99)
        parts[Year] = 1900 + year;
    return timeOf(parts);
}

double& timeOf(const ESCall& call)
{
    if (!call.context.isdateobj(ESValue(call.thisObject)))
        call.context.throwTypeError(u"Date object required"_s);
    return call.thisObject->primitive.number;
}

// Texts

QString wholeText(const QDateTime& date) { return date.toString(Qt::TextDate); }
QString dateText(const QDateTime& date) { return date.date().toString(Qt::TextDate); }
QString timeText(const QDateTime& date) { return date.time().toString(Qt::TextDate); }

QString textOf(double time, QString (*form)(const QDateTime&))
{
    return std::isnan(time) ? u"Invalid Date"_s : form(ESNativeDate::qdate(time).value());
}

template <QString (*Form)(const QDateTime&)> ESValue toText(const ESCall& call)
{
    return call.string(textOf(timeOf(call), Form));
}

ESValue date(const ESCall& call)
{
    return call.string(textOf(ESNativeDate::esdate(QAzDateTime::current()), wholeText));
}

// Getters and setters

ESValue valueOf(const ESCall& call) { return timeOf(call); }

template <double (*Get)(double)> ESValue get(const ESCall& call)
{
    const double time = timeOf(call);
    return std::isnan(time) ? NaN : Get(ESNativeDate::LocalTime(time));
}

ESValue getTimezoneOffset(const ESCall& call)
{
    const double time = timeOf(call);
    return (time - ESNativeDate::LocalTime(time)) / MsPerMinute;
}

ESValue setTime(const ESCall& call)
{
    const double time = ESNativeDate::TimeClip(call.number(0));
    return timeOf(call) = time;
}

/// Takes as many parts from the first on as are given, at most those up to the last.
template <Part First, Part Last> ESValue set(const ESCall& call)
{
    const double before = timeOf(call);
    DateParts parts = partsOf(std::isnan(before) && First == Year ? 0 : before);
    const int count = std::clamp<int>(call.argc, 1, Last - First + 1);
    for (int i = 0; i < count; ++i)
        parts[std::size_t(First + i)] = call.number(i);
    const double time = timeOf(parts);
    return timeOf(call) = time;
}

using D = ESNativeDate;
constexpr ESNative Functions[] = {
    {"Date", 1, date},
    {"toString", 0, toText<wholeText>},
    {"toDateString", 0, toText<dateText>},
    {"toTimeString", 0, toText<timeText>},
    {"toLocaleString", 0, toText<wholeText>},
    {"toLocaleDateString", 0, toText<dateText>},
    {"toLocaleTimeString", 0, toText<timeText>},
    {"toUTCString", 0, toText<wholeText>},
    {"valueOf", 0, valueOf},
    {"getTime", 0, valueOf},
    {"getFullYear", 0, get<D::YearFromTime>},
    {"getUTCFullYear", 0, get<D::YearFromTime>},
    {"getMonth", 0, get<D::MonthFromTime>},
    {"getUTCMonth", 0, get<D::MonthFromTime>},
    {"getDate", 0, get<D::DateFromTime>},
    {"getUTCDate", 0, get<D::DateFromTime>},
    {"getDay", 0, get<D::WeekDay>},
    {"getUTCDay", 0, get<D::WeekDay>},
    {"getHours", 0, get<D::HourFromTime>},
    {"getUTCHours", 0, get<D::HourFromTime>},
    {"getMinutes", 0, get<D::MinFromTime>},
    {"getUTCMinutes", 0, get<D::MinFromTime>},
    {"getSeconds", 0, get<D::SecFromTime>},
    {"getUTCSeconds", 0, get<D::SecFromTime>},
    {"getMilliseconds", 0, get<D::msFromTime>},
    {"getUTCMilliseconds", 0, get<D::msFromTime>},
    {"getTimezoneOffset", 0, getTimezoneOffset},
    {"setTime", 1, setTime},
    {"setMilliseconds", 1, set<Milliseconds, Milliseconds>},
    {"setUTCMilliseconds", 1, set<Milliseconds, Milliseconds>},
    {"setSeconds", 2, set<Seconds, Milliseconds>},
    {"setUTCSeconds", 2, set<Seconds, Milliseconds>},
    {"setMinutes", 2, set<Minutes, Milliseconds>},
    {"setUTCMinutes", 3, set<Minutes, Milliseconds>},
    {"setHours", 4, set<Hours, Milliseconds>},
    {"setUTCHours", 4, set<Hours, Milliseconds>},
    {"setDate", 1, set<Date, Date>},
    {"setUTCDate", 1, set<Date, Date>},
    {"setMonth", 2, set<Month, Date>},
    {"setUTCMonth", 2, set<Month, Date>},
    {"setFullYear", 3, set<Year, Date>},
    {"setUTCFullYear", 3, set<Year, Date>},
};

} // namespace

ESNativeDate::ESNativeDate() : ESNativeClass("Date", Functions) { }

ESObject* ESNativeDate::make(const ESCall& call)
{
    return call.context.newDate(timeOfArguments(call));
}

QAzDateTime ESNativeDate::qdate(double time)
{
    return QAzDateTime(QDateTime::fromMSecsSinceEpoch(static_cast<qint64>(time), Qt::UTC));
}

double ESNativeDate::esdate(const QAzDateTime& date)
{
    return static_cast<double>(date.value().toMSecsSinceEpoch());
}

double ESNativeDate::Day(double time) { return std::floor(time / MsPerDay); }

double ESNativeDate::TimeWithinDay(double time) { return modulo(time, MsPerDay); }

bool ESNativeDate::leapYear(double year)
{
    return modulo(year, 4) == 0 && (modulo(year, 100) != 0 || modulo(year, 400) == 0);
}

double ESNativeDate::YearFromTime(double time)
{
    constexpr double DaysPerYear = 365.2425;
    double year = std::floor(time / (MsPerDay * DaysPerYear)) + 1970;
    while (dayFromYear(year) > Day(time))
        --year;
    while (dayFromYear(year + 1) <= Day(time))
        ++year;
    return year;
}

double ESNativeDate::MonthFromTime(double time)
{
    const auto& before = DaysBefore[leapYear(YearFromTime(time))];
    const double day = dayWithinYear(time);
    double month = 0;
    while (month < MonthsPerYear - 1 && before[std::size_t(month) + 1] <= day)
        ++month;
    return month;
}

double ESNativeDate::DateFromTime(double time)
{
    const auto& before = DaysBefore[leapYear(YearFromTime(time))];
    return dayWithinYear(time) - before[std::size_t(MonthFromTime(time))] + 1;
}

// The first of January 1970 was a Thursday.
double ESNativeDate::WeekDay(double time) { return modulo(Day(time) + 4, 7); }
double ESNativeDate::HourFromTime(double time) { return modulo(std::floor(time / MsPerHour), 24); }
double ESNativeDate::MinFromTime(double time) { return modulo(std::floor(time / MsPerMinute), 60); }
double ESNativeDate::SecFromTime(double time) { return modulo(std::floor(time / MsPerSecond), 60); }
double ESNativeDate::msFromTime(double time) { return modulo(time, MsPerSecond); }

double ESNativeDate::MakeTime(double hour, double minute, double second, double ms)
{
    if (!std::isfinite(hour) || !std::isfinite(minute) || !std::isfinite(second)
        || !std::isfinite(ms))
        return NaN;
    return std::trunc(hour) * MsPerHour + std::trunc(minute) * MsPerMinute
        + std::trunc(second) * MsPerSecond + std::trunc(ms);
}

double ESNativeDate::MakeDay(double year, double month, double date)
{
    // Far beyond the dates that a time can hold.
    constexpr double Largest = 1e9;
    if (!(std::fabs(year) < Largest && std::fabs(month) < Largest && std::isfinite(date)))
        return NaN;
    const double months = std::trunc(month);
    const double wholeYear = std::trunc(year) + std::floor(months / MonthsPerYear);
    const auto rest = static_cast<std::size_t>(modulo(months, MonthsPerYear));
    return dayFromYear(wholeYear) + DaysBefore[leapYear(wholeYear)][rest] + std::trunc(date) - 1;
}

double ESNativeDate::MakeDate(double day, double time)
{
    return std::isfinite(day) && std::isfinite(time) ? day * MsPerDay + time : NaN;
}

double ESNativeDate::TimeClip(double time)
{
    if (!std::isfinite(time) || std::fabs(time) > LargestTime)
        return NaN;
    return std::trunc(time) + 0.0;
}

std::unique_ptr<ESNativeClass> makeDateClass() { return std::make_unique<ESNativeDate>(); }
