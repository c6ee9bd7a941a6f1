/* Operations on bits that C has no words for. */

#ifndef BITS_H
#define BITS_H

/* The bits in the opposite order. */
unsigned reverse_bits(unsigned word);

/* Calls `visit` with the number of each bit that is set, from the lowest. */
void for_each_bit(unsigned word);

/* What for_each_bit calls; the program defines it. */
void visit(unsigned bit);

#endif
