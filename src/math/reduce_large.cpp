// Reduction of large arguments by multiples of pi/64.
//
// x = m 2^e with an integer m. Of the bits of 64/pi only those matter whose product with 2^e is
// below 128, since whole turns drop out, and as many as the result's precision asks for: no double
// comes closer to a multiple of pi/2 than about 2^-62. The product's integer part is the step, its
// fraction the rest.

#include "math/scale.h"
#include "math/trigonometric.h"

namespace vexrt {

namespace {

// 32 bits of 64/pi from bit `position` on, counted from the table's beginning.
uint32_t bits_at(unsigned position) {
    unsigned word = position / 32, shift = position % 32;
    uint64_t both =
        static_cast<uint64_t>(steps_per_unit_bits[word]) << 32 | steps_per_unit_bits[word + 1];
    return static_cast<uint32_t>(both << shift >> 32);
}

// The position whose bit weighs 2^6 after scaling by 2^exponent; the table's first weighs 2^63.
unsigned first_position(int exponent) { return static_cast<unsigned>(57 + exponent); }

constexpr int words = 7; // the fixed-point number has 7 bits before the point, 217 behind it

struct FixedPoint {
    uint32_t word[words]; // highest first
};

// m times the bits from `position` on, modulo 2^7.
FixedPoint product_of(uint64_t m, unsigned position) {
    FixedPoint product;
    uint32_t m_low = static_cast<uint32_t>(m), m_high = static_cast<uint32_t>(m >> 32);
    uint64_t carry = 0;
    uint32_t below = bits_at(position + words * 32); // the word behind, for its upper product
    carry = static_cast<uint64_t>(m_low) * below >> 32;
    for (int i = words - 1; i >= 0; --i) {
        uint32_t bits = bits_at(position + static_cast<unsigned>(i) * 32);
        uint64_t low = static_cast<uint64_t>(m_low) * bits + static_cast<uint32_t>(carry);
        uint64_t high = static_cast<uint64_t>(m_high) * below + static_cast<uint32_t>(low);
        product.word[i] = static_cast<uint32_t>(high);
        carry = (carry >> 32) + (low >> 32) + (high >> 32);
        below = bits;
    }
    return product;
}

// Distance to the nearest integer: the fraction's two's complement read with its sign.
bool negate_if_above_half(FixedPoint &fraction) {
    if (!(fraction.word[0] >> 31)) return false;
    uint64_t carry = 1;
    for (int i = words - 1; i >= 0; --i) {
        carry += static_cast<uint32_t>(~fraction.word[i]);
        fraction.word[i] = static_cast<uint32_t>(carry);
        carry >>= 32;
    }
    return true;
}

double of_bits(uint64_t bits) {
    return static_cast<double>(static_cast<uint32_t>(bits >> 32)) * 0x1p32 +
           static_cast<double>(static_cast<uint32_t>(bits));
}

// The first 106 significant bits of a fraction below 1/2.
Pair pair_of(const FixedPoint &fraction) {
    int skipped = 0;
    while (skipped < words - 4 && fraction.word[skipped] == 0) ++skipped;
    const uint32_t *word = fraction.word + skipped;
    double scale = power_of_two(-64 - 32 * skipped);
    double high = of_bits(static_cast<uint64_t>(word[0]) << 32 | (word[1] & 0xFFFFF800));
    double low = of_bits(static_cast<uint64_t>(word[1] & 0x7FF) << 32 | word[2]) * 0x1p-32 +
                 static_cast<double>(word[3]) * 0x1p-64;
    return sum_of_ordered(high * scale, low * scale);
}

} // namespace

Reduced reduce_large(double x) {
    auto [significand, field] = parts_of(x);
    FixedPoint product = product_of(significand, first_position(field - 1075));
    unsigned step = product.word[0] >> 25;
    for (int i = 0; i < words; ++i) {
        uint32_t next = i + 1 < words ? product.word[i + 1] : 0;
        product.word[i] = product.word[i] << 7 | next >> 25;
    }
    bool negative = negate_if_above_half(product);
    step += negative;
    Pair rest = pair_of(product) * Pair{sine_step_pair[0], sine_step_pair[1]};
    if (sign_of(x) != negative) rest = -rest;
    return {sign_of(x) ? 0 - step : step, rest.high, rest.low};
}

// A float's 24 bits need three words of the product.
Reduced reduce_large(float x) {
    auto [significand, field] = parts_of(x);
    unsigned position = first_position(field - 150);
    uint64_t middle = static_cast<uint64_t>(significand) * bits_at(position + 32);
    uint64_t low = static_cast<uint64_t>(significand) * bits_at(position + 64) >> 32;
    uint64_t product =
        (static_cast<uint64_t>(significand * bits_at(position)) << 32) + middle + low;
    auto step = static_cast<unsigned>((product + (uint64_t{1} << 56)) >> 57);
    auto fraction = static_cast<double>(static_cast<int64_t>(product << 7));
    double rest = fraction * (0x1p-64 * sine_step_pair[0]);
    return sign_of(x) ? Reduced{0 - step, -rest, 0} : Reduced{step, rest, 0};
}

} // namespace vexrt
