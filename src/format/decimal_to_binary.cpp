// Correct rounding of decimal numbers.
//
// The significand's top 64 bits times a 128-bit power of ten give the result's leading bits, too
// low by a known bound. Where lower and upper bound lie on the same side of the midpoint between
// two neighbouring results, the rounding is settled: with the upper half of the power alone in all
// but one case of some hundreds, with the whole in nearly all of the rest. What remains, ties among
// it, is decided by comparing exact integers.

#include "format/decimal_to_binary.h"

#include "format/powers_of_ten.h"
#include "math/bits.h"

namespace vexrt {

namespace {

constexpr PowersOfTen powers_of_ten_128;

struct Product {
    uint64_t high, low;
};

inline uint64_t multiply_words(uint32_t a, uint32_t b) { return static_cast<uint64_t>(a) * b; }

Product multiply(uint64_t a, uint64_t b) {
    auto a1 = static_cast<uint32_t>(a >> 32), a0 = static_cast<uint32_t>(a);
    auto b1 = static_cast<uint32_t>(b >> 32), b0 = static_cast<uint32_t>(b);
    uint64_t low = multiply_words(a0, b0);
    uint64_t middle = multiply_words(a1, b0) + (low >> 32);
    uint64_t cross = multiply_words(a0, b1) + static_cast<uint32_t>(middle);
    return {multiply_words(a1, b1) + (middle >> 32) + (cross >> 32),
            cross << 32 | static_cast<uint32_t>(low)};
}

// ---- exact integers ----

// The largest comes from the least subnormal numbers: 54 bits times 5^351.
class Integer {
public:
    explicit Integer(const Significand &value) : words{} {
        for (; size < 3; ++size) words[size] = value.words[size];
    }
    explicit Integer(uint64_t value)
        : words{static_cast<uint32_t>(value), static_cast<uint32_t>(value >> 32)}, size(2) {}

    void multiply(uint32_t factor) {
        uint64_t carry = 0;
        for (int i = 0; i < size; ++i) {
            carry += multiply_words(words[i], factor);
            words[i] = static_cast<uint32_t>(carry);
            carry >>= 32;
        }
        if (carry) words[size++] = static_cast<uint32_t>(carry);
    }

    void multiply_by_power_of_five(int power) {
        for (; power >= 13; power -= 13) multiply(1220703125); // 5^13
        while (power-- > 0) multiply(5);
    }

    void shift_left(int bits) {
        int skip = bits / 32;
        for (int i = size; i-- > 0;) words[i + skip] = words[i];
        for (int i = 0; i < skip; ++i) words[i] = 0;
        size += skip;
        multiply(1u << bits % 32);
    }

    // Below 0, 0, above 0. Words from `size` on are zero.
    int compare(const Integer &other) const {
        for (int i = capacity; i-- > 0;)
            if (words[i] != other.words[i]) return words[i] < other.words[i] ? -1 : 1;
        return 0;
    }

private:
    static constexpr int capacity = 32;
    uint32_t words[capacity];
    int size = 0;
};

// Compares significand * 10^power with (mantissa + 1/2) * 2^exponent.
int compare_with_midpoint(const Significand &significand, int power, uint64_t mantissa,
                          int exponent) {
    Integer number(significand), midpoint(2 * mantissa + 1);
    if (power >= 0)
        number.multiply_by_power_of_five(power);
    else
        midpoint.multiply_by_power_of_five(-power);
    int shift = power - (exponent - 1);
    if (shift >= 0)
        number.shift_left(shift);
    else
        midpoint.shift_left(-shift);
    return number.compare(midpoint);
}

// ---- bounds ----

// The leading bits of a number, to be cut after `dropped` bits of `high`.
struct Bounds {
    uint64_t high, low; // at most the number ...
    uint64_t slack;     // ... which is less than high + slack
    int exponent;       // of the last bit of `high`
};

// 1 or 0 when the number lies surely above or surely below the midpoint, else -1.
int settled_rounding(const Bounds &bounds, int dropped) {
    uint64_t half = 1ull << (dropped - 1);
    uint64_t rest = bounds.high & (half | (half - 1));
    if (rest > half || (rest == half && bounds.low)) return 1;
    return rest < half && half - rest >= bounds.slack ? 0 : -1;
}

} // namespace

Normalised normalise(const Significand &significand) {
    const uint32_t *words = significand.words;
    uint64_t upper = static_cast<uint64_t>(words[2]) << 32 | words[1];
    if (!upper) {
        int shift = __builtin_clz(words[0]);
        return {static_cast<uint64_t>(words[0] << shift) << 32, -32 - shift, false};
    }
    uint64_t lower = static_cast<uint64_t>(words[0]) << 32;
    int shift = words[2] ? __builtin_clz(words[2]) : 32 + __builtin_clz(words[1]);
    if (shift) {
        upper = upper << shift | lower >> (64 - shift);
        lower <<= shift;
    }
    return {upper, 32 - shift, lower != 0};
}

template <typename Float>
Float decimal_to_binary(const Significand &significand, int power) {
    constexpr int fraction_bits = FloatTraits<Float>::fraction_bits;
    constexpr int least_exponent = 1 - FloatTraits<Float>::bias; // of a normal number
    if (significand.is_zero() || power < lowest_power_of_ten) return 0;
    Bits<Float> bits = infinity_bits<Float>;
    if (power > highest_power_of_ten) return from_bits<Float>(bits);

    Normalised number = normalise(significand);
    const PowerOfTen &ten = powers_of_ten_128[power];
    Product product = multiply(number.bits, ten.high);
    // Neither the lower half of the power nor bits beyond the significand's first 64 add more
    // than 1.
    Bounds bounds = {product.high, product.low, 3,
                     number.exponent + floor_log2_of_power(power) + 1};
    int top = 63 - !(bounds.high >> 63);
    int exponent = bounds.exponent + top;
    int dropped = top - fraction_bits;
    if (exponent < least_exponent) {
        dropped += least_exponent - exponent;
        exponent = least_exponent;
        if (dropped > 64) return 0;
    }

    int up = settled_rounding(bounds, dropped);
    if (up < 0) {
        uint64_t finer = multiply(number.bits, ten.low).high;
        bounds.low += finer;
        bounds.high += bounds.low < finer;
        bounds.slack = number.inexact ? 2 : 1;
        if (bounds.low < -2ull) up = settled_rounding(bounds, dropped);
    }
    uint64_t mantissa = dropped < 64 ? bounds.high >> dropped : 0;
    if (up < 0) {
        int order = compare_with_midpoint(significand, power, mantissa, bounds.exponent + dropped);
        up = order > 0 || (order == 0 && mantissa & 1);
    }
    // A normal mantissa's top bit counts one into the exponent field.
    auto field = static_cast<Bits<Float>>(exponent - least_exponent);
    if (field >= (infinity_bits<Float> >> fraction_bits) - 1) return from_bits<Float>(bits);
    bits = (field << fraction_bits) + static_cast<Bits<Float>>(mantissa) +
           static_cast<Bits<Float>>(up);
    return from_bits<Float>(bits);
}

template float decimal_to_binary<float>(const Significand &, int);
template double decimal_to_binary<double>(const Significand &, int);

} // namespace vexrt
