#ifndef _SYS_REENT_H_
#define _SYS_REENT_H_

/* The library's state of a thread. There is one thread, and `errno` is all of its state that
   the library keeps in one place; functions with further state own it. */

#include <sys/_types.h>

typedef struct __stdio_file __FILE;

struct _reent {
  int _errno;
};

extern struct _reent _reent_state;

#define _REENT (&_reent_state)
#define _GLOBAL_REENT (&_reent_state)

/* The sign that lgamma leaves. */
extern int _signgam_state;
#define _REENT_SIGNGAM(reent) (_signgam_state)

#endif
