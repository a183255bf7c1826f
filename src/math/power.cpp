// x^y: the exponential of y log x, the logarithm to 68 bits.

#include "math/compose.h"
#include "math/errors.h"
#include "math/exponential.h"
#include "math/logarithm.h"
#include "math/round.h"

#include <math.h>

namespace vexrt {

namespace {

enum class Parity { none, even, odd };

// Whether a finite number is an integer, and which.
template <typename Float>
Parity parity(Float y) {
    constexpr int one = FloatTraits<Float>::bias, bits = FloatTraits<Float>::fraction_bits;
    int exponent = exponent_field(y);
    if (exponent < one) return y == 0 ? Parity::even : Parity::none;
    if (exponent > one + bits) return Parity::even;
    Bits<Float> behind = bits_behind_point<Float>(exponent);
    if (bits_of(y) & behind) return Parity::none;
    // The bit above the point; at the exponent of 1 that is the implicit one.
    return exponent == one || (bits_of(y) & (behind + 1)) ? Parity::odd : Parity::even;
}

template <typename Float>
struct Special {
    bool decided;
    Float result;
};

// An infinite exponent: x^y grows or vanishes by whether |x| is above 1.
template <typename Float>
Float power_to_infinity(Float x, Float y) {
    Float magnitude = absolute_value(x);
    if (magnitude == 1) return 1;
    return (magnitude > 1) == !sign_of(y) ? Float(infinity) : Float(0);
}

template <typename Float>
Float power_of_zero_or_infinity(Float x, Float y, const char *name) {
    Float sign = parity(y) == Parity::odd ? x : Float(1);
    if ((x == 0) == sign_of(y)) {
        double result = with_sign_of(infinity, static_cast<double>(sign));
        if (x == 0) result = report(MathError::pole, {name, x, y}, result);
        return static_cast<Float>(result);
    }
    return with_sign_of(Float(0), sign);
}

// Arguments for which there is no y log |x|. Both signs of the result of others come later.
template <typename Float>
[[gnu::cold, gnu::noinline]] Special<Float> special(Float x, Float y, const char *name) {
    if (y == 0 || x == 1) return {true, 1}; // NaNs, too
    if (is_nan(x) || is_nan(y)) return {true, x + y};
    if (is_infinite(y)) return {true, power_to_infinity(x, y)};
    if (x == 0 || is_infinite(x)) return {true, power_of_zero_or_infinity(x, y, name)};
    if (x < 0 && parity(y) == Parity::none)
        return {true, static_cast<Float>(report(MathError::domain, {name, x, y}, not_a_number))};
    return {false, x < 0 && parity(y) == Parity::odd ? Float(-1) : Float(1)};
}

template <typename Float>
bool is_ordinary(Float x, Float y) {
    return is_positive_and_normal(x) && magnitude_bits(y) - 1 < infinity_bits<Float> - 1;
}

// y times a sum. Factors of 21 bits make the first product exact.
Pair product_of(Pair logarithm, double y) {
    double log_high = leading_bits(logarithm.high), y_high = leading_bits(y);
    double log_low = (logarithm.high - log_high) + logarithm.low;
    return sum_of_ordered(log_high * y_high, log_high * (y - y_high) + log_low * y);
}

double power(double x, double y, const char *name) {
    double sign = 1;
    if (__builtin_expect(!is_ordinary(x, y) || x == 1, false)) {
        auto [decided, result] = special(x, y, name);
        if (decided) return result;
        sign = result;
    }
    double magnitude = absolute_value(x);
    // Beyond 2^64 every power overflows, vanishes or is 1; below 2^-65 it is 1.
    double limited = y;
    if (absolute_value(y) >= 0x1p64) limited = with_sign_of(0x1p64, y);
    if (absolute_value(y) < 0x1p-65) return sign;
    Pair exponent =
        magnitude == 1 ? Pair{0, 0} : product_of(extended_logarithm(magnitude), limited);
    if (!(absolute_value(exponent.high) < 1000))
        exponent = {with_sign_of(1000.0, exponent.high), 0};
    Exponential e = table_exponential(exponent.high, exponent.low);
    if (__builtin_expect(is_plain(e), true)) return sign * plain_value_of(e);
    Pair value = pair_of(e);
    return finish({sign * value.high, sign * value.low}, e.exponent, {name, x, y});
}

// Results outside the normal range, negative bases, special arguments.
[[gnu::noinline]] float rare_power(float x, float y) {
    double sign = 1;
    if (!is_ordinary(x, y) || x == 1) {
        auto [decided, result] = special(x, y, "powf");
        if (decided) return result;
        sign = result;
    }
    double magnitude = absolute_value(x);
    double exponent = y * logarithm_for_float<natural_logarithm>(magnitude);
    if (!(absolute_value(exponent) < 200)) exponent = with_sign_of(200.0, exponent);
    return narrow(sign * exponential_for_float(exponent), {"powf", x, y});
}

float power(float x, float y) {
    if (__builtin_expect(!is_ordinary(x, y), false)) return rare_power(x, y);
    double exponent = y * logarithm_for_float<natural_logarithm>(x);
    if (__builtin_expect(!(absolute_value(exponent) < 87), false)) return rare_power(x, y);
    return static_cast<float>(exponential_for_float(exponent));
}

} // namespace

} // namespace vexrt

using namespace vexrt;

extern "C" {

double pow(double x, double y) { return power(x, y, "pow"); }
float powf(float x, float y) { return power(x, y); }
long double powl(long double x, long double y) { return power(double(x), double(y), "powl"); }

} // extern "C"
