// Multibyte characters of the "C" locale: a byte each.

#include <stdlib.h>

int mbtowc(wchar_t *wide, const char *text, size_t length) {
  if (!text)
    return 0;
  if (length == 0)
    return -1;
  if (wide)
    *wide = (unsigned char)*text;
  return *text != 0;
}

int mblen(const char *text, size_t length) {
  return mbtowc(NULL, text, length);
}

int wctomb(char *text, wchar_t wide) {
  if (!text)
    return 0;
  if (wide < 0 || wide > 255)
    return -1;
  *text = (char)wide;
  return 1;
}

size_t mbstowcs(wchar_t *wide, const char *text, size_t length) {
  size_t i = 0;
  for (; !wide || i < length; i++) {
    if (wide)
      wide[i] = (unsigned char)text[i];
    if (!text[i])
      break;
  }
  return i;
}

size_t wcstombs(char *text, const wchar_t *wide, size_t length) {
  size_t i = 0;
  for (; !text || i < length; i++) {
    if (wide[i] < 0 || wide[i] > 255)
      return (size_t)-1;
    if (text)
      text[i] = (char)wide[i];
    if (!wide[i])
      break;
  }
  return i;
}
