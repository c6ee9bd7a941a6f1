// printf in many forms.
#include <inttypes.h>
#include <stddef.h>
#include <stdio.h>

int main(void) {
  int stored = -1;
  printf("[%d][%5d][%-5d][%05d][%+d][% d][%.3d][%8.3d]\n", 42, 42, 42, 42, 42, 42, 42, 42);
  printf("[%d][%5d][%-5d][%05d][%+d][% d][%.3d]\n", -42, -42, -42, -42, -42, -42, -42);
  printf("[%u][%x][%X][%#x][%#X][%o][%#o]\n", 65535u, 0xbeefu, 0xbeefu, 0xbeefu, 0xbeefu, 511u, 511u);
  printf("[%" PRId32 "][%12" PRId32 "][%" PRIx32 "]\n", INT32_MIN, INT32_MAX, UINT32_MAX);
  printf("[%" PRId64 "][%" PRIu64 "][%" PRIx64 "]\n", INT64_MIN, UINT64_MAX, UINT64_MAX - 15);
  printf("[%hhd][%hhu][%hd]\n", (signed char)-3, (unsigned char)200, (short)-300);
  printf("[%zu][%td]\n", sizeof(int32_t), (ptrdiff_t)-5);
  printf("[%c][%5c][%-5c][%%]\n", 'a', 'b', 'c');
  printf("[%s][%8s][%-8s][%.2s][%8.1s][%s]\n", "text", "text", "text", "text", "text", "");
  printf("[%*d][%-*d][%.*f]\n", 6, 1, 6, 2, 3, 2.0 / 3);
  printf("count%n\n", &stored);
  printf("%d\n", stored);
  printf("[%f][%.2f][%10.3f][%-10.1f][%+.0f][%#.0f]\n", 3.5, 3.14159, -2.5, 7.25, 2.5, 3.0);
  printf("[%e][%.3E][%12.2e]\n", 12345.678, 0.00012345, -9.995e-10);
  printf("[%g][%g][%g][%G][%#g][%.3g]\n", 100000.0, 1000000.0, 0.0001, 0.00001, 1.5, 1234.5);
  printf("[%f][%F][%e][%010f]\n", 1 / 0.0, -1 / 0.0, 0.0, -1.5);
  printf("[%a][%.2a]\n", 1.0, 3.999);
  printf("%d\n", printf("twelve chars"));
  fputs("fputs\n", stdout);
  putchar('p');
  putc('q', stdout);
  fputc('\n', stdout);
  puts("puts");
  fprintf(stdout, "%s\n", "fprintf");
  char buffer[16];
  printf("%d ", snprintf(buffer, sizeof buffer, "%d %s", 100, "is a longer text"));
  printf("%s\n", buffer);
  printf("%d ", sprintf(buffer, "%04x", 0xabu));
  printf("%s\n", buffer);
  return 0;
}
