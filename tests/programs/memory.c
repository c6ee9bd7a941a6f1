// The heap: allocation, growth, reuse, zeroing, exhaustion.
#include <stdint.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

enum { SLOTS = 24 };

static uint32_t state = 12345;

static unsigned pseudo(unsigned limit) {
  state = state * 1103515245u + 12345u;
  return (unsigned)(state >> 16) % limit;
}

static int filled_with(const unsigned char *memory, unsigned size, unsigned char value) {
  for (unsigned i = 0; i < size; i++)
    if (memory[i] != value)
      return 0;
  return 1;
}

int main(void) {
  static unsigned char *slots[SLOTS];
  static unsigned sizes[SLOTS];
  int faults = 0;
  for (int round = 0; round < 2000; round++) {
    const unsigned i = pseudo(SLOTS);
    if (slots[i] && !filled_with(slots[i], sizes[i], (unsigned char)i))
      faults++;
    switch (pseudo(3)) {
      case 0:
        free(slots[i]);
        slots[i] = NULL;
        break;
      case 1: {
        const unsigned size = 1 + pseudo(60);
        unsigned char *grown = realloc(slots[i], size);
        if (!grown) {
          faults++;
          break;
        }
        if (slots[i] && !filled_with(grown, size < sizes[i] ? size : sizes[i], (unsigned char)i))
          faults++;
        slots[i] = grown;
        sizes[i] = size;
        memset(grown, (int)i, size);
        break;
      }
      default:
        free(slots[i]);
        sizes[i] = 1 + pseudo(40);
        slots[i] = calloc(sizes[i], 1);
        if (!slots[i] || !filled_with(slots[i], sizes[i], 0))
          faults++;
        else
          memset(slots[i], (int)i, sizes[i]);
        break;
    }
  }
  for (int i = 0; i < SLOTS; i++)
    free(slots[i]);
  printf("faults %d\n", faults);
  char *text = malloc(6);
  strcpy(text, "hello");
  text = realloc(text, 20);
  strcat(text, ", heap");
  printf("%s %d\n", text, calloc(SIZE_MAX / 2, 3) == NULL);
  free(text);
  free(NULL);
  char *copy = strdup("copied");
  printf("%s\n", copy);
  free(copy);
  return 0;
}
