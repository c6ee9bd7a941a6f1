/* A clock, made of counters from an imported solution. */

#include "clock.h"

int main(void)
{
    clock_print();
    clock_advance(30);
    clock_print();
    return 0;
}
