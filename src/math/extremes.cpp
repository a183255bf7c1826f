// Magnitudes, signs, extremes, positive differences, square roots.

#include "math/errors.h"
#include "math/pair.h"

#include <math.h>

namespace vexrt {

namespace {

// The first rank above the second: a number above a NaN, 0 above -0.
template <typename Float>
Float greater_of(Float x, Float y) {
    if (is_nan(x)) return is_nan(y) ? y + y : y; // quiet
    if (is_nan(y)) return x;
    if (x == y) return sign_of(x) ? y : x;
    return x > y ? x : y;
}

template <typename Float>
Float less_of(Float x, Float y) {
    if (is_nan(x) || is_nan(y)) return greater_of(x, y);
    if (x == y) return sign_of(x) ? x : y;
    return x < y ? x : y;
}

// A quarter, but of numbers so small that it would not be exact.
template <typename Float>
Float quarter_of(Float x) {
    return exponent_field(x) > 2 ? x / 4 : 0;
}

template <typename Float>
Float positive_difference(Float x, Float y, const char *name) {
    if (is_nan(x) || is_nan(y)) return x + y;
    if (x <= y) return 0;
    if (is_infinite(x) || is_infinite(y)) return Float(infinity);
    constexpr int large = FloatTraits<Float>::greatest_exponent - 2;
    bool may_overflow = exponent_field(x) >= large || exponent_field(y) >= large;
    if (may_overflow && quarter_of(x) - quarter_of(y) > greatest_finite<Float> / 4)
        return static_cast<Float>(report(MathError::overflow, {name, x, y}, infinity));
    return x - y;
}

template <typename Float>
Float root(Float x, const char *name) {
    if (x < 0) return static_cast<Float>(report(MathError::domain, name, x, not_a_number));
    return __builtin_elementwise_sqrt(x);
}

} // namespace

} // namespace vexrt

using namespace vexrt;

extern "C" {

double fabs(double x) { return absolute_value(x); }
float fabsf(float x) { return absolute_value(x); }
long double fabsl(long double x) { return absolute_value(x); }

double copysign(double x, double y) { return with_sign_of(x, y); }
float copysignf(float x, float y) { return with_sign_of(x, y); }
long double copysignl(long double x, long double y) { return with_sign_of(x, y); }

double fmax(double x, double y) { return greater_of(x, y); }
float fmaxf(float x, float y) { return greater_of(x, y); }
long double fmaxl(long double x, long double y) { return greater_of(x, y); }

double fmin(double x, double y) { return less_of(x, y); }
float fminf(float x, float y) { return less_of(x, y); }
long double fminl(long double x, long double y) { return less_of(x, y); }

double fdim(double x, double y) { return positive_difference(x, y, "fdim"); }
float fdimf(float x, float y) { return positive_difference(x, y, "fdimf"); }
long double fdiml(long double x, long double y) {
    return positive_difference<double>(x, y, "fdiml");
}

double sqrt(double x) { return root(x, "sqrt"); }
float sqrtf(float x) { return root(x, "sqrtf"); }
long double sqrtl(long double x) { return root<double>(x, "sqrtl"); }

} // extern "C"
