// The terminal's input, by characters, lines and numbers.
#include <stdio.h>
#include <string.h>

int main(void) {
  char line[40];
  int number, sum = 0;
  printf("name? ");
  if (fgets(line, sizeof line, stdin))
    printf("%s", line);
  printf("%d\n", scanf("%d %d", &number, &sum));
  printf("%d %d\n", number, sum);
  printf("%d", scanf("%30s", line));
  printf(" %s\n", line);
  int c = getchar();
  printf("%d\n", c);
  ungetc('!', stdin);
  printf("%c", getchar());
  printf("%c\n", getchar());
  unsigned count = 0, hash = 0;
  while ((c = getchar()) != EOF) {
    count++;
    hash = (hash * 33 + (unsigned)c) & 0xffff;
  }
  printf("%u %u %d\n", count, hash, feof(stdin) != 0);
  return 0;
}
