// Numbers of many digits: factorials, powers, a greatest common divisor.
#include <inttypes.h>
#include <stdio.h>
#include <string.h>

enum { LIMBS = 45 };
typedef struct { int count; uint16_t limbs[LIMBS]; } Big;

static void multiply(Big *big, uint16_t by) {
  uint32_t carry = 0;
  for (int i = 0; i < big->count; i++) {
    carry += (uint32_t)big->limbs[i] * by;
    big->limbs[i] = (uint16_t)(carry % 10000);
    carry /= 10000;
  }
  while (carry != 0) {
    big->limbs[big->count++] = (uint16_t)(carry % 10000);
    carry /= 10000;
  }
}

static void show(const Big *big) {
  printf("%u", big->limbs[big->count - 1]);
  for (int i = big->count - 2; i >= 0; i--)
    printf("%04u", big->limbs[i]);
  printf("\n");
}

static uint64_t gcd(uint64_t a, uint64_t b) {
  while (b != 0) {
    const uint64_t rest = a % b;
    a = b;
    b = rest;
  }
  return a;
}

static uint64_t power_modulo(uint64_t base, uint32_t exponent, uint32_t modulus) {
  uint64_t result = 1;
  for (base %= modulus; exponent != 0; exponent >>= 1) {
    if (exponent & 1)
      result = result * base % modulus;
    base = base * base % modulus;
  }
  return result;
}

int main(void) {
  Big big = {1, {1}};
  for (uint16_t i = 2; i <= 100; i++)
    multiply(&big, i);
  show(&big);
  big = (Big){1, {1}};
  for (int i = 0; i < 500; i++)
    multiply(&big, 2);
  show(&big);
  printf("%" PRIu64 "\n", gcd(1234567890123456780u, 987654321098765430u));
  printf("%" PRIu64 " %" PRIu64 "\n", power_modulo(2, 1000000006, 1000000007),
         power_modulo(123456789, 987654321, 4294967291u));
  return 0;
}
