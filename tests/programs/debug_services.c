// The debugger's services called directly.
#include <debugio.h>
#include <stdlib.h>
#include <string.h>

int main(void) {
  char text[20];
  debug_printf("%d %s %c\n", 42, "text", 'x');
  debug_puts("line");
  debug_putchar('a');
  debug_putchar('\n');
  const DEBUG_FILE file = debug_fopen("services.tmp", "w+");
  debug_printf("%d\n", file >= 3);
  debug_fputs("stored text\n", file);
  debug_fprintf(file, "%d %u\n", -7, 65535u);
  debug_fputc('!', file);
  debug_printf("%d\n", debug_ftell(file));
  debug_rewind(file);
  debug_fgets(text, sizeof text, file);
  debug_printf("%s", text);
  int a;
  unsigned b;
  debug_printf("%d\n", debug_fscanf(file, "%d %u", &a, &b));
  debug_printf("%d %u\n", a, b);
  debug_fseek(file, -1, 2);
  debug_printf("%c\n", debug_fgetc(file));
  debug_printf("%d\n", debug_filesize(file));
  debug_printf("%d\n", (int)debug_fread(text, 1, 6, file));
  text[6] = 0;
  debug_printf("%s %d\n", text, debug_fclose(file));
  debug_printf("%d %d\n", debug_remove("services.tmp"), debug_fopen("services.tmp", "r"));
  debug_printf("%d\n", debug_time() > 1000000000);
  debug_exit(9);
}
