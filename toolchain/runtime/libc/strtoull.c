#define NAME strtoull
#define TYPE unsigned long long
#define UTYPE unsigned long long
#define LOWEST 0
#define HIGHEST ULLONG_MAX
#include "strtol.h"
