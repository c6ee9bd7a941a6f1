#ifndef DEBUGIO_H
#define DEBUGIO_H

/* Services of the host's debugger to a program that runs under it: its terminal, its files and
   its clock. Every call stops the processor for a moment. Without a debugger a call never
   returns. */

#include <stdarg.h>
#include <stddef.h>
#include <time.h>

#ifdef __cplusplus
extern "C" {
#endif

/* A file that is open on the host. */
typedef int DEBUG_FILE;

/* ---- Terminal */

int debug_printf(const char *format, ...) __attribute__((__format__(__printf__, 1, 2)));
int debug_vprintf(const char *format, va_list arguments);
int debug_putchar(int character);
/* Adds a new line. */
int debug_puts(const char *text);

int debug_scanf(const char *format, ...);
int debug_vscanf(const char *format, va_list arguments);
/* Waits for a line to be typed. -1 at the end of the input. */
int debug_getchar(void);
/* One line without its end; `size` includes the closing zero. */
char *debug_gets(char *buffer, size_t size);
/* Waits for a key. */
int debug_getch(void);
/* 1 if a key has been typed. */
int debug_kbhit(void);

/* Each reads one line as a number. */
void debug_getint(int *value);
void debug_getuint(unsigned *value);
void debug_getlong(long *value);
void debug_getulong(unsigned long *value);
void debug_getllong(long long *value);
void debug_getullong(unsigned long long *value);
void debug_getfloat(float *value);
void debug_getdouble(double *value);

/* ---- Files: as in <stdio.h>, with 0 for a file that could not be opened. */

DEBUG_FILE debug_fopen(const char *name, const char *mode);
DEBUG_FILE debug_freopen(const char *name, const char *mode, DEBUG_FILE file);
DEBUG_FILE debug_tmpfile(void);
int debug_fclose(DEBUG_FILE file);
int debug_fflush(DEBUG_FILE file);
int debug_fprintf(DEBUG_FILE file, const char *format, ...)
    __attribute__((__format__(__printf__, 2, 3)));
int debug_vfprintf(DEBUG_FILE file, const char *format, va_list arguments);
int debug_fscanf(DEBUG_FILE file, const char *format, ...);
int debug_vfscanf(DEBUG_FILE file, const char *format, va_list arguments);
int debug_fgetc(DEBUG_FILE file);
char *debug_fgets(char *buffer, size_t size, DEBUG_FILE file);
int debug_fputc(int character, DEBUG_FILE file);
int debug_fputs(const char *text, DEBUG_FILE file);
int debug_ungetc(int character, DEBUG_FILE file);
size_t debug_fread(void *buffer, size_t size, size_t count, DEBUG_FILE file);
size_t debug_fwrite(const void *buffer, size_t size, size_t count, DEBUG_FILE file);
int debug_fseek(DEBUG_FILE file, int offset, int whence);
int debug_ftell(DEBUG_FILE file);
void debug_rewind(DEBUG_FILE file);
/* The length; the position returns to the beginning. */
int debug_filesize(DEBUG_FILE file);
void debug_clearerr(DEBUG_FILE file);
int debug_feof(DEBUG_FILE file);
int debug_ferror(DEBUG_FILE file);
void debug_perror(const char *prefix);
int debug_remove(const char *name);
int debug_rename(const char *old_name, const char *new_name);
/* 0, or -1 if the buffer is too small. */
int debug_tmpnam(char *buffer, size_t size);

/* ---- Program */

/* Ends the program; the debugger shows the code. */
void debug_exit(int code) __attribute__((__noreturn__));
/* Stops as at a breakpoint. */
void debug_break(void);
/* Reports an error with its text. */
void debug_runtime_error(const char *text);
/* Reports a failed assertion. */
void debug_assert_failed(void);
unsigned long debug_time(void);
/* 0, or -1 if there is no such variable or the buffer is too small. */
int debug_getenv(const char *name, char *buffer, size_t size);
int debug_system(const char *command);
/* Fills the buffer with a null-terminated array of pointers and the strings that they point to.
   Arguments that don't fit are left out; the answer is the count of those that do. */
int debug_getargs(void *buffer, size_t size);
/* Has the debugger load the symbols of an image that was placed at an address. */
void debug_loadsymbols(const char *file_name, const void *address);

#ifdef __cplusplus
}
#endif

#endif
