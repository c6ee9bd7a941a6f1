// qsort and bsearch over several element sizes, with and without equal keys.
#include <inttypes.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

typedef struct { int16_t key; char name[10]; } Record;

static int by_number(const void *a, const void *b) {
  const int32_t x = *(const int32_t *)a, y = *(const int32_t *)b;
  return (x > y) - (x < y);
}

static int by_text(const void *a, const void *b) {
  return strcmp(*(const char *const *)a, *(const char *const *)b);
}

static int by_key(const void *a, const void *b) {
  const Record *x = a, *y = b;
  return x->key != y->key ? x->key - y->key : strcmp(x->name, y->name);
}

static int by_byte(const void *a, const void *b) {
  return *(const unsigned char *)a - *(const unsigned char *)b;
}

int main(void) {
  static int32_t numbers[100];
  uint32_t state = 1;
  for (int i = 0; i < 100; i++) {
    state = state * 1664525u + 1013904223u;
    numbers[i] = (int32_t)(state >> 8) % 100000 - 50000;
  }
  qsort(numbers, 100, sizeof numbers[0], by_number);
  for (int i = 0; i < 100; i += 9)
    printf("%" PRId32 " ", numbers[i]);
  const int32_t wanted = numbers[63], missing = 99999;
  printf("\n%d %d\n",
         (int)((int32_t *)bsearch(&wanted, numbers, 100, sizeof wanted, by_number) - numbers),
         bsearch(&missing, numbers, 100, sizeof missing, by_number) == NULL);
  const char *words[] = {"pear", "apple", "fig", "orange", "banana", "apple", "kiwi", ""};
  qsort(words, 8, sizeof words[0], by_text);
  for (int i = 0; i < 8; i++)
    printf("<%s>", words[i]);
  Record records[] = {{3, "c"}, {-1, "z"}, {3, "a"}, {0, "m"}, {-1, "b"}, {300, "q"}, {3, "b"}};
  qsort(records, 7, sizeof records[0], by_key);
  printf("\n");
  for (int i = 0; i < 7; i++)
    printf("%d%s ", records[i].key, records[i].name);
  char letters[] = "the quick brown fox jumps over the lazy dog";
  qsort(letters, strlen(letters), 1, by_byte);
  printf("\n<%s>\n", letters);
  return 0;
}
