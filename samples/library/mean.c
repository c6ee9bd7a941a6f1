/* The mean of some measurements, by the library of this solution. */

#include "statistics.h"

#include <stdio.h>

int main(void)
{
    static const int measurements[] = {17, 19, 18, 42, 16};
    printf("The mean is %d\n", mean(measurements, sizeof measurements / sizeof *measurements));
    return 0;
}
