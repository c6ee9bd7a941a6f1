#define NAME strtoll
#define TYPE long long
#define UTYPE unsigned long long
#define LOWEST LLONG_MIN
#define HIGHEST LLONG_MAX
#include "strtol.h"
