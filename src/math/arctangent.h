// The arc tangent of a quotient: atan(y / x) = atan(c) + atan((y - c x) / (x + c y)), with c from a
// table of points so dense that the second angle is below 2^-6. One of the points is infinite.
#pragma once

#include "math/data/arctangent.h"
#include "math/pair.h"
#include "math/polynomial.h"

namespace vexrt {

constexpr unsigned arctangent_last = sizeof arctangent_table / sizeof *arctangent_table - 1;

// The table's entry for a nonnegative quotient: 16 an octave.
inline const ArcTangentEntry &arctangent_entry(double quotient) {
    constexpr uint32_t first = 0x3F90; // 2^-6
    uint32_t word = upper_word(quotient) >> 16;
    if (word < first) return arctangent_table[0];
    uint32_t index = word - first + 1;
    return arctangent_table[index < arctangent_last ? index : arctangent_last];
}

// Of t >= 0. The sum's first part is an entry's angle, which may be 0.
inline Pair arctangent_of(double t) {
    const ArcTangentEntry &entry = arctangent_entry(t);
    double quotient = (t * entry.cosine - entry.sine) / (entry.cosine + t * entry.sine);
    double square = quotient * quotient;
    double tail = quotient * square * polynomial(atan_tail, square);
    return {entry.angle, quotient + (tail + entry.angle_rest)};
}

// Of y / x, both positive, `quotient` being that divided. The points have few bits: the products
// with the halves of x and y are exact, and so is the difference but for its last step.
inline Pair arctangent_of_quotient(double y, double x, double quotient) {
    const ArcTangentEntry &entry = arctangent_entry(quotient);
    double x_high = leading_bits(x), y_high = leading_bits(y);
    double numerator = (y_high * entry.cosine - x_high * entry.sine) +
                       ((y - y_high) * entry.cosine - (x - x_high) * entry.sine);
    double denominator = x * entry.cosine + y * entry.sine;
    double q = numerator / denominator;
    double rest = 0;
    if (entry.angle == 0 || entry.cosine == 0) {
        Pair product = exact_product(q, denominator);
        rest = ((numerator - product.high) - product.low) / denominator;
    }
    double square = q * q;
    double tail = q * square * polynomial(atan_tail, square);
    Pair sum = sum_of_ordered(entry.angle, q);
    return {sum.high, sum.low + (tail + rest + entry.angle_rest)};
}

// The angle of the point (x, y); `name` is the caller's, for errors.
double arctangent(double y, double x, const char *name);

} // namespace vexrt
