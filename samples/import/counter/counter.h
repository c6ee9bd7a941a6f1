/* A counter that starts anew at its limit. */

#ifndef COUNTER_H
#define COUNTER_H

struct counter {
    unsigned value;
    unsigned limit;
};

/* Counts once; answers whether the counter has started anew. */
int counter_step(struct counter *counter);

#endif
