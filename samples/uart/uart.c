/* Sends what it receives back in capital letters, through interrupts of USART0. */

#include <msp430.h>

static const char greeting[] = "send a line\r\n";
static volatile unsigned sent;
static volatile char received;
static volatile int available;

#pragma vector=UART0TX_VECTOR
__interrupt void send_next(void)
{
    if (greeting[sent] != 0)
        TXBUF0 = (unsigned char)greeting[sent++];
    else
        __bic_SR_register_on_exit(LPM0_bits);
}

#pragma vector=UART0RX_VECTOR
__interrupt void receive(void)
{
    received = RXBUF0;
    available = 1;
    __bic_SR_register_on_exit(LPM0_bits);
}

/* Sleeps until there is a character. Interrupts are off between the question and the sleep. */
static char get(void)
{
    __disable_interrupt();
    while (!available) {
        __bis_SR_register(LPM0_bits | GIE);
        __disable_interrupt();
    }
    available = 0;
    __enable_interrupt();
    return received;
}

static void put(char c)
{
    while ((IFG1 & UTXIFG0) == 0) { }
    TXBUF0 = (unsigned char)c;
}

int main(void)
{
    WDTCTL = WDTPW | WDTHOLD;
    U0CTL = SWRST | CHAR;
    U0TCTL = SSEL1; /* SMCLK */
    U0BR0 = 109;    /* 9600 baud at 1.048 MHz */
    U0BR1 = 0;
    U0ME |= UTXE0 | URXE0;
    U0CTL &= ~SWRST;

    U0IE |= UTXIE0;
    __bis_SR_register(LPM0_bits | GIE);
    U0IE &= ~UTXIE0;

    IFG1 |= UTXIFG0;
    U0IE |= URXIE0;
    char c;
    do {
        c = get();
        put(c >= 'a' && c <= 'z' ? (char)(c - 32) : c);
    } while (c != '\n');
    while ((U0TCTL & TXEPT) == 0) { }
    return 0;
}
