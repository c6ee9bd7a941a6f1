#ifndef IOMACROS_H
#define IOMACROS_H

/* The forms in which the device headers name registers: lvalues in C, addresses in assembly. */

#ifdef __ASSEMBLER__

#define __sfr_byte(address) address
#define __sfr_word(address) address
#define __sfr_long(address) address
#define __sfr_byte_const(address) address
#define __sfr_word_const(address) address
#define __sfr_long_const(address) address

#else

#define __sfr_byte(address) (*(volatile unsigned char *)(address))
#define __sfr_word(address) (*(volatile unsigned int *)(address))
#define __sfr_long(address) (*(volatile unsigned long *)(address))
#define __sfr_byte_const(address) (*(const volatile unsigned char *)(address))
#define __sfr_word_const(address) (*(const volatile unsigned int *)(address))
#define __sfr_long_const(address) (*(const volatile unsigned long *)(address))

/* An interrupt function is written

     #pragma vector=PORT1_VECTOR
     __interrupt void port1(void) { ... }

   with the byte offset of its vector in the table; the compiler makes the pragma an attribute. */
#define __interrupt
#define __gantry_vector(offset) __attribute__((__interrupt__((offset) / 2)))

#endif

#endif
