/* Calls functions beyond 64 KB, which are written in assembly with MSP430X instructions. */

#include <stdint.h>
#include <stdio.h>

uint16_t far_checksum(const void *bytes, uint16_t count);
uint32_t far_address(void);

int main(void)
{
    static const char text[] = "MSP430X";
    printf("checksum %u, computed at 0x%lx\n", far_checksum(text, sizeof text - 1),
           (unsigned long)far_address());
    return 0;
}
