// CRCs by bit and by table, Adler and Fletcher sums, a hash, over constant and computed data.
#include <inttypes.h>
#include <stdio.h>
#include <string.h>

static uint16_t crc16(const uint8_t *data, size_t size) {
  uint16_t crc = 0xffff;
  while (size-- > 0) {
    crc ^= (uint16_t)(*data++ << 8);
    for (int i = 0; i < 8; i++)
      crc = (uint16_t)(crc & 0x8000 ? crc << 1 ^ 0x1021 : crc << 1);
  }
  return crc;
}

static uint32_t table[256];

static void make_table(void) {
  for (uint32_t i = 0; i < 256; i++) {
    uint32_t crc = i;
    for (int bit = 0; bit < 8; bit++)
      crc = crc & 1 ? crc >> 1 ^ 0xedb88320 : crc >> 1;
    table[i] = crc;
  }
}

static uint32_t crc32(const uint8_t *data, size_t size) {
  uint32_t crc = 0xffffffff;
  while (size-- > 0)
    crc = crc >> 8 ^ table[(crc ^ *data++) & 0xff];
  return ~crc;
}

static uint32_t adler(const uint8_t *data, size_t size) {
  uint32_t a = 1, b = 0;
  for (size_t i = 0; i < size; i++) {
    a = (a + data[i]) % 65521;
    b = (b + a) % 65521;
  }
  return b << 16 | a;
}

static uint64_t fnv(const uint8_t *data, size_t size) {
  uint64_t hash = 0xcbf29ce484222325;
  while (size-- > 0)
    hash = (hash ^ *data++) * 0x100000001b3;
  return hash;
}

static void show(const void *data, size_t size) {
  printf("%04x %08" PRIx32 " %08" PRIx32 " %016" PRIx64 "\n", crc16(data, size),
         crc32(data, size), adler(data, size), fnv(data, size));
}

int main(void) {
  make_table();
  show("123456789", 9);
  show("", 0);
  show("The quick brown fox jumps over the lazy dog", 43);
  uint8_t data[300];
  for (unsigned i = 0; i < sizeof data; i++)
    data[i] = (uint8_t)(i * i + 7 * i);
  show(data, sizeof data);
  return 0;
}
