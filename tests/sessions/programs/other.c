/* A static of the same name as one of tour.c. */
static int counter = 100;

int other(int by)
{
    counter -= by; /* mark: inside other */
    return counter;
}
