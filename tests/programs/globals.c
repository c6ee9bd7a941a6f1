// What start-up has to prepare: initialised, zeroed and constant data of all kinds, with
// addresses in it.
#include <inttypes.h>
#include <stdio.h>
#include <string.h>

int16_t number = -1234;
uint64_t wide = 0x0123456789abcdef;
double real = 2.718281828459045;
char text[] = "modifiable";
const char constant[] = "constant";
const char *pointer = "pointed to";
static uint8_t odd[7] = {1, 2, 3};
static uint32_t zeroed[50];
static uint8_t single;
static int16_t *address = &number;
static const char *const names[] = {"first", "second", "third"};
static const char *const *name = &names[1];

static struct Device {
  const char *label;
  struct Device *next;
  int (*compare)(const char *, const char *);
  uint8_t flags[3];
} last = {"last", NULL, strcmp, {7}}, first = {"first", &last, NULL, {1, 2, 3}};

static int counter(void) {
  static int count = 40;
  static int calls;
  calls++;
  return count += calls;
}

int main(void) {
  unsigned sum = 0;
  for (unsigned i = 0; i < sizeof zeroed; i++)
    sum += ((uint8_t *)zeroed)[i];
  for (unsigned i = 0; i < sizeof odd; i++)
    sum += odd[i];
  printf("%d %" PRIx64 " %.15g %s %s %s %u %u\n", number, wide, real, text, constant, pointer, sum,
         single);
  *address += 34;
  text[0] = 'M';
  odd[6] = 9;
  zeroed[49] = 5;
  printf("%d %s %u %s %" PRIu32 "\n", number, text, odd[6], *name, zeroed[49]);
  printf("%s %s %d %d\n", first.next->label, first.label, first.next->compare("a", "a"),
         first.flags[2] + last.flags[0]);
  const int one = counter(), two = counter(), three = counter();
  printf("%d %d %d\n", one, two, three);
  return 0;
}
