/* Blinks the LED at P1.0. The processor sleeps, and a timer wakes it for each change. */

#include <msp430.h>

#define LED BIT0
#define HALF_SECOND (32768 / 8 / 2) /* periods of the watch crystal, divided by 8 */

#pragma vector=TIMERA0_VECTOR
__interrupt void toggle_led(void)
{
    P1OUT ^= LED;
}

int main(void)
{
    WDTCTL = WDTPW | WDTHOLD; /* stop the watchdog */
    P1DIR |= LED;

    TACCR0 = HALF_SECOND - 1;
    TACCTL0 = CCIE;
    TACTL = TASSEL_1 | ID_3 | MC_1; /* the crystal divided by 8, up to TACCR0 */

    for (;;)
        __bis_SR_register(LPM3_bits | GIE);
}
