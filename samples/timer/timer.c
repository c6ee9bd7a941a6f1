/* Counts in interrupts of Timer_A while the processor sleeps, and captures when the program asks. */

#include <msp430.h>
#include <stdio.h>

static volatile unsigned ticks, rounds, matches;

#pragma vector=TIMERA0_VECTOR
__interrupt void tick(void)
{
    ++ticks;
    if (ticks % 10 == 0)
        __bic_SR_register_on_exit(LPM0_bits);
}

#pragma vector=TIMERA1_VECTOR
__interrupt void other(void)
{
    switch (TAIV) {
    case 2: ++matches; break;
    case 10: ++rounds; break;
    }
}

int main(void)
{
    WDTCTL = WDTPW | WDTHOLD;
    TACCR0 = 999;
    TACCR1 = 500;
    TACCTL0 = CCIE;
    TACCTL1 = CCIE;
    TACTL = TASSEL_2 | MC_1 | TAIE; /* SMCLK, up to TACCR0 */
    for (int i = 0; i < 3; ++i) {
        __bis_SR_register(LPM0_bits | GIE);
        printf("%u ticks\n", ticks);
    }
    __disable_interrupt();
    printf("rounds %s, matches %s\n", rounds + 1 >= ticks ? "all" : "missed",
           matches + 1 >= ticks ? "all" : "missed");

    /* Up and down takes twice as long less one count, and the input of the capture unit can be
       switched by the program. */
    TACTL = TACLR;
    TACTL = TASSEL_2 | MC_2;
    TACCTL2 = CM_3 | CCIS_2 | CAP;
    TACCTL2 |= CCIS_1;
    const unsigned first = TACCR2;
    for (volatile int i = 0; i < 100; ++i) { }
    TACCTL2 &= ~CCIS_1 | CCIS_2;
    printf("the second capture is %s\n", TACCR2 > first ? "later" : "not later");
    return 0;
}
