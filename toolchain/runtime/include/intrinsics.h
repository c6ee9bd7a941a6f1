#ifndef INTRINSICS_H
#define INTRINSICS_H

/* What a program asks of the processor itself. */

#ifndef __ASSEMBLER__

#ifdef __cplusplus
extern "C" {
#endif

#define __intrinsic static __inline__ __attribute__((__always_inline__, __unused__))

typedef unsigned int __istate_t;

__intrinsic void __no_operation(void) {
  __asm__ volatile("nop");
}

/* ---- Status register */

__intrinsic unsigned int __get_SR_register(void) {
  unsigned int status;
  __asm__ volatile("mov r2, %0" : "=r"(status));
  return status;
}

/* A nop behind each change: the processor may go to sleep, or take an interrupt, only there. */
__intrinsic void __bis_SR_register(unsigned int bits) {
  __asm__ volatile("nop\n\tbis %0, r2\n\tnop" : : "ri"(bits) : "memory");
}

__intrinsic void __bic_SR_register(unsigned int bits) {
  __asm__ volatile("bic %0, r2\n\tnop" : : "ri"(bits) : "memory");
}

__intrinsic void __enable_interrupt(void) {
  __asm__ volatile("nop\n\teint\n\tnop" : : : "memory");
}

__intrinsic void __disable_interrupt(void) {
  __asm__ volatile("dint\n\tnop" : : : "memory");
}

__intrinsic __istate_t __get_interrupt_state(void) {
  return __get_SR_register();
}

/* Only the interrupt enable bit of the state counts. */
__intrinsic void __set_interrupt_state(__istate_t state) {
  if (state & 8)
    __enable_interrupt();
  else
    __disable_interrupt();
}

/* Change the status that returns when an interrupt function ends. To be called in the interrupt
   function itself: the saved status lies two bytes above its frame. */
#define __saved_SR (*(volatile unsigned int *)((char *)__builtin_frame_address(0) + 2))
#define __bis_SR_register_on_exit(bits) ((void)(__saved_SR |= (bits)))
#define __bic_SR_register_on_exit(bits) ((void)(__saved_SR &= ~(unsigned int)(bits)))
#define __get_SR_register_on_exit() (__saved_SR)

/* ---- Other registers */

__intrinsic unsigned int __get_SP_register(void) {
  unsigned int stack;
  __asm__ volatile("mov r1, %0" : "=r"(stack));
  return stack;
}

__intrinsic void __set_SP_register(unsigned int stack) {
  __asm__ volatile("mov %0, r1" : : "r"(stack) : "memory");
}

/* ---- Arithmetic */

__intrinsic unsigned int __swap_bytes(unsigned int value) {
  __asm__("swpb %0" : "+r"(value));
  return value;
}

/* Binary-coded decimal sums. */
__intrinsic unsigned int __bcd_add_short(unsigned int a, unsigned int b) {
  __asm__("clrc\n\tdadd %1, %0" : "+r"(a) : "r"(b));
  return a;
}

#define __even_in_range(value, limit) (value)

/* ---- Sleep */

#define __low_power_mode_0() __bis_SR_register(0x0010 + 0x0008)
#define __low_power_mode_1() __bis_SR_register(0x0050 + 0x0008)
#define __low_power_mode_2() __bis_SR_register(0x0090 + 0x0008)
#define __low_power_mode_3() __bis_SR_register(0x00D0 + 0x0008)
#define __low_power_mode_4() __bis_SR_register(0x00F0 + 0x0008)
#define __low_power_mode_off_on_exit() __bic_SR_register_on_exit(0x00F0)

/* ---- Delay */

/* Up to 31 cycles; the word is a jump to the next instruction, which takes two. */
#define __delay_few(cycles)                                                             \
  do {                                                                                  \
    if ((cycles) & 1)                                                                   \
      __asm__ volatile("nop");                                                          \
    if ((cycles) & 2)                                                                   \
      __asm__ volatile(".word 0x3c00");                                                 \
    if ((cycles) & 4)                                                                   \
      __asm__ volatile(".word 0x3c00, 0x3c00");                                         \
    if ((cycles) & 8)                                                                   \
      __asm__ volatile(".word 0x3c00, 0x3c00, 0x3c00, 0x3c00");                         \
    if ((cycles) & 16)                                                                  \
      __asm__ volatile(".word 0x3c00, 0x3c00, 0x3c00, 0x3c00\n\t"                       \
                       ".word 0x3c00, 0x3c00, 0x3c00, 0x3c00");                         \
  } while (0)

/* Two cycles to begin with, three for each round: from 32 to 196607 cycles. */
#define __delay_rounds(cycles)                                                          \
  __asm__ volatile("mov %1, %0\n1:\tdec %0\n\tjnz 1b"                                   \
                   : "=&r"(__delay_counter)                                             \
                   : "i"((unsigned int)(((unsigned long)(cycles) - 2) / 3)))

/* Two words' count, four cycles for each round, on top of four. */
#define __delay_long_rounds(rounds)                                                     \
  __asm__ volatile("mov %2, %0\n\tmov %3, %1\n1:\tsub #1, %0\n\tsbc %1\n\tjc 1b"        \
                   : "=&r"(__delay_counter), "=&r"(__delay_high)                        \
                   : "i"((unsigned int)((rounds) & 0xffff)),                            \
                     "i"((unsigned int)((unsigned long)(rounds) >> 16)))

/* Waits that many cycles, a constant of at most 4 * 2^32 - 4; beyond 196607 a few more where
   a word of the count is one of the processor's short constants. */
#define __delay_cycles(cycles)                                                          \
  do {                                                                                  \
    unsigned int __delay_counter, __delay_high;                                         \
    (void)__delay_counter;                                                              \
    (void)__delay_high;                                                                 \
    if ((cycles) < 32UL) {                                                              \
      __delay_few((unsigned int)(cycles));                                              \
    } else if ((cycles) < 196608UL) {                                                   \
      __delay_rounds(cycles);                                                           \
      __delay_few((unsigned int)(((unsigned long)(cycles) - 2) % 3));                   \
    } else {                                                                            \
      __delay_long_rounds((unsigned long)(cycles) / 4 - 2);                             \
      __delay_few((unsigned int)((unsigned long)(cycles) % 4));                         \
    }                                                                                   \
  } while (0)

#ifdef __cplusplus
}
#endif

/* ---- Older names of the same */

#define __nop() __no_operation()
#define __eint() __enable_interrupt()
#define __dint() __disable_interrupt()
#define _NOP() __no_operation()
#define _EINT() __enable_interrupt()
#define _DINT() __disable_interrupt()
#define _BIS_SR(bits) __bis_SR_register(bits)
#define _BIC_SR(bits) __bic_SR_register(bits)
#define _BIS_SR_IRQ(bits) __bis_SR_register_on_exit(bits)
#define _BIC_SR_IRQ(bits) __bic_SR_register_on_exit(bits)

#endif

#endif
