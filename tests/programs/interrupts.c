// Interrupt functions: their places in the vector table, what they keep, changing the saved
// status. An interrupt is made by hand: its frame, and a jump to the handler.
#include <msp430.h>
#include <stdint.h>
#include <stdio.h>

// The newer families' name.
#ifndef TIMERA0_VECTOR
#define TIMERA0_VECTOR TIMER0_A0_VECTOR
#endif

static volatile int16_t count;

#pragma vector=PORT1_VECTOR
__interrupt void port1(void) {
  count += 7;
}

#pragma vector=TIMERA0_VECTOR
__interrupt void timer(void) {
  volatile int32_t product = (int32_t)count * 1000;
  count = (int16_t)(product / 500);
  __bis_SR_register_on_exit(SCG0);
}

static uint16_t vector(uint16_t offset) {
  // The reset vector is the table's last, at 0xfffe.
  return *(const volatile uint16_t *)(0xfffe - RESET_VECTOR + offset);
}

static void interrupt(uint16_t handler) {
  __asm__ volatile("push #.Lback%=\n\tpush r2\n\tbr %0\n.Lback%=:" : : "r"(handler) : "memory");
}

int main(void) {
  printf("%d %d\n", vector(PORT1_VECTOR) == (uint16_t)port1,
         vector(TIMERA0_VECTOR) == (uint16_t)timer);
  interrupt(vector(PORT1_VECTOR));
  interrupt(vector(PORT1_VECTOR));
  printf("%d\n", count);
  interrupt(vector(TIMERA0_VECTOR));
  printf("%d %d\n", count, (__get_SR_register() & SCG0) != 0);
  __bic_SR_register(SCG0);
  printf("%d\n", (__get_SR_register() & SCG0) != 0);
  __enable_interrupt();
  const __istate_t state = __get_interrupt_state();
  __disable_interrupt();
  printf("%d", (__get_SR_register() & GIE) != 0);
  __set_interrupt_state(state);
  printf("%d\n", (__get_SR_register() & GIE) != 0);
  __disable_interrupt();
  return 0;
}
