// Scaling by powers of two through the exponent field.
#pragma once

#include "math/bits.h"
#include "math/direction.h"

namespace vexrt {

// What became of a number that was scaled. `__exp` returns it: that the first two are 0 and 1 is
// part of its interface, the others are this library's own.
enum ScaleStatus : int {
    scaled_to_zero = 0,
    scaled_to_infinity = 1,
    scaled_exactly = 2,   // in the normal range; also zeros, infinities and NaNs as they were
    scaled_subnormal = 3, // below the normal range: bits may have been shifted out
};

// The significand, with its leading bit, of a nonzero finite number, and the exponent field that
// goes with it: negative or 0 for subnormal numbers.
template <typename Float>
struct Parts {
    Bits<Float> significand;
    int exponent;
};

template <typename Float>
constexpr Parts<Float> parts_of(Float value) {
    int exponent = exponent_field(value);
    Bits<Float> fraction = bits_of(value) & fraction_mask<Float>;
    if (exponent) return {fraction | implicit_bit<Float>, exponent};
    int leading = static_cast<int>(sizeof(Float)) * 8 - 1 -
                  (sizeof(Float) == 8 ? __builtin_clzll(fraction)
                                      : __builtin_clz(static_cast<unsigned>(fraction)));
    int shift = FloatTraits<Float>::fraction_bits - leading;
    return {fraction << shift, 1 - shift};
}

// value 2^power in place. Overflow gives an infinity; below the normal range the bits that are
// shifted out are cut off. No flag is raised.
template <typename Float>
constexpr ScaleStatus scale_truncating(Float &value, int power) {
    if (value == 0 || !is_finite(value)) return scaled_exactly;
    auto [significand, exponent] = parts_of(value);
    long long scaled = static_cast<long long>(exponent) + power;
    if (scaled >= FloatTraits<Float>::greatest_exponent) {
        value = with_sign_of(Float(infinity), value);
        return scaled_to_infinity;
    }
    if (scaled > 0) {
        Bits<Float> field = static_cast<Bits<Float>>(scaled) << FloatTraits<Float>::fraction_bits;
        value = with_sign_of(from_bits<Float>(field | (significand & fraction_mask<Float>)), value);
        return scaled_exactly;
    }
    bool vanishes = scaled < -FloatTraits<Float>::fraction_bits;
    Bits<Float> shifted = vanishes ? 0 : significand >> (1 - scaled);
    value = with_sign_of(from_bits<Float>(shifted), value);
    return shifted ? scaled_subnormal : scaled_to_zero;
}

} // namespace vexrt
