/* What a session walks through; SessionTest finds the lines by their marks. */
#include <stdio.h>

struct point {
    int x;
    int y;
};

struct node {
    int value;
    struct node *next;
};

static int counter = 5;
int total;
struct point corner = {3, -4};
struct node last = {30, 0};
struct node middle = {20, &last};
struct node first = {10, &middle};
int squares[5];

int other(int by);

int factorial(int n)
{
    if (n < 2)
        return 1; /* mark: bottom */
    return n * factorial(n - 1); /* mark: recursion */
}

int twice(int x)
{
    int result = x + x; /* mark: twice */
    return result;
}

int apply(int (*function)(int), int argument)
{
    return function(argument); /* mark: apply */
}

int sum(struct node *node)
{
    int result = 0;
    while (node) {
        result += node->value; /* mark: sum */
        node = node->next;
    }
    return result;
}

int main(void)
{
    int i;
    for (i = 0; i < 5; ++i)
        squares[i] = i * i; /* mark: loop */
    total = factorial(4); /* mark: factorial */
    counter += twice(total); /* mark: counter */
    total = apply(twice, 21); /* mark: pointer */
    corner.x = sum(&first);
    total += other(counter); /* mark: other */
    printf("total %d, counter %d\n", total, counter);
    return total & 0x7F; /* mark: end */
}
