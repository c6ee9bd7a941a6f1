// Every class of <ctype.h> over all of ASCII.
#include <ctype.h>
#include <stdio.h>

int main(void) {
  static int (*const classes[])(int) = {isalnum, isalpha, isblank, iscntrl, isdigit, isgraph,
                                        islower, isprint, ispunct, isspace, isupper, isxdigit};
  for (int c = 0; c < 128; c++) {
    unsigned bits = 0;
    for (int i = 0; i < 12; i++)
      bits |= (unsigned)(classes[i](c) != 0) << i;
    printf("%03x%c", bits, c % 16 == 15 ? '\n' : ' ');
  }
  for (int c = ' '; c < 127; c++)
    putchar(isupper(c) ? tolower(c) : toupper(c));
  printf("\n%d\n", isalpha(EOF) != 0);
  return 0;
}
