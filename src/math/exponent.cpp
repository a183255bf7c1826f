// Exponents and powers of two: frexp, ilogb, logb, ldexp, scalbn, scalbln, modf.

#include "math/compose.h"
#include "math/errors.h"
#include "math/round.h"

#include <limits.h>
#include <math.h>

namespace vexrt {

namespace {

template <typename Float>
bool has_exponent(Float x) {
    return x != 0 && is_finite(x);
}

template <typename Float>
int exponent_of(Float x) {
    return parts_of(x).exponent - FloatTraits<Float>::bias;
}

template <typename Float>
Float split(Float x, int *exponent) {
    *exponent = 0;
    if (!has_exponent(x)) return x + x; // quiet
    auto [significand, field] = parts_of(x);
    constexpr int half = FloatTraits<Float>::bias - 1;
    *exponent = field - half;
    Bits<Float> bits = (significand & fraction_mask<Float>) |
                       static_cast<Bits<Float>>(half) << FloatTraits<Float>::fraction_bits;
    return with_sign_of(from_bits<Float>(bits), x);
}

template <typename Float>
int integer_exponent(Float x, const char *name) {
    if (has_exponent(x)) return exponent_of(x);
    int result = x == 0 ? FP_ILOGB0 : is_nan(x) ? FP_ILOGBNAN : INT_MAX;
    double reported = report(MathError::domain, name, x, result);
    return absolute_value(reported) < 0x1p31 ? static_cast<int>(reported) : result;
}

template <typename Float>
Float floating_exponent(Float x, const char *name) {
    if (has_exponent(x)) return static_cast<Float>(exponent_of(x));
    if (x == 0) return static_cast<Float>(report(MathError::pole, name, x, -infinity));
    return x * x;
}

// Scaled in double, whose range floats cannot leave within the powers that matter.
constexpr int power_limit = 3000;

double scaled(double x, int power, const char *name) {
    if (!has_exponent(x)) return x + x;
    Call call = {name, x, static_cast<double>(power)};
    power = power > power_limit ? power_limit : power < -power_limit ? -power_limit : power;
    auto [significand, field] = parts_of(x);
    return checked(compose(sign_of(x), significand << 11, field - 1023 + power), call);
}

float scaled(float x, int power, const char *name) {
    if (!has_exponent(x)) return x + x;
    Call call = {name, x, static_cast<double>(power)};
    constexpr int limit = 500;
    power = power > limit ? limit : power < -limit ? -limit : power;
    return narrow(static_cast<double>(x) * power_of_two(power), call);
}

template <typename Float>
Float fraction(Float x, Float *whole) {
    *whole = truncated(x);
    if (is_nan(x)) return *whole = x + x;
    return with_sign_of(is_infinite(x) ? 0 : x - *whole, x);
}

} // namespace

} // namespace vexrt

using namespace vexrt;

static_assert(sizeof(long) == sizeof(int));

extern "C" {

double frexp(double x, int *exponent) { return split(x, exponent); }
float frexpf(float x, int *exponent) { return split(x, exponent); }
long double frexpl(long double x, int *exponent) { return split<double>(x, exponent); }

int ilogb(double x) { return integer_exponent(x, "ilogb"); }
int ilogbf(float x) { return integer_exponent(x, "ilogbf"); }
int ilogbl(long double x) { return integer_exponent<double>(x, "ilogbl"); }

double logb(double x) { return floating_exponent(x, "logb"); }
float logbf(float x) { return floating_exponent(x, "logbf"); }
long double logbl(long double x) { return floating_exponent<double>(x, "logbl"); }

double ldexp(double x, int power) { return scaled(x, power, "ldexp"); }
float ldexpf(float x, int power) { return scaled(x, power, "ldexpf"); }
long double ldexpl(long double x, int power) {
    return scaled(static_cast<double>(x), power, "ldexpl");
}

double scalbn(double x, int power) { return scaled(x, power, "scalbn"); }
float scalbnf(float x, int power) { return scaled(x, power, "scalbnf"); }
long double scalbnl(long double x, int power) {
    return scaled(static_cast<double>(x), power, "scalbnl");
}

double scalbln(double x, long power) { return scaled(x, power, "scalbln"); }
float scalblnf(float x, long power) { return scaled(x, power, "scalblnf"); }
long double scalblnl(long double x, long power) {
    return scaled(static_cast<double>(x), power, "scalblnl");
}

double modf(double x, double *whole) { return fraction(x, whole); }
float modff(float x, float *whole) { return fraction(x, whole); }
long double modfl(long double x, long double *whole) { return fraction(x, whole); }

} // extern "C"
