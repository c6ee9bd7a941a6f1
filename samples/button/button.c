/* A button at P1.3 that a peripheral file presses, and an LED at P1.0 that it switches. */

#include <msp430.h>
#include <stdio.h>

static volatile unsigned presses;

#pragma vector=PORT1_VECTOR
__interrupt void pressed(void)
{
    P1IFG &= ~BIT3;
    P1OUT ^= BIT0;
    ++presses;
    __bic_SR_register_on_exit(LPM4_bits);
}

int main(void)
{
    WDTCTL = WDTPW | WDTHOLD;
    P1DIR = BIT0;
    P1IES = BIT3; /* the button pulls the pin down */
    P1IFG = 0;
    P1IE = BIT3;
    while (presses < 3) {
        __bis_SR_register(LPM4_bits | GIE);
        printf("press %u, the LED is %s\n", presses, P1OUT & BIT0 ? "on" : "off");
    }
    return 0;
}
