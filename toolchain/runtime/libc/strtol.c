#define NAME strtol
#define TYPE long
#define UTYPE unsigned long
#define LOWEST LONG_MIN
#define HIGHEST LONG_MAX
#include "strtol.h"
