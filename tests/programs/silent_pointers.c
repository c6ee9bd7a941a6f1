// No output: lists, strings and calls through pointers end in one number.
#include <stdint.h>
#include <stdlib.h>
#include <string.h>

typedef struct Item { struct Item *next; char text[6]; uint8_t weight; } Item;

static uint8_t light(const Item *item) { return item->weight; }
static uint8_t heavy(const Item *item) { return (uint8_t)(item->weight * strlen(item->text)); }

int main(void) {
  static const char *const texts[] = {"a", "bcd", "efghi", "", "jk"};
  static uint8_t (*const weights[])(const Item *) = {light, heavy};
  Item *list = NULL;
  for (int i = 0; i < 20; i++) {
    Item *item = malloc(sizeof *item);
    if (!item)
      return 127;
    strcpy(item->text, texts[i % 5]);
    item->weight = (uint8_t)(i * 3 + 1);
    item->next = list;
    list = item;
  }
  unsigned sum = 0;
  for (int i = 0; list; i++) {
    Item *next = list->next;
    sum = sum * 5 + weights[i & 1](list) + (memcmp("bcd", list->text, 1) == 0);
    sum &= 0x3fff;
    free(list);
    list = next;
  }
  return (int)(sum % 120);
}
