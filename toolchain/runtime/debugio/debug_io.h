#pragma once

/// Operations that the host's debugger carries out for the program. The numbers are the
/// debugger's.
enum {
  DEBUG_ASSERT_FAILED = 4,
  DEBUG_RUNTIME_ERROR = 5,
  DEBUG_FOPEN = 6,
  DEBUG_FFLUSH = 7,
  DEBUG_FCLOSE = 8,
  DEBUG_FGETC = 17,
  DEBUG_FGETS = 18,
  DEBUG_FPUTC = 19,
  DEBUG_FPUTS = 20,
  DEBUG_GETCHAR = 21,
  DEBUG_GETS = 22,
  DEBUG_PUTCHAR = 23,
  DEBUG_PUTS = 24,
  DEBUG_GET_INT = 25,
  DEBUG_GET_UNSIGNED = 26,
  DEBUG_GET_LONG = 27,
  DEBUG_GET_UNSIGNED_LONG = 28,
  DEBUG_GET_FLOAT = 29,
  DEBUG_GET_DOUBLE = 30,
  DEBUG_GET_LONG_LONG = 31,
  DEBUG_GET_UNSIGNED_LONG_LONG = 32,
  DEBUG_FREAD = 33,
  DEBUG_FWRITE = 34,
  DEBUG_FSEEK = 35,
  DEBUG_FTELL = 36,
  DEBUG_REWIND = 37,
  DEBUG_FILE_LENGTH = 38,
  DEBUG_CLEARERR = 39,
  DEBUG_FEOF = 40,
  DEBUG_FERROR = 41,
  DEBUG_BREAK = 42,
  DEBUG_KEY_AVAILABLE = 43,
  DEBUG_GET_KEY = 44,
  DEBUG_EXIT = 46,
  DEBUG_TIME = 47,
  DEBUG_VFPRINTF = 57,
  DEBUG_VPRINTF = 58,
  DEBUG_VFSCANF = 65,
  DEBUG_VSCANF = 66,
  DEBUG_UNGETC = 73,
  DEBUG_FREOPEN = 76,
  DEBUG_PERROR = 77,
  DEBUG_REMOVE = 78,
  DEBUG_RENAME = 79,
  DEBUG_TMPFILE = 80,
  DEBUG_TMPNAM = 81,
  DEBUG_GETENV = 82,
  DEBUG_SYSTEM = 83,
  DEBUG_ARGUMENTS = 84,
  DEBUG_LOAD_SYMBOLS = 120,
};

/// Asks the host for an operation and waits for it. `arguments` are words one behind the other;
/// with a 64-bit integer or a double, four words.
int __debug_io(unsigned operation, const void *arguments);

/// The same for input: asks again while the answer is `again`, which the host gives until
/// something has been typed.
int __debug_io_wait(unsigned operation, const void *arguments, int again);

/// A word of an argument block from anything that fits one.
#define DEBUG_WORD(value) ((unsigned)(value))

#define DEBUG_CALL(operation, ...) \
  __debug_io(operation, (const unsigned[]){__VA_ARGS__})
