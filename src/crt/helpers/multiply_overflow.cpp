// What clang calls for a 64-bit signed multiplication that checks for overflow.

#include "math/divide64.h"

using namespace vexrt;

extern "C" int64_t __mulodi4(int64_t a, int64_t b, int *overflow) {
    bool negative = (a < 0) != (b < 0);
    uint64_t x = magnitude(a), y = magnitude(b);
    uint64_t limit = static_cast<uint64_t>(INT64_MAX) + negative;
    *overflow = x != 0 && y > divide(limit, x).quotient;
    return with_sign(x * y, negative);
}
