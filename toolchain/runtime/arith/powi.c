// Powers with an integer exponent, as __builtin_powi and its float form call them.

#define DEFINE_POWI(name, type)                  \
  type name(type base, int exponent) {           \
    unsigned bits = exponent < 0 ? -(unsigned)exponent : (unsigned)exponent; \
    type result = 1;                             \
    for (; bits != 0; bits >>= 1) {              \
      if (bits & 1)                              \
        result *= base;                          \
      base *= base;                              \
    }                                            \
    return exponent < 0 ? 1 / result : result;   \
  }

DEFINE_POWI(__powidf2, double)
DEFINE_POWI(__powisf2, float)
