// Calendar time. There is no time zone: local time is UTC.

#include <time.h>

static struct tm broken_down;

struct tm *gmtime(const time_t *time) {
  return gmtime_r(time, &broken_down);
}

struct tm *localtime(const time_t *time) {
  return gmtime_r(time, &broken_down);
}

struct tm *localtime_r(const time_t *time, struct tm *result) {
  return gmtime_r(time, result);
}

// Days from 1970-01-01 to a day of the proleptic Gregorian calendar; the year is taken to begin
// in March, so that its last day is the one that leap years add.
static long days_since_epoch(long year, int month, long day) {
  year -= month < 2;
  const long era = (year >= 0 ? year : year - 399) / 400;
  const long year_of_era = year - era * 400;
  const long day_of_year = (153L * (month + (month > 1 ? -2 : 10)) + 2) / 5 + day - 1;
  const long day_of_era = year_of_era * 365 + year_of_era / 4 - year_of_era / 100 + day_of_year;
  return era * 146097 + day_of_era - 719468;
}

time_t mktime(struct tm *time) {
  long year = 1900L + time->tm_year + time->tm_mon / 12;
  int month = time->tm_mon % 12;
  if (month < 0) {
    month += 12;
    year--;
  }
  const time_t days = days_since_epoch(year, month, time->tm_mday);
  const time_t seconds = days * 86400 + time->tm_hour * 3600L + time->tm_min * 60L + time->tm_sec;
  gmtime_r(&seconds, time);
  return seconds;
}
