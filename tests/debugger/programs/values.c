/* What expressions are evaluated in: ProgramTest stops at the lines marked "stop". */

struct point {
    int x;
    int y;
};

struct packet {
    unsigned kind : 3;
    unsigned length : 7;
    unsigned char data[3];
    struct point *at;
    struct packet *next;
};

union word {
    unsigned whole;
    unsigned char bytes[2];
};

enum color { red, green = 7 };

static volatile int counter;
long total;
float third;
double quarter;
char letter;
signed char small;
unsigned long long wide;
enum color shade;
union word both;
struct packet first, second;
struct point points[3];
int matrix[2][3];
char *text;
volatile int sink;

__attribute__((noinline)) int sum(int a, long b, struct point *p)
{
    int local = a + p->x;
    long product = b - 1;
    float ratio = 1.5f;
    {
        int local = 99;
        sink = local; /* stop: inner */
    }
    sink = local; /* stop: outer */
    return local + (int)product;
}

void __reset(void)
{
    counter = -12;
    total = 70000;
    third = 0.25f;
    quarter = -2.5;
    letter = 'A';
    small = -3;
    wide = 0x123456789ABCDEF0ULL;
    shade = green;
    both.whole = 0x4142;
    first.kind = 5;
    first.length = 100;
    first.data[2] = 200;
    first.at = &points[1];
    first.next = &second;
    second.kind = 2;
    points[1].x = 10;
    points[1].y = -20;
    matrix[1][2] = 6;
    text = (char *)&both;
    sink = sum(3, 80000, &points[1]);
    for (;;)
        sink = 1; /* stop: end */
}
