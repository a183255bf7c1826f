// Remainders: fmod, remainder, remquo. The x87 unit's partial remainders are exact and take up to
// 63 bits off the quotient a step, but about a cycle a bit. Where the quotient is long, integers
// take off all but its last bits first.

#include "math/errors.h"
#include "math/scale.h"

#include <math.h>

namespace vexrt {

namespace {

// The instructions set a condition bit while the reduction is not complete.
template <typename Float>
Float truncating_remainder(Float x, Float y) {
    __asm__("1:\n\tfprem\n\tfnstsw %%ax\n\ttestb $4, %%ah\n\tjnz 1b"
            : "+t"(x)
            : "u"(y)
            : "ax", "cc");
    return x;
}

template <typename Float>
struct NearestRemainder {
    Float rest;
    int quotient; // three bits
};

template <typename Float>
NearestRemainder<Float> nearest_remainder(Float x, Float y) {
    unsigned short status;
    __asm__("1:\n\tfprem1\n\tfnstsw %%ax\n\ttestb $4, %%ah\n\tjnz 1b"
            : "+t"(x), "=a"(status)
            : "u"(y)
            : "cc");
    return {x, (status >> 8 & 1) << 2 | (status >> 14 & 1) << 1 | (status >> 9 & 1)};
}

// Quotients of more bits are long.
constexpr int short_quotient = 64;

template <typename Float>
bool is_long_quotient(Float x, Float y) {
    return exponent_field(x) - exponent_field(y) > short_quotient;
}

// rest 2^bits modulo `modulus`, plus possibly that. 2^62 <= modulus < 2^63, rest < 2 modulus,
// bits <= 28; `inverse` is 2^93 / modulus or up to 1 less. The quotient comes out too small by less
// than 1/4 for the rest's lower word, 1/2 for the inverse and 1 for the bits that it loses.
constexpr int step_bits = 28;

inline uint64_t remainder_step(uint64_t rest, int bits, uint64_t modulus, uint32_t inverse) {
    uint64_t product = (rest >> 32) * inverse;
    uint32_t quotient = static_cast<uint32_t>(product >> 32) >> (step_bits + 1 - bits);
    return (rest << bits) - quotient * modulus;
}

// x modulo 8 y, where the quotient is long: what remains of it are the bits that remquo tells.
[[gnu::noinline]] double brought_near(double x, double y) {
    auto [significand, exponent] = parts_of(x);
    auto [divisor, divisor_exponent] = parts_of(y);
    divisor_exponent += 3;
    double scaled = from_bits<double>((divisor & fraction_mask<double>) | bits_of(0x1p52));
    auto inverse = static_cast<uint32_t>(truncated_integer(0x1.ffffffffffffp82 / scaled));
    uint64_t modulus = divisor << 10, rest = significand << 10;
    int bits = exponent - divisor_exponent;
    rest = remainder_step(rest, bits % step_bits, modulus, inverse);
    for (int i = bits / step_bits; i; --i) rest = remainder_step(rest, step_bits, modulus, inverse);
    if (rest >= modulus) rest -= modulus;
    // In two steps, as the unit may be below the normal range; both are exact.
    double units = static_cast<double>(static_cast<int64_t>(rest >> 10));
    int power = divisor_exponent - 1075, half = power / 2;
    return with_sign_of(units * power_of_two(half) * power_of_two(power - half), x);
}

// What is left to the x87 unit: not NaNs and errors, and not what it would not answer so.
template <typename Float>
bool is_ordinary(Float x, Float y) {
    return is_finite(x) && is_positive_and_normal(absolute_value(y));
}

template <typename Float>
bool is_special(Float x, Float y) {
    return !is_finite(x) || is_nan(y) || y == 0;
}

template <typename Float>
[[gnu::cold, gnu::noinline]] Float special(Float x, Float y, const char *name) {
    if (is_nan(x) || is_nan(y)) return x + y;
    return static_cast<Float>(report(MathError::domain, {name, x, y}, not_a_number));
}

template <typename Float>
Float remainder_of(Float x, Float y, const char *name) {
    if (__builtin_expect(is_special(x, y), false)) return special(x, y, name);
    if (absolute_value(x) < absolute_value(y)) return x;
    if (is_long_quotient(x, y))
        return static_cast<Float>(truncating_remainder<double>(brought_near(x, y), y));
    return truncating_remainder(x, y);
}

template <typename Float>
NearestRemainder<Float> nearest_of_long(Float x, Float y) {
    NearestRemainder<double> result = nearest_remainder<double>(brought_near(x, y), y);
    return {static_cast<Float>(result.rest), result.quotient};
}

template <typename Float>
[[gnu::noinline]] Float rare_nearest(Float x, Float y, const char *name) {
    if (is_special(x, y)) return special(x, y, name);
    if (is_infinite(y)) return x;
    return is_long_quotient(x, y) ? nearest_of_long(x, y).rest : nearest_remainder(x, y).rest;
}

// A zero has the sign of x.
template <typename Float>
Float nearest(Float x, Float y, const char *name) {
    if (__builtin_expect(!is_ordinary(x, y) || is_long_quotient(x, y), false))
        return rare_nearest(x, y, name);
    return nearest_remainder(x, y).rest;
}

template <typename Float>
Float remainder_and_quotient(Float x, Float y, int *quotient, const char *name) {
    *quotient = 0;
    if (is_special(x, y) || is_infinite(y)) return nearest(x, y, name);
    NearestRemainder<Float> result =
        is_long_quotient(x, y) ? nearest_of_long(x, y) : nearest_remainder(x, y);
    *quotient = sign_of(x) == sign_of(y) ? result.quotient : -result.quotient;
    return result.rest;
}

} // namespace

} // namespace vexrt

using namespace vexrt;

extern "C" {

double fmod(double x, double y) { return remainder_of(x, y, "fmod"); }
float fmodf(float x, float y) { return remainder_of(x, y, "fmodf"); }
long double fmodl(long double x, long double y) { return remainder_of<double>(x, y, "fmodl"); }

double remainder(double x, double y) { return nearest(x, y, "remainder"); }
float remainderf(float x, float y) { return nearest(x, y, "remainderf"); }
long double remainderl(long double x, long double y) { return nearest<double>(x, y, "remainderl"); }

double remquo(double x, double y, int *quotient) {
    return remainder_and_quotient(x, y, quotient, "remquo");
}
float remquof(float x, float y, int *quotient) {
    return remainder_and_quotient(x, y, quotient, "remquof");
}
long double remquol(long double x, long double y, int *quotient) {
    return remainder_and_quotient<double>(x, y, quotient, "remquol");
}

} // extern "C"
