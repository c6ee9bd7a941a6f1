#include <errno.h>
#include <stddef.h>
#include <stdint.h>

/// The first address behind the heap, of which the link says whether it is fixed.
extern char *__heap_limit(char *stack);

extern char __heap_start[];

static char *heap_end = __heap_start;

void *sbrk(ptrdiff_t increment) {
  char *const before = heap_end;
  char *const stack = __builtin_frame_address(0);
  const uintptr_t wanted = (uintptr_t)before + (uintptr_t)increment;
  const int wrapped = increment < 0 ? wanted > (uintptr_t)before : wanted < (uintptr_t)before;
  if (wrapped || wanted > (uintptr_t)__heap_limit(stack)) {
    errno = ENOMEM;
    return (void *)-1;
  }
  heap_end = (char *)wanted;
  return before;
}
