// What the program is called with.
#include <stdio.h>

int main(int argc, char **argv) {
  printf("%d\n", argc);
  for (int i = 1; i < argc; i++)
    printf("<%s>\n", argv[i]);
  return argv[argc] != NULL;
}
