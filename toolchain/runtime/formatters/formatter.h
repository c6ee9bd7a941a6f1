#pragma once

#include <stdarg.h>

/// What every member of the printf family is made on: formats to `put`, called once for each
/// character. The answer is the number of characters. Which conversions it knows depends on
/// the formatter library of the link.
int __vfprintf_core(void (*put)(char character, void *context), void *context,
                    const char *format, va_list arguments);

/// What every member of the scanf family is made on. `get` gives the next character or -1;
/// `unget` takes the last one back. The answer is the number of items stored, or -1 if the
/// input ended in front of the first one.
int __vfscanf_core(int (*get)(void *context), void (*unget)(int character, void *context),
                   void *context, const char *format, va_list arguments);
