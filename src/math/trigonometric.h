// Kernels of sine, cosine and tangent.
//
// The argument is reduced by the nearest multiple of pi/64, whose sine and cosine stand in a table,
// once around the circle: no quadrant needs a branch. The rest, |r| < 0.025, comes as a sum of two.
// Where arguments are large, or come so close to a multiple that more bits of pi count, it is
// computed by integers of as many bits as it takes.
#pragma once

#include "math/data/sine.h"
#include "math/exponential.h"
#include "math/pair.h"
#include "math/polynomial.h"

namespace vexrt {

struct Reduced {
    unsigned step; // of 128 around the circle; the upper bits count turns
    double high, low;
};

// Of any finite argument of at least 2^19 in magnitude.
[[gnu::noinline]] Reduced reduce_large(double x);
[[gnu::noinline]] Reduced reduce_large(float x);

constexpr double small_argument = 0x1p19;
constexpr float small_float_argument = 0x1p15f;

// In every rounding direction the nearest: next to a zero of the function the neighbouring step's
// polynomials would not do.
inline NearInteger nearest_step(double x) {
    int integer = truncated_integer(x * sine_steps_per_unit + with_sign_of(0.5, x));
    return {static_cast<double>(integer), integer};
}

inline Reduced reduce(double x) {
    if (__builtin_expect(!(absolute_value(x) < small_argument), false)) return reduce_large(x);
    auto [multiple, step] = nearest_step(x);
    double first = x - multiple * sine_step[0]; // exact
    Pair rest = exact_sum(first, -(multiple * sine_step[1]));
    rest = sum_of_ordered(rest.high, rest.low - multiple * sine_step[2]);
    if (__builtin_expect(absolute_value(rest.high) < 0x1p-20 && step != 0, false))
        return reduce_large(x);
    return {static_cast<unsigned>(step), rest.high, rest.low};
}

constexpr unsigned quarter_turn = 32; // steps

// What sine and cosine share.
struct SmallAngle {
    double r, low;    // the angle
    double sine_tail; // sin r - r + low
    double versine;   // cos r - 1
};

inline SmallAngle small_angle(const Reduced &reduced) {
    double r = reduced.high, square = r * r;
    return {r, reduced.low, r * square * polynomial(sin_tail, square) + reduced.low,
            square * polynomial(cos_tail, square)};
}

// The sine of the angle and a step of the table, as a sum of two with about 70 bits.
inline Pair sine_of(const SmallAngle &angle, unsigned step) {
    const SineEntry &entry = sine_table[step & 127];
    double r_high = leading_bits(angle.r);
    Pair sum = sum_of_ordered(entry.sine, entry.cosine * r_high);
    double cosine = entry.cosine + entry.cosine_rest;
    double low = entry.cosine * (angle.r - r_high) + entry.cosine_rest * angle.r +
                 (cosine * angle.sine_tail + (entry.sine * angle.versine + entry.sine_rest));
    return {sum.high, sum.low + low};
}

// Below small_float_argument.
inline Reduced reduce_small(float x) {
    double wide = x;
    auto [multiple, step] = nearest_step(wide);
    double rest = wide - multiple * sine_step_float[0]; // exact
    return {static_cast<unsigned>(step), rest - multiple * sine_step_float[1], 0};
}

inline Reduced reduce(float x) {
    if (__builtin_expect(!(absolute_value(x) < small_float_argument), false))
        return reduce_large(x);
    return reduce_small(x);
}

// The sine of the angle and a step, to the precision of float.
inline double sine_for_float(double r, unsigned step) {
    const SineEntry &entry = sine_table[step & 127];
    double square = r * r, cosine = sine_table[(step + quarter_turn) & 127].sine;
    double odd = r * square * polynomial(sin_tail_float, square);
    double versine = square * polynomial(cos_tail_float, square);
    return (entry.sine + cosine * r) + (cosine * odd + entry.sine * versine);
}

} // namespace vexrt
