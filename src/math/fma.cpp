// x y + z, rounded once. The double form computes with integers of 128 bits; the float form with
// doubles, where the product is exact.

#include "math/compose.h"
#include "math/errors.h"

#include <math.h>

namespace vexrt {

namespace {

struct Wide {
    uint64_t high, low;
};

Wide product_of(uint64_t a, uint64_t b) {
    uint64_t a_low = static_cast<uint32_t>(a), a_high = a >> 32;
    uint64_t b_low = static_cast<uint32_t>(b), b_high = b >> 32;
    uint64_t low = a_low * b_low;
    uint64_t middle = a_high * b_low + (low >> 32); // neither sum overflows: 53 bits each
    uint64_t other = a_low * b_high + static_cast<uint32_t>(middle);
    return {a_high * b_high + (middle >> 32) + (other >> 32),
            other << 32 | static_cast<uint32_t>(low)};
}

Wide shifted_left(Wide value, int count) {
    if (count == 0) return value;
    if (count >= 64) return {value.low << (count - 64), 0};
    return {value.high << count | value.low >> (64 - count), value.low << count};
}

// The last bit is set when bits are lost.
Wide shifted_right(Wide value, int count) {
    if (count == 0) return value;
    if (count >= 128) return {0, (value.high | value.low) != 0};
    if (count >= 64) {
        uint64_t lost = value.low | (count > 64 ? value.high << (128 - count) : 0);
        return {0, value.high >> (count - 64) | (lost != 0)};
    }
    uint64_t lost = value.low << (64 - count);
    return {value.high >> count, value.high << (64 - count) | value.low >> count | (lost != 0)};
}

bool is_less(Wide a, Wide b) { return a.high != b.high ? a.high < b.high : a.low < b.low; }

Wide sum_of(Wide a, Wide b) {
    uint64_t low = a.low + b.low;
    return {a.high + b.high + (low < a.low), low};
}

Wide difference_of(Wide a, Wide b) { return {a.high - b.high - (a.low < b.low), a.low - b.low}; }

// A signed number: magnitude 2^exponent.
struct Scaled {
    Wide magnitude;
    int exponent;
    bool negative;
};

// The product's 106 bits stand 20 bits above the end, where they leave room for a carry.
constexpr int room_below = 20;

Scaled scaled_product(double x, double y) {
    auto [x_significand, x_exponent] = parts_of(x);
    auto [y_significand, y_exponent] = parts_of(y);
    Wide magnitude = shifted_left(product_of(x_significand, y_significand), room_below);
    return {magnitude, x_exponent + y_exponent - 2 * 1075 - room_below, sign_of(x) != sign_of(y)};
}

// z with the leading bit as high as that of products can be.
Scaled scaled_addend(double z) {
    if (z == 0) return {{0, 0}, -5000, sign_of(z)};
    auto [significand, exponent] = parts_of(z);
    constexpr int height = 126 - 53;
    return {shifted_left({0, significand}, height), exponent - 1075 - height, sign_of(z)};
}

Scaled sum_of(Scaled a, Scaled b) {
    if (a.exponent < b.exponent) {
        Scaled other = a;
        a = b;
        b = other;
    }
    b.magnitude = shifted_right(b.magnitude, a.exponent - b.exponent);
    if (a.negative == b.negative) return {sum_of(a.magnitude, b.magnitude), a.exponent, a.negative};
    if (is_less(a.magnitude, b.magnitude))
        return {difference_of(b.magnitude, a.magnitude), a.exponent, b.negative};
    return {difference_of(a.magnitude, b.magnitude), a.exponent, a.negative};
}

double composed(Scaled value, const Call &call) {
    auto [high, low] = value.magnitude;
    if (!(high | low)) return rounding_direction() == FE_DOWNWARD ? -0.0 : 0.0;
    int leading = high ? __builtin_clzll(high) : 64 + __builtin_clzll(low);
    Wide aligned = shifted_left(value.magnitude, leading);
    Rounded rounded =
        compose(value.negative, aligned.high | (aligned.low != 0), value.exponent + 127 - leading);
    return checked(rounded, call);
}

// Zeros, infinities and NaNs, by the processor's arithmetic, which is exact then.
double special(double x, double y, double z, const char *name) {
    if (is_nan(x) || is_nan(y) || is_nan(z)) return x + y + z;
    bool no_product = (x == 0 && is_infinite(y)) || (is_infinite(x) && y == 0);
    bool infinite = is_infinite(x) || is_infinite(y);
    bool negative = sign_of(x) != sign_of(y);
    bool no_sum = infinite && is_infinite(z) && negative != sign_of(z);
    if (no_product || no_sum) return report(MathError::domain, {name, x, y}, not_a_number);
    if (is_infinite(z)) return z;
    return x * y + z;
}

double fused(double x, double y, double z, const char *name) {
    if (x == 0 || y == 0 || !is_finite(x) || !is_finite(y) || !is_finite(z))
        return special(x, y, z, name);
    return composed(sum_of(scaled_product(x, y), scaled_addend(z)), {name, x, y});
}

// Rounding the sum to odd first makes rounding it again to float harmless.
float fused(float x, float y, float z) {
    double product = static_cast<double>(x) * y;
    if (!is_finite(product) || !is_finite(z) || product == 0)
        return static_cast<float>(special(x, y, z, "fmaf"));
    Pair sum = exact_sum(product, z);
    if (sum.low != 0 && !(bits_of(sum.high) & 1)) {
        bool outward = sign_of(sum.low) == sign_of(sum.high);
        sum.high = from_bits<double>(bits_of(sum.high) + (outward ? 1 : -1));
    }
    return narrow(sum.high, {"fmaf", x, y});
}

} // namespace

} // namespace vexrt

using namespace vexrt;

extern "C" {

double fma(double x, double y, double z) { return fused(x, y, z, "fma"); }
float fmaf(float x, float y, float z) { return fused(x, y, z); }
long double fmal(long double x, long double y, long double z) { return fused(x, y, z, "fmal"); }

} // extern "C"
