// Making doubles from wider results: rounding by integers, in the current direction and without
// raising flags; and the last step of functions whose result stands as a sum of two doubles.
#pragma once

#include "math/direction.h"
#include "math/errors.h"
#include "math/pair.h"
#include "math/scale.h"

namespace vexrt {

struct Rounded {
    double value;
    bool inexact;
};

// Whether what stands behind the last bit (against half of a unit) rounds the magnitude up.
constexpr bool rounds_up(uint64_t behind, uint64_t half, bool odd, bool negative, int direction) {
    switch (direction) {
    case FE_TONEAREST: return behind > half || (behind == half && odd);
    case FE_UPWARD: return behind && !negative;
    case FE_DOWNWARD: return behind && negative;
    default: return false;
    }
}

// significand 2^(exponent - 63): the leading bit is set, and the last one when bits behind it are.
inline Rounded compose(bool negative, uint64_t significand, int exponent) {
    int field = exponent + FloatTraits<double>::bias;
    int shift = field > 0 ? 11 : 12 - field;
    uint64_t kept = 0, behind = significand, half = ~uint64_t{0};
    if (shift < 64) {
        kept = significand >> shift;
        half = uint64_t{1} << (shift - 1);
        behind = significand & (2 * half - 1);
    } else if (shift == 64) {
        half = uint64_t{1} << 63;
    }
    if (rounds_up(behind, half, kept & 1, negative, rounding_direction())) ++kept;
    uint64_t bits = kept; // the leading bit carries into the exponent
    if (field > 0) bits += static_cast<uint64_t>(field - 1) << 52;
    if (field >= 0x7FF || bits > infinity_bits<double>) bits = infinity_bits<double>;
    return {from_bits<double>(bits | (negative ? sign_mask<double> : 0)), behind != 0};
}

// The result of `compose`, with overflow and underflow reported.
inline double checked(Rounded result, const Call &call) {
    if (is_infinite(result.value)) return report(MathError::overflow, call, result.value);
    if (result.inexact && absolute_value(result.value) < least_normal<double>)
        return report(MathError::underflow, call, result.value);
    return result.value;
}

// value 2^power outside the normal range. A number whose unit in the last place is that of the
// subnormal numbers, scaled, is added and taken away, so that the sum is rounded once.
[[gnu::cold, gnu::noinline]] double finish_extreme(Pair value, int power, const Call &call);

// value 2^power, rounded once; overflow and underflow are reported. |power| < 5000.
inline double finish(Pair value, int power, const Call &call) {
    double sum = value.high + value.low;
    int field = exponent_field(sum) + power;
    if (__builtin_expect(static_cast<unsigned>(field) - 1 >= 0x7FE, false))
        return finish_extreme(value, power, call);
    return with_upper_word(sum, upper_word(sum) + (static_cast<uint32_t>(power) << 20));
}

} // namespace vexrt
