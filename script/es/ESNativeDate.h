#pragma once

#include "script/es/ESNativeClass.h"

#include <QDateTime>

/// The date and time of the host, in UTC.
class QAzDateTime {
public:
    static QAzDateTime current() { return QAzDateTime(QDateTime::currentDateTimeUtc()); }
    explicit QAzDateTime(const QDateTime& value) : m_value(value) { }
    const QDateTime& value() const { return m_value; }

private:
    QDateTime m_value;
};

/// Date: milliseconds since the start of 1970, as a number; NaN for no date. Local time is UTC.
class ESNativeDate : public ESNativeClass {
public:
    ESNativeDate();

    static QAzDateTime qdate(double time);
    static double esdate(const QAzDateTime& date);

    // The names and rules of ECMA-262, 1st edition, 15.9.1. Days count from the start of 1970,
    // months and days of the week from 0, the days of a month from 1.
    static double Day(double time);
    static double TimeWithinDay(double time);
    static bool leapYear(double year);
    static double YearFromTime(double time);
    static double MonthFromTime(double time);
    static double DateFromTime(double time);
    static double WeekDay(double time);
    static double HourFromTime(double time);
    static double MinFromTime(double time);
    static double SecFromTime(double time);
    static double msFromTime(double time);
    static double MakeTime(double hour, double minute, double second, double ms);
    static double MakeDay(double year, double month, double date);
    static double MakeDate(double day, double time);
    static double TimeClip(double time);
    static double LocalTime(double time) { return time; }
    static double UTC(double time) { return time; }

protected:
    ESObject* make(const ESCall& call) override;
};
