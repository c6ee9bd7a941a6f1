/* The median of the same measurements, which the odd one out doesn't move. */

#include "statistics.h"

#include <stdio.h>

int main(void)
{
    static int measurements[] = {17, 19, 18, 42, 16};
    printf("The median is %d\n", median(measurements, sizeof measurements / sizeof *measurements));
    return 0;
}
