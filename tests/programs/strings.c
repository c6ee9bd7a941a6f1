// <string.h>: lengths, copies at every alignment, comparisons, searches, tokens.
#include <stdio.h>
#include <string.h>
#include <strings.h>

static int sign(int value) {
  return (value > 0) - (value < 0);
}

static void copies(void) {
  char from[40], to[40];
  unsigned total = 0;
  for (int i = 0; i < 40; i++)
    from[i] = (char)('A' + i);
  for (int source = 0; source < 3; source++)
    for (int target = 0; target < 3; target++)
      for (unsigned size = 0; size < 20; size++) {
        memset(to, '.', sizeof to);
        memcpy(to + target, from + source, size);
        for (int i = 0; i < 40; i++)
          total = total * 31 + (unsigned char)to[i];
        total &= 0xffff;
      }
  printf("%u\n", total);
  memmove(from + 3, from, 20);
  printf("%.23s\n", from);
  memmove(from, from + 5, 20);
  printf("%.20s\n", from);
  memset(to + 1, 'x', 7);
  printf("%.9s %d\n", to, memcmp("abc\0d", "abc\0e", 5) < 0);
}

static void searches(void) {
  const char *text = "the rain in spain stays mainly in the plain";
  printf("%s|%s|%s\n", strchr(text, 'r'), strrchr(text, 'p'), strstr(text, "main"));
  printf("%d %d %d\n", strstr(text, "snow") == NULL, strchr(text, 'z') == NULL,
         *strchr(text, 0) == 0);
  printf("%u %u %s\n", (unsigned)strspn(text, "eht "), (unsigned)strcspn(text, "xyz"),
         strpbrk(text, "psy"));
  printf("%s\n", (const char *)memchr(text, 'i', 20));
}

static void joins(void) {
  char buffer[32] = "one";
  strcat(buffer, " two");
  strncat(buffer, " three four", 6);
  printf("%s %u\n", buffer, (unsigned)strlen(buffer));
  memset(buffer, '#', sizeof buffer);
  strncpy(buffer, "abc", 6);
  printf("%d%d%d%d %c\n", buffer[2] == 'c', buffer[3], buffer[4], buffer[5], buffer[6]);
}

static void compares(void) {
  static const char *const words[] = {"", "a", "abc", "abd", "ABC", "abcdef", "\xff"};
  for (int i = 0; i < 7; i++) {
    for (int j = 0; j < 7; j++)
      printf("%d%d%d ", sign(strcmp(words[i], words[j])), sign(strncmp(words[i], words[j], 3)),
             sign(strcasecmp(words[i], words[j])));
    printf("\n");
  }
}

static void tokens(void) {
  char text[] = ",,alpha, beta;gamma;;delta,";
  for (char *token = strtok(text, ",; "); token; token = strtok(NULL, ",; "))
    printf("[%s]", token);
  printf("\n");
}

int main(void) {
  copies();
  searches();
  joins();
  compares();
  tokens();
  return 0;
}
