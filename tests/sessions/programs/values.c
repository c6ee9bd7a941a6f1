/* Values of every kind; ValuesTest says what must be seen at the marks. */
#include <stdint.h>

struct flags {
    unsigned ready : 1;
    unsigned mode : 3;
    int level : 5;
    unsigned long wide : 20;
};

union word {
    unsigned value;
    unsigned char bytes[2];
    struct {
        unsigned low : 4;
        unsigned high : 12;
    } parts;
};

enum colour { red, green = 5, blue };

struct inner {
    char name[6];
    float ratio;
};

struct outer {
    uint8_t kind;
    struct inner inner[2];
    union word word;
    struct outer *self;
    int (*handler)(int);
};

typedef struct outer outer_t;

static int negate(int x)
{
    return -x; /* mark: negate */
}

struct flags flags = {1, 5, -3, 0x54321};
union word word = {0x1234};
enum colour colour = blue;
float single = 1.5f;
double large = -1e10;
int64_t big = 0x123456789abcdefLL;
uint32_t address = 0xdeadbeef;
int grid[2][3] = {{1, 2, 3}, {4, 5, 6}};
const char *text = "hello";
outer_t thing = {7, {{"one", 0.5f}, {"two", -2.0f}}, {0xabcd}, &thing, negate};
volatile int *pointer = &grid[1][1];
unsigned char *none;
int8_t tiny = -128;
_Bool truth = 1;

/* What nobody names isn't linked. */
const volatile void *const kept[] = {&colour, &large, &big, &address, &text, &none, &tiny, &truth};

static int statics(void)
{
    static int calls = 10;
    return ++calls; /* mark: statics */
}

int main(void)
{
    const volatile void *used = kept[3];
    int local = thing.handler(42);
    float mean = (single + local) / 2;
    struct inner copy = thing.inner[1];
    outer_t *walk = &thing;
    {
        int local = 1000;
        grid[0][0] += local; /* mark: inner scope */
    }
    flags.level = 7;
    word.bytes[1] = 0xff;
    statics(); /* mark: changed */
    copy.name[0] = 'T';
    *pointer = 55;
    mean *= 2;
    return local + (int)mean + copy.name[0] + (walk == thing.self) + (used == 0); /* mark: end */
}
