// Rounding to integers without touching flags.
#pragma once

#include "math/bits.h"
#include "math/direction.h"

namespace vexrt {

// The bits of a number that stand behind its binary point, or all but the sign below 1.
template <typename Float>
constexpr Bits<Float> bits_behind_point(int exponent) {
    if (exponent < FloatTraits<Float>::bias) return ~sign_mask<Float>;
    return fraction_mask<Float> >> (exponent - FloatTraits<Float>::bias);
}

template <typename Float>
constexpr bool is_integer_or_special(int exponent) {
    return exponent >= FloatTraits<Float>::bias + FloatTraits<Float>::fraction_bits;
}

template <typename Float>
constexpr Float truncated(Float x) {
    int exponent = exponent_field(x);
    if (is_integer_or_special<Float>(exponent)) return x;
    return from_bits<Float>(bits_of(x) & ~bits_behind_point<Float>(exponent));
}

// Half away from zero.
template <typename Float>
constexpr Float rounded_half_away(Float x) {
    int exponent = exponent_field(x);
    if (is_integer_or_special<Float>(exponent)) return x;
    constexpr int bias = FloatTraits<Float>::bias;
    if (exponent < bias - 1) return with_sign_of(Float(0), x);
    Bits<Float> behind = bits_behind_point<Float>(exponent);
    if (exponent == bias - 1) return with_sign_of(Float(1), x);
    // The carry of a half moves into the integer's bits, and into the exponent where it must.
    return from_bits<Float>((bits_of(x) + ((behind + 1) >> 1)) & ~behind);
}

template <typename Float>
constexpr Float rounded_half_even(Float x) {
    Float whole = truncated(x);
    Float rest = absolute_value(x) - absolute_value(whole); // exact
    if (rest == 0 || rest < Float(0.5)) return whole;
    bool odd = absolute_value(whole) != 2 * truncated(absolute_value(whole) / 2);
    return rest > Float(0.5) || odd ? rounded_half_away(x) : whole;
}

template <typename Float>
Float rounded_in_direction(Float x) {
    if (is_integer_or_special<Float>(exponent_field(x))) return x;
    int direction = rounding_direction();
    if (direction == FE_TONEAREST) return rounded_half_even(x);
    Float whole = truncated(x);
    if (whole == x || direction == FE_TOWARDZERO) return whole;
    bool away = sign_of(x) == (direction == FE_DOWNWARD);
    return away ? whole + with_sign_of(Float(1), x) : whole;
}

} // namespace vexrt
