// Products and quotients of complex numbers, as compiled code calls them.

#define DEFINE_COMPLEX(multiply, divide, type)                                   \
  _Complex type multiply(type a, type b, type c, type d) {                       \
    return __builtin_complex(a * c - b * d, a * d + b * c);                      \
  }                                                                              \
  _Complex type divide(type a, type b, type c, type d) {                         \
    /* Scaled by the larger part of the divisor, against overflow (R. L. Smith,  \
       Algorithm 116, CACM 5(8), 1962). */                                       \
    if ((c < 0 ? -c : c) < (d < 0 ? -d : d)) {                                   \
      const type ratio = c / d;                                                  \
      const type scale = c * ratio + d;                                          \
      return __builtin_complex((a * ratio + b) / scale, (b * ratio - a) / scale); \
    }                                                                            \
    const type ratio = d / c;                                                    \
    const type scale = c + d * ratio;                                            \
    return __builtin_complex((a + b * ratio) / scale, (b - a * ratio) / scale);  \
  }

DEFINE_COMPLEX(__muldc3, __divdc3, double)
DEFINE_COMPLEX(__mulsc3, __divsc3, float)
