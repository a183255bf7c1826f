// The representation of floating-point numbers.
#pragma once

#include <stdint.h>

namespace vexrt {

template <typename Float>
struct FloatTraits;

template <>
struct FloatTraits<double> {
    using Bits = uint64_t;
    using SignedBits = int64_t;
    static constexpr int fraction_bits = 52;
    static constexpr int bias = 1023;
    static constexpr int greatest_exponent = 0x7FF;
};

template <>
struct FloatTraits<float> {
    using Bits = uint32_t;
    using SignedBits = int32_t;
    static constexpr int fraction_bits = 23;
    static constexpr int bias = 127;
    static constexpr int greatest_exponent = 0xFF;
};

// long double is double; what is a template over the type need not know it.
template <>
struct FloatTraits<long double> : FloatTraits<double> {};

template <typename Float>
using Bits = typename FloatTraits<Float>::Bits;

template <typename Float>
constexpr Bits<Float> bits_of(Float value) {
    return __builtin_bit_cast(Bits<Float>, value);
}

template <typename Float>
constexpr Float from_bits(Bits<Float> bits) {
    return __builtin_bit_cast(Float, bits);
}

template <typename Float>
constexpr Bits<Float> sign_mask = Bits<Float>(1) << (sizeof(Float) * 8 - 1);
template <typename Float>
constexpr Bits<Float> implicit_bit = Bits<Float>(1) << FloatTraits<Float>::fraction_bits;
template <typename Float>
constexpr Bits<Float> fraction_mask = implicit_bit<Float> - 1;
template <typename Float>
constexpr Bits<Float> infinity_bits = ~sign_mask<Float> & ~fraction_mask<Float>;

constexpr double infinity = __builtin_inf();
constexpr float float_infinity = __builtin_inff();
constexpr double not_a_number = __builtin_nan("");

template <typename Float>
constexpr Float greatest_finite = from_bits<Float>(infinity_bits<Float> - 1);
template <typename Float>
constexpr Float least_normal = from_bits<Float>(implicit_bit<Float>);

template <typename Float>
constexpr bool sign_of(Float value) {
    return bits_of(value) & sign_mask<Float>;
}

template <typename Float>
constexpr Bits<Float> magnitude_bits(Float value) {
    return bits_of(value) & ~sign_mask<Float>;
}

template <typename Float>
constexpr bool is_nan(Float value) {
    return magnitude_bits(value) > infinity_bits<Float>;
}

template <typename Float>
constexpr bool is_infinite(Float value) {
    return magnitude_bits(value) == infinity_bits<Float>;
}

template <typename Float>
constexpr bool is_subnormal(Float value) {
    return magnitude_bits(value) - 1 < fraction_mask<Float>;
}

// These two stay in the vector registers.
template <typename Float>
constexpr Float absolute_value(Float value) {
    if constexpr (sizeof(Float) == sizeof(float)) return __builtin_fabsf(value);
    return static_cast<Float>(__builtin_fabs(value));
}

template <typename Float>
constexpr Float with_sign_of(Float magnitude, Float sign) {
    if constexpr (sizeof(Float) == sizeof(float)) return __builtin_copysignf(magnitude, sign);
    return static_cast<Float>(__builtin_copysign(magnitude, sign));
}

// The exponent field: 0 for subnormal numbers and zero.
template <typename Float>
constexpr int exponent_field(Float value) {
    return static_cast<int>(magnitude_bits(value) >> FloatTraits<Float>::fraction_bits);
}

// The upper word of a double holds sign, exponent and 20 bits of the fraction: what range checks
// and table look-ups need, on a processor of 32 bits.
constexpr uint32_t upper_word(double value) { return static_cast<uint32_t>(bits_of(value) >> 32); }

constexpr double with_upper_word(double value, uint32_t upper) {
    return from_bits<double>(uint64_t{upper} << 32 | static_cast<uint32_t>(bits_of(value)));
}

// The leading 21 bits of a double; the product of two such, or of one and any 32 bits, is exact.
constexpr double leading_bits(double value) {
    return from_bits<double>(bits_of(value) & 0xFFFFFFFF00000000u);
}

constexpr uint32_t upper_word_of_infinity = 0x7FF00000;

constexpr bool is_finite(double value) {
    return (upper_word(value) & 0x7FFFFFFF) < upper_word_of_infinity;
}
constexpr bool is_finite(float value) { return magnitude_bits(value) < infinity_bits<float>; }
constexpr bool is_finite(long double value) { return is_finite(static_cast<double>(value)); }

template <typename Float>
constexpr bool is_positive_and_normal(Float value) {
    return bits_of(value) - implicit_bit<Float> < infinity_bits<Float> - implicit_bit<Float>;
}

// Positive, not zero, finite.
constexpr bool is_positive_and_finite(float value) {
    return bits_of(value) - 1 < infinity_bits<float> - 1;
}
constexpr bool is_positive_and_finite(double value) {
    return upper_word(value) < upper_word_of_infinity && value != 0;
}

// Truncation by the processor. A cast might be carried out ahead of a check of the range, and raise
// an exception there.
using TwoDoubles = double __attribute__((vector_size(16)));
inline int truncated_integer(double x) { return __builtin_ia32_cvttsd2si(TwoDoubles{x, 0}); }

// 2^exponent, within the normal range.
constexpr double power_of_two(int exponent) {
    return from_bits<double>(static_cast<uint64_t>(exponent + 1023) << 52);
}

} // namespace vexrt
