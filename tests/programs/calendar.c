// Dates in UTC.
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <time.h>

int main(void) {
  static const long times[] = {0, 86399, 951782400, 1078012799, 1234567890, 2147483647, -1, 978307199,
                               1104537600, 1230768000, 1293839999};
#ifndef __MSP430__
  setenv("TZ", "UTC", 1);
#endif
  for (int i = 0; i < 11; i++) {
    const time_t time = times[i];
    struct tm *parts = gmtime(&time);
    char text[80];
    strftime(text, sizeof text, "%Y-%m-%d %H:%M:%S %a %A %b %B %j %U %W %V %G %y %p %I", parts);
    printf("%s\n", text);
    printf("%s", asctime(parts));
    struct tm again = *parts;
    printf("%d\n", mktime(&again) == time);
  }
  struct tm odd = {.tm_year = 100, .tm_mon = 14, .tm_mday = -3, .tm_hour = 50, .tm_min = -5};
  const time_t time = mktime(&odd);
  printf("%ld %d-%d-%d %d:%d %d\n", (long)time, odd.tm_year, odd.tm_mon, odd.tm_mday, odd.tm_hour,
         odd.tm_min, odd.tm_wday);
  printf("%.0f\n", difftime(times[4], times[2]));
  return 0;
}
