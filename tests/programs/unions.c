// Unions, type punning through memcpy, byte order, enumerations, sizes.
#include <inttypes.h>
#include <stddef.h>
#include <stdio.h>
#include <string.h>

typedef union {
  uint32_t whole;
  uint16_t halves[2];
  uint8_t bytes[4];
} Word;

typedef enum { RED = 1, GREEN = 5, BLUE, LAST = 0x7fff } Colour;

typedef struct {
  enum { NUMBER, TEXT, PAIR } kind;
  union {
    int32_t number;
    const char *text;
    struct { int8_t first, second; } pair;
  } as;
} Value;

static void show(Value value) {
  switch (value.kind) {
    case NUMBER: printf("%" PRId32 "\n", value.as.number); break;
    case TEXT: printf("%s\n", value.as.text); break;
    case PAIR: printf("%d:%d\n", value.as.pair.first, value.as.pair.second); break;
  }
}

int main(void) {
  Word word = {.whole = 0x12345678};
  printf("%x %x %x\n", word.halves[0], word.halves[1], word.bytes[3]);
  word.bytes[1] = 0xff;
  printf("%08" PRIx32 "\n", word.whole);
  double one = 1.0;
  uint8_t bytes[8];
  memcpy(bytes, &one, 8);
  for (int i = 0; i < 8; i++)
    printf("%02x", bytes[i]);
  printf("\n%d %d %d\n", BLUE, LAST, RED + GREEN);
  show((Value){NUMBER, {.number = -100000}});
  show((Value){TEXT, {.text = "text"}});
  show((Value){PAIR, {.pair = {-3, 4}}});
  const Colour colours[] = {RED, BLUE, GREEN};
  int sum = 0;
  for (int i = 0; i < 3; i++)
    sum += (int)colours[i];
  printf("%d %u %u\n", sum, (unsigned)sizeof(Word), (unsigned)offsetof(Word, bytes));
  return 0;
}
