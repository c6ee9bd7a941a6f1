/* A clock of minutes and hours. */

#ifndef CLOCK_H
#define CLOCK_H

/* Lets minutes go by. */
void clock_advance(unsigned minutes);

/* Prints the time as hh:mm. */
void clock_print(void);

#endif
