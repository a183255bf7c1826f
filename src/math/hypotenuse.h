#pragma once

#include "math/pair.h"

namespace vexrt {

// sqrt(a^2 + b^2) for a >= b > 0 whose squares neither overflow nor vanish: a root and its
// correction by what its square leaves. The division does not wait for the root.
inline Pair root_of_squares(double a, double b) {
    Pair first = square_of(a), second = square_of(b);
    Pair sum = sum_of_ordered(first.high, second.high);
    double low = sum.low + (first.low + second.low), total = sum.high + low;
    double half_inverse = 0.5 / total, root = square_root(total);
    Pair square = square_of(root);
    double rest = ((sum.high - square.high) + low) - square.low;
    return {root, rest * (root * half_inverse)};
}

// sqrt(x^2 + y^2); `name` is the caller's, for errors.
double hypotenuse(double x, double y, const char *name);

} // namespace vexrt
