#define NAME strtoul
#define TYPE unsigned long
#define UTYPE unsigned long
#define LOWEST 0
#define HIGHEST ULONG_MAX
#include "strtol.h"
