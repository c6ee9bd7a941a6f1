// A heap of 200 bytes: how much it holds, its end, and that freed neighbours become one block.
#include <errno.h>
#include <stdio.h>
#include <stdlib.h>

int main(void) {
  void *blocks[20];
  int count = 0;
  while (count < 20 && (blocks[count] = malloc(18)) != NULL)
    count++;
  printf("%d %d\n", count, errno == ENOMEM);
  for (int i = 0; i < count; i += 2)
    free(blocks[i]);
  printf("%d\n", malloc(30) == NULL);
  for (int i = 1; i < count; i += 2)
    free(blocks[i]);
  void *whole = malloc(198);
  printf("%d %d\n", whole == blocks[0], malloc(1) == NULL);
  free(whole);
  printf("%d %d\n", malloc(30000) == NULL, calloc(300, 300) == NULL);
  return 0;
}
