/* What a set of measurements says. None of these take empty sets. */

#ifndef STATISTICS_H
#define STATISTICS_H

/* The arithmetic mean, rounded towards zero. */
int mean(const int *values, unsigned count);

/* The value in the middle, the lower one of two. Sorts the values. */
int median(int *values, unsigned count);

#endif
