/* Writes a file on the host, reads it back, and counts what is in it. */

#include <ctype.h>
#include <stdio.h>
#include <stdlib.h>

static const char name[] = "gantry-sample.txt";

static void fail(const char *what)
{
    perror(what);
    exit(1);
}

static void write_lines(void)
{
    FILE *out = fopen(name, "w");
    if (out == NULL)
        fail(name);
    for (int i = 1; i <= 10; ++i)
        fprintf(out, "line %d of the sample\n", i);
    fclose(out);
}

int main(void)
{
    write_lines();
    FILE *in = fopen(name, "r");
    if (in == NULL)
        fail(name);
    int lines = 0, words = 0, characters = 0, inside = 0;
    for (int c; (c = fgetc(in)) != EOF; ++characters) {
        lines += c == '\n';
        if (isspace(c))
            inside = 0;
        else if (!inside)
            words += inside = 1;
    }
    fclose(in);
    remove(name);
    printf("%d lines, %d words, %d characters\n", lines, words, characters);
    return 0;
}
