#ifndef _STDIO_H_
#define _STDIO_H_

/* Standard input and output through the host's debugger. The terminal is standard input, output
   and error; files are the host's. */

#include <stdarg.h>
#include <stddef.h>
#include <sys/reent.h>

#ifdef __cplusplus
extern "C" {
#endif

typedef struct __stdio_file FILE;
typedef long fpos_t;

extern FILE __stdio_in, __stdio_out, __stdio_err;

#define stdin (&__stdio_in)
#define stdout (&__stdio_out)
#define stderr (&__stdio_err)

#define EOF (-1)
#define BUFSIZ 64
/* With the three standard streams. */
#define FOPEN_MAX 8
#define FILENAME_MAX 256
#define L_tmpnam 32
#define TMP_MAX 26

#define _IOFBF 0
#define _IOLBF 1
#define _IONBF 2

#ifndef SEEK_SET
#define SEEK_SET 0
#define SEEK_CUR 1
#define SEEK_END 2
#endif

/* Standard output is buffered by the line, all other streams only by a buffer given to
   setvbuf. A file's position is within 65534 bytes. */
FILE *fopen(const char *name, const char *mode);
FILE *freopen(const char *name, const char *mode, FILE *stream);
FILE *tmpfile(void);
char *tmpnam(char *buffer);
int fclose(FILE *stream);
int fflush(FILE *stream);
void setbuf(FILE *stream, char *buffer);
int setvbuf(FILE *stream, char *buffer, int mode, size_t size);
int remove(const char *name);
int rename(const char *old_name, const char *new_name);

int fgetc(FILE *stream);
char *fgets(char *buffer, int size, FILE *stream);
int getc(FILE *stream);
int getchar(void);
char *gets(char *buffer);
int ungetc(int character, FILE *stream);
size_t fread(void *buffer, size_t size, size_t count, FILE *stream);

int fputc(int character, FILE *stream);
int fputs(const char *text, FILE *stream);
int putc(int character, FILE *stream);
int putchar(int character);
int puts(const char *text);
size_t fwrite(const void *buffer, size_t size, size_t count, FILE *stream);

int fseek(FILE *stream, long offset, int whence);
long ftell(FILE *stream);
void rewind(FILE *stream);
int fgetpos(FILE *stream, fpos_t *position);
int fsetpos(FILE *stream, const fpos_t *position);

void clearerr(FILE *stream);
int feof(FILE *stream);
int ferror(FILE *stream);
int fileno(FILE *stream);
void perror(const char *prefix);

#define __PRINTF(format, first) __attribute__((__format__(__printf__, format, first)))
#define __SCANF(format, first) __attribute__((__format__(__scanf__, format, first)))

int printf(const char *format, ...) __PRINTF(1, 2);
int fprintf(FILE *stream, const char *format, ...) __PRINTF(2, 3);
int sprintf(char *buffer, const char *format, ...) __PRINTF(2, 3);
int snprintf(char *buffer, size_t size, const char *format, ...) __PRINTF(3, 4);
int vprintf(const char *format, va_list arguments) __PRINTF(1, 0);
int vfprintf(FILE *stream, const char *format, va_list arguments) __PRINTF(2, 0);
int vsprintf(char *buffer, const char *format, va_list arguments) __PRINTF(2, 0);
int vsnprintf(char *buffer, size_t size, const char *format, va_list arguments) __PRINTF(3, 0);

int scanf(const char *format, ...) __SCANF(1, 2);
int fscanf(FILE *stream, const char *format, ...) __SCANF(2, 3);
int sscanf(const char *text, const char *format, ...) __SCANF(2, 3);
int vscanf(const char *format, va_list arguments) __SCANF(1, 0);
int vfscanf(FILE *stream, const char *format, va_list arguments) __SCANF(2, 0);
int vsscanf(const char *text, const char *format, va_list arguments) __SCANF(2, 0);

#undef __PRINTF
#undef __SCANF

#ifdef __cplusplus
}
#endif

#endif
