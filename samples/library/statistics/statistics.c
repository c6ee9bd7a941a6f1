#include "statistics.h"

int mean(const int *values, unsigned count)
{
    long sum = 0;
    for (unsigned i = 0; i < count; ++i)
        sum += values[i];
    return (int)(sum / (long)count);
}

static void sort(int *values, unsigned count)
{
    for (unsigned i = 1; i < count; ++i) {
        const int value = values[i];
        unsigned at = i;
        for (; at > 0 && values[at - 1] > value; --at)
            values[at] = values[at - 1];
        values[at] = value;
    }
}

int median(int *values, unsigned count)
{
    sort(values, count);
    return values[(count - 1) / 2];
}
