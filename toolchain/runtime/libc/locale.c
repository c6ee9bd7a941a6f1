#include <limits.h>
#include <locale.h>
#include <string.h>

char *setlocale(int category, const char *name) {
  if (category < LC_ALL || category > LC_MESSAGES)
    return NULL;
  if (name && *name && strcmp(name, "C") != 0 && strcmp(name, "POSIX") != 0)
    return NULL;
  return "C";
}

struct lconv *localeconv(void) {
  static char none[] = "";
  static char point[] = ".";
  static struct lconv conventions = {
    .decimal_point = point, .thousands_sep = none, .grouping = none, .int_curr_symbol = none,
    .currency_symbol = none, .mon_decimal_point = none, .mon_thousands_sep = none,
    .mon_grouping = none, .positive_sign = none, .negative_sign = none,
    .int_frac_digits = CHAR_MAX, .frac_digits = CHAR_MAX, .p_cs_precedes = CHAR_MAX,
    .p_sep_by_space = CHAR_MAX, .n_cs_precedes = CHAR_MAX, .n_sep_by_space = CHAR_MAX,
    .p_sign_posn = CHAR_MAX, .n_sign_posn = CHAR_MAX, .int_n_cs_precedes = CHAR_MAX,
    .int_n_sep_by_space = CHAR_MAX, .int_n_sign_posn = CHAR_MAX, .int_p_cs_precedes = CHAR_MAX,
    .int_p_sep_by_space = CHAR_MAX, .int_p_sign_posn = CHAR_MAX,
  };
  return &conventions;
}
