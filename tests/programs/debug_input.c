// The debugger's services that read the terminal, move files, and ask the host.
#include <debugio.h>
#include <stdarg.h>
#include <string.h>

static void print(const char *format, ...) {
  va_list arguments;
  va_start(arguments, format);
  debug_vprintf(format, arguments);
  va_end(arguments);
}

static int scan(DEBUG_FILE file, const char *format, ...) {
  va_list arguments;
  va_start(arguments, format);
  const int count = debug_vfscanf(file, format, arguments);
  va_end(arguments);
  return count;
}

static void numbers(void) {
  int i;
  unsigned u;
  long l;
  unsigned long ul;
  long long ll;
  unsigned long long ull;
  float f;
  double d;
  debug_getint(&i);
  debug_getuint(&u);
  debug_getlong(&l);
  debug_getulong(&ul);
  debug_getllong(&ll);
  debug_getullong(&ull);
  debug_getfloat(&f);
  debug_getdouble(&d);
  print("%d %u %ld %lu\n", i, u, l, ul);
  print("%d %d\n", ll == -5000000000LL, ull == 18446744073709551615ULL);
  print("%d %d\n", f == 1.5f, d == -2.25);
}

static void terminal(void) {
  char text[20];
  int a, b;
  print("%s|\n", debug_gets(text, sizeof text));
  print("%d %d %d\n", debug_scanf("%d %d", &a, &b), a, b);
  print("%d\n", debug_kbhit());
  print("%c", debug_getchar());
  print("%c\n", debug_getch());
}

static void files(void) {
  char text[20] = "";
  DEBUG_FILE file = debug_fopen("input.tmp", "w+");
  print("%d\n", (int)debug_fwrite("abcdef", 2, 3, file));
  print("%d\n", debug_fflush(file));
  debug_rewind(file);
  print("%d %c", debug_feof(file), debug_fgetc(file));
  debug_ungetc('Z', file);
  print("%c\n", debug_fgetc(file));
  print("%d\n", (int)debug_fread(text, 1, 10, file));
  print("%s %d %d\n", text, debug_feof(file) != 0, debug_ferror(file));
  debug_clearerr(file);
  print("%d\n", debug_feof(file));
  debug_fclose(file);
  print("%d\n", debug_rename("input.tmp", "moved.tmp"));
  print("%d\n", debug_fopen("input.tmp", "r"));
  debug_perror("input.tmp");
  file = debug_fopen("other.tmp", "w");
  file = debug_freopen("moved.tmp", "r", file);
  print("%d %s\n", scan(file, "%3s", text), text);
  debug_fclose(file);
  print("%d %d\n", debug_remove("moved.tmp"), debug_remove("other.tmp"));
  file = debug_tmpfile();
  debug_fputs("12 34", file);
  debug_rewind(file);
  int a, b;
  print("%d %d %d\n", scan(file, "%d %d", &a, &b), a, b);
  debug_fclose(file);
  print("%d\n", debug_fgetc(150));
}

static void host(void) {
  char text[200];
  print("%d\n", debug_getenv("HOME", text, sizeof text) == 0);
  print("%d %d\n", debug_getenv("GANTRY_NO_SUCH_VARIABLE", text, sizeof text),
        debug_getenv("HOME", text, 1));
  print("%d\n", debug_tmpnam(text, 1));
  debug_system("echo made > made.tmp"); // refused, unless the user has allowed it
  print("%d\n", debug_fopen("made.tmp", "r"));
}

int main(void) {
  numbers();
  terminal();
  files();
  host();
}
