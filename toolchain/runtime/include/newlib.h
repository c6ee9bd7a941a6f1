#ifndef __NEWLIB_H__
#define __NEWLIB_H__ 1

/* What the C library's headers and sources are configured for: one thread, one locale, no wide
   streams, `long double` the same as `double`. */

#include <_newlib_version.h>

#define _WANT_IO_C99_FORMATS 1
#define _WANT_IO_LONG_LONG 1
#define _WANT_REENT_SMALL 1
#define _MB_LEN_MAX 1
#define _LDBL_EQ_DBL 1
#define _HAVE_LONG_DOUBLE 1
#define _LITE_EXIT 1
#define _NANO_MALLOC 1
#define _REENT_GLOBAL_ATEXIT 1

#endif
