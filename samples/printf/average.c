/* Reads numbers until the input ends, and prints their sum and average.

   Standard input and output are those of the debugger, or of `gantry run`. */

#include <stdio.h>

int main(void)
{
    long sum = 0;
    int count = 0;

    printf("Numbers, please, one on each line:\n");
    for (int number; scanf("%d", &number) == 1; ++count)
        sum += number;

    if (count == 0)
        printf("There were none.\n");
    else
        printf("%d numbers, sum %ld, average %ld\n", count, sum, sum / count);
    return 0;
}
