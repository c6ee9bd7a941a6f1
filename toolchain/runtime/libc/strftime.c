#include <string.h>
#include <time.h>

typedef struct {
  char *next;
  size_t left;  // with the closing zero
  int full;
} Target;

static const char day_names[] = "Sunday\0Monday\0Tuesday\0Wednesday\0Thursday\0Friday\0Saturday";
static const char month_names[] =
    "January\0February\0March\0April\0May\0June\0July\0August\0September\0October\0November\0"
    "December";

static void put(Target *target, char character) {
  if (target->left <= 1) {
    target->full = 1;
    return;
  }
  *target->next++ = character;
  target->left--;
}

static void put_number(Target *target, int value, int digits, char fill) {
  char text[6];
  int length = 0;
  if (value < 0) {
    put(target, '-');
    value = -value;
  }
  do
    text[length++] = (char)('0' + value % 10);
  while ((value /= 10) != 0);
  for (int i = digits; i > length; i--)
    put(target, fill);
  while (length > 0)
    put(target, text[--length]);
}

static void put_name(Target *target, const char *names, int index, int length) {
  while (index-- > 0)
    names += strlen(names) + 1;
  while (*names && length-- != 0)
    put(target, *names++);
}

// The ISO 8601 week, 1 to 53, and the year that it belongs to.
static int iso_week(const struct tm *time, int *year) {
  const int weekday = (time->tm_wday + 6) % 7;
  int week = (time->tm_yday - weekday + 10) / 7;
  *year = time->tm_year + 1900;
  const int before = *year - 1;
  // A year has 53 weeks if it begins on a Thursday, or on a Wednesday and is a leap year.
  const int first = (weekday - time->tm_yday % 7 + 7) % 7;
  const int leap = *year % 4 == 0 && (*year % 100 != 0 || *year % 400 == 0);
  if (week == 53 && first != 3 && !(first == 2 && leap)) {
    ++*year;
    return 1;
  }
  if (week != 0)
    return week;
  *year = before;
  const int leap_before = before % 4 == 0 && (before % 100 != 0 || before % 400 == 0);
  const int first_before = (first + 7 - 1 - leap_before) % 7;
  return first_before == 3 || (first_before == 2 && leap_before) ? 53 : 52;
}

static void format(Target *target, const char *text, const struct tm *time);

static void convert(Target *target, char conversion, const struct tm *time) {
  const int hour = time->tm_hour % 12;
  int iso_year;
  switch (conversion) {
    case 'a': put_name(target, day_names, time->tm_wday, 3); break;
    case 'A': put_name(target, day_names, time->tm_wday, -1); break;
    case 'b': case 'h': put_name(target, month_names, time->tm_mon, 3); break;
    case 'B': put_name(target, month_names, time->tm_mon, -1); break;
    case 'c': format(target, "%a %b %e %H:%M:%S %Y", time); break;
    case 'C': put_number(target, (time->tm_year + 1900) / 100, 2, '0'); break;
    case 'd': put_number(target, time->tm_mday, 2, '0'); break;
    case 'D': case 'x': format(target, "%m/%d/%y", time); break;
    case 'e': put_number(target, time->tm_mday, 2, ' '); break;
    case 'F': format(target, "%Y-%m-%d", time); break;
    case 'g': iso_week(time, &iso_year); put_number(target, iso_year % 100, 2, '0'); break;
    case 'G': iso_week(time, &iso_year); put_number(target, iso_year, 4, '0'); break;
    case 'H': put_number(target, time->tm_hour, 2, '0'); break;
    case 'I': put_number(target, hour == 0 ? 12 : hour, 2, '0'); break;
    case 'j': put_number(target, time->tm_yday + 1, 3, '0'); break;
    case 'm': put_number(target, time->tm_mon + 1, 2, '0'); break;
    case 'M': put_number(target, time->tm_min, 2, '0'); break;
    case 'n': put(target, '\n'); break;
    case 'p': put(target, time->tm_hour < 12 ? 'A' : 'P'); put(target, 'M'); break;
    case 'r': format(target, "%I:%M:%S %p", time); break;
    case 'R': format(target, "%H:%M", time); break;
    case 'S': put_number(target, time->tm_sec, 2, '0'); break;
    case 't': put(target, '\t'); break;
    case 'T': case 'X': format(target, "%H:%M:%S", time); break;
    case 'u': put_number(target, time->tm_wday == 0 ? 7 : time->tm_wday, 1, '0'); break;
    case 'U': put_number(target, (time->tm_yday + 7 - time->tm_wday) / 7, 2, '0'); break;
    case 'V': put_number(target, iso_week(time, &iso_year), 2, '0'); break;
    case 'w': put_number(target, time->tm_wday, 1, '0'); break;
    case 'W': put_number(target, (time->tm_yday + 7 - (time->tm_wday + 6) % 7) / 7, 2, '0'); break;
    case 'y': put_number(target, (time->tm_year + 1900) % 100, 2, '0'); break;
    case 'Y': put_number(target, time->tm_year + 1900, 1, '0'); break;
    case 'z': format(target, "+0000", time); break;
    case 'Z': format(target, "UTC", time); break;
    default: put(target, conversion); break;
  }
}

static void format(Target *target, const char *text, const struct tm *time) {
  for (; *text; text++) {
    if (*text != '%') {
      put(target, *text);
      continue;
    }
    text++;
    if (*text == 'E' || *text == 'O')
      text++;
    if (!*text)
      return;
    convert(target, *text, time);
  }
}

size_t strftime(char *buffer, size_t size, const char *text, const struct tm *time) {
  Target target = {buffer, size, 0};
  if (size == 0)
    return 0;
  format(&target, text, time);
  *target.next = 0;
  return target.full ? 0 : (size_t)(target.next - buffer);
}
