// Intrinsics and device registers.
#include <msp430.h>
#include <stdint.h>
#include <stdio.h>

int main(void) {
  volatile uint16_t value = 0x1234;
  printf("%04x %04x\n", __swap_bytes(value), __bcd_add_short(0x0999, 0x0002));
  P1OUT = 0x5a;
  P1OUT ^= 0xff;
  printf("%02x %d\n", P1OUT, &P1OUT > &P1IN);
  __delay_cycles(3);
  __delay_cycles(500);
  __delay_cycles(200000);
  __no_operation();
  const unsigned stack = __get_SP_register();
  printf("%d\n", stack > 0x0200 && stack % 2 == 0);
  return 5;
}
