/* $(ProjectName), made on $(Date). */

#include <msp430.h>

int main(void)
{
    WDTCTL = WDTPW | WDTHOLD; /* stop the watchdog */

    for (;;) {
    }
}
