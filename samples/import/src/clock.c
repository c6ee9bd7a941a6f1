#include "clock.h"

#include "counter.h"

#include <stdio.h>

static struct counter hour = {23, 24};
static struct counter minute = {45, 60};

void clock_advance(unsigned minutes)
{
    for (; minutes > 0; --minutes)
        if (counter_step(&minute))
            counter_step(&hour);
}

void clock_print(void)
{
    printf("%02u:%02u\n", hour.value, minute.value);
}
