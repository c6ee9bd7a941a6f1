#include <time.h>

static char text[26];

char *asctime_r(const struct tm *time, char *buffer) {
  strftime(buffer, sizeof text, "%a %b %e %H:%M:%S %Y\n", time);
  return buffer;
}

char *asctime(const struct tm *time) {
  return asctime_r(time, text);
}

char *ctime(const time_t *time) {
  return asctime(localtime(time));
}

char *ctime_r(const time_t *time, char *buffer) {
  struct tm broken_down;
  return asctime_r(gmtime_r(time, &broken_down), buffer);
}
