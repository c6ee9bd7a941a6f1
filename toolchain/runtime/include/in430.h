#include <intrinsics.h>
