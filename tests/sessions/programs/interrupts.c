/* Interrupts of a timer, while the processor sleeps. */
#include <msp430.h>

static volatile int ticks;
static volatile unsigned sum;

static void count(int by)
{
    sum += by; /* mark: count */
}

#pragma vector=TIMERA0_VECTOR
__interrupt void tick(void)
{
    ++ticks; /* mark: tick */
    count(ticks);
    if (ticks == 3)
        __bic_SR_register_on_exit(LPM0_bits);
}

int main(void)
{
    WDTCTL = WDTPW | WDTHOLD;
    int spin = 0;
    __enable_interrupt();
    while (ticks < 3)
        ++spin; /* mark: spin */
    return sum; /* mark: end */
}
