#include "debugio.h"

#include "debug_io.h"

static DEBUG_FILE opened(int handle) {
  return handle < 0 ? 0 : handle;
}

DEBUG_FILE debug_fopen(const char *name, const char *mode) {
  return opened(DEBUG_CALL(DEBUG_FOPEN, DEBUG_WORD(name), DEBUG_WORD(mode)));
}

DEBUG_FILE debug_freopen(const char *name, const char *mode, DEBUG_FILE file) {
  return opened(DEBUG_CALL(DEBUG_FREOPEN, DEBUG_WORD(name), DEBUG_WORD(mode), DEBUG_WORD(file)));
}

DEBUG_FILE debug_tmpfile(void) {
  return opened(__debug_io(DEBUG_TMPFILE, 0));
}

// Operations whose only argument is the file.
#define DEFINE_FILE_OPERATION(name, operation)           \
  int name(DEBUG_FILE file) {                            \
    return DEBUG_CALL(operation, DEBUG_WORD(file));      \
  }

DEFINE_FILE_OPERATION(debug_fclose, DEBUG_FCLOSE)
DEFINE_FILE_OPERATION(debug_fflush, DEBUG_FFLUSH)
DEFINE_FILE_OPERATION(debug_fgetc, DEBUG_FGETC)
DEFINE_FILE_OPERATION(debug_ftell, DEBUG_FTELL)
DEFINE_FILE_OPERATION(debug_filesize, DEBUG_FILE_LENGTH)
DEFINE_FILE_OPERATION(debug_feof, DEBUG_FEOF)
DEFINE_FILE_OPERATION(debug_ferror, DEBUG_FERROR)

void debug_rewind(DEBUG_FILE file) {
  DEBUG_CALL(DEBUG_REWIND, DEBUG_WORD(file));
}

void debug_clearerr(DEBUG_FILE file) {
  DEBUG_CALL(DEBUG_CLEARERR, DEBUG_WORD(file));
}

int debug_vfprintf(DEBUG_FILE file, const char *format, va_list arguments) {
  return DEBUG_CALL(DEBUG_VFPRINTF, DEBUG_WORD(file), DEBUG_WORD(format), DEBUG_WORD(arguments));
}

int debug_fprintf(DEBUG_FILE file, const char *format, ...) {
  va_list arguments;
  va_start(arguments, format);
  const int count = debug_vfprintf(file, format, arguments);
  va_end(arguments);
  return count;
}

int debug_vfscanf(DEBUG_FILE file, const char *format, va_list arguments) {
  return DEBUG_CALL(DEBUG_VFSCANF, DEBUG_WORD(file), DEBUG_WORD(format), DEBUG_WORD(arguments));
}

int debug_fscanf(DEBUG_FILE file, const char *format, ...) {
  va_list arguments;
  va_start(arguments, format);
  const int items = debug_vfscanf(file, format, arguments);
  va_end(arguments);
  return items;
}

char *debug_fgets(char *buffer, size_t size, DEBUG_FILE file) {
  return DEBUG_CALL(DEBUG_FGETS, DEBUG_WORD(buffer), size, DEBUG_WORD(file)) == 0 ? buffer : NULL;
}

int debug_fputc(int character, DEBUG_FILE file) {
  return DEBUG_CALL(DEBUG_FPUTC, DEBUG_WORD(character), DEBUG_WORD(file));
}

int debug_fputs(const char *text, DEBUG_FILE file) {
  return DEBUG_CALL(DEBUG_FPUTS, DEBUG_WORD(text), DEBUG_WORD(file));
}

int debug_ungetc(int character, DEBUG_FILE file) {
  return DEBUG_CALL(DEBUG_UNGETC, DEBUG_WORD(character), DEBUG_WORD(file));
}

size_t debug_fread(void *buffer, size_t size, size_t count, DEBUG_FILE file) {
  return (size_t)DEBUG_CALL(DEBUG_FREAD, DEBUG_WORD(buffer), size, count, DEBUG_WORD(file));
}

size_t debug_fwrite(const void *buffer, size_t size, size_t count, DEBUG_FILE file) {
  return (size_t)DEBUG_CALL(DEBUG_FWRITE, DEBUG_WORD(buffer), size, count, DEBUG_WORD(file));
}

int debug_fseek(DEBUG_FILE file, int offset, int whence) {
  return DEBUG_CALL(DEBUG_FSEEK, DEBUG_WORD(file), DEBUG_WORD(offset), DEBUG_WORD(whence));
}

void debug_perror(const char *prefix) {
  DEBUG_CALL(DEBUG_PERROR, DEBUG_WORD(prefix));
}

int debug_remove(const char *name) {
  return DEBUG_CALL(DEBUG_REMOVE, DEBUG_WORD(name));
}

int debug_rename(const char *old_name, const char *new_name) {
  return DEBUG_CALL(DEBUG_RENAME, DEBUG_WORD(old_name), DEBUG_WORD(new_name));
}

int debug_tmpnam(char *buffer, size_t size) {
  return DEBUG_CALL(DEBUG_TMPNAM, DEBUG_WORD(buffer), size);
}
