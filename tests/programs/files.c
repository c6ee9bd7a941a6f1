// Files of the host: text and blocks, positions, appending, errors.
#include <stdio.h>
#include <string.h>

int main(void) {
  char line[40];
  FILE *file = fopen("files.tmp", "w");
  if (!file)
    return 1;
  for (int i = 0; i < 5; i++)
    fprintf(file, "line %d of %s\n", i, "the file");
  fputs("last\n", file);
  printf("%ld", ftell(file));
  printf(" %d\n", fclose(file));
  file = fopen("files.tmp", "r");
  int count = 0;
  while (fgets(line, sizeof line, file))
    printf("%d:%s", count++, line);
  printf("%d %d\n", feof(file) != 0, ferror(file));
  rewind(file);
  int first, second;
  printf("%d", fscanf(file, "line %d of the file line %d", &first, &second));
  printf(" %d %d\n", first, second);
  fseek(file, 5, SEEK_SET);
  int c = fgetc(file);
  printf("%c", c);
  ungetc('#', file);
  printf("%c", fgetc(file));
  printf("%c", fgetc(file));
  printf(" %ld\n", ftell(file));
  fseek(file, -5, SEEK_END);
  printf("%u", (unsigned)fread(line, 1, sizeof line, file));
  printf(" %.4s\n", line);
  fclose(file);
  file = fopen("files.tmp", "a+");
  static const unsigned char block[] = {1, 2, 250, 0, 10};
  printf("%u\n", (unsigned)fwrite(block, 1, sizeof block, file));
  fflush(file);
  fseek(file, 0, SEEK_END);
  printf("%ld\n", ftell(file));
  fclose(file);
  printf("%d", rename("files.tmp", "other.tmp"));
  printf("%d", fopen("files.tmp", "r") == NULL);
  printf("%d", remove("other.tmp"));
  printf("%d\n", remove("other.tmp") != 0);
  file = tmpfile();
  char buffer[64];
  setvbuf(file, buffer, _IOFBF, sizeof buffer);
  for (int i = 0; i < 50; i++)
    fputc('a' + i % 26, file);
  rewind(file);
  printf("%s\n", fgets(line, 30, file));
  fclose(file);
  return 0;
}
