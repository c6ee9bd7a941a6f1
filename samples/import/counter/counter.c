#include "counter.h"

int counter_step(struct counter *counter)
{
    if (++counter->value < counter->limit)
        return 0;
    counter->value = 0;
    return 1;
}
