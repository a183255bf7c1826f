// Inverse hyperbolic functions, as logarithms of sums of two doubles:
//
//   acosh x = log(x + sqrt(x^2 - 1))     asinh x = log(x + sqrt(x^2 + 1))
//   atanh x = log((1 + x) / (1 - x)) / 2
//
// The argument of the logarithm is 1 + u with u as a sum of two, so that nothing cancels near 1.

#include "math/complex_number.h"
#include "math/errors.h"
#include "math/logarithm.h"

#include <math.h>

namespace vexrt {

namespace {

constexpr double log_2_high = natural_logarithm.two_high, log_2_low = natural_logarithm.two_low;
constexpr double huge = 0x1p30; // here x^2 + 1 is x^2 within rounding, and log is log 2x

double value_of(Pair x) { return x.high + x.low; }

double logarithm_of_double(double x) {
    return value_of(extended_logarithm(x) + Pair{log_2_high, log_2_low});
}

Pair square_of(double x) { return exact_product(x, x); }

[[gnu::cold, gnu::noinline]] double no_result(double x, const char *name) {
    if (is_nan(x)) return x + x;
    return report(MathError::domain, name, x, not_a_number);
}

// With t = x - 1, exact, u = t + sqrt(t (t + 2)).
double area_cosine(double x, const char *name) {
    if (__builtin_expect(!(x >= 1), false)) return no_result(x, name);
    if (x > huge) return is_infinite(x) ? x : logarithm_of_double(x);
    double t = x - 1;
    if (t == 0) return 0;
    Pair square = square_of(t) + 2 * t;
    return value_of(logarithm_of_successor(square_root(square) + t));
}

} // namespace

// u = x + x^2 / (1 + sqrt(1 + x^2)).
Pair area_sine_of(Pair x) {
    if (x.high < 0x1p-60) return x;
    if (x.high > huge) return extended_logarithm(x) + Pair{log_2_high, log_2_low};
    Pair square = x * x;
    return logarithm_of_successor(square / (square_root(square + 1) + 1) + x);
}

namespace {

double area_sine(double x, const char *name) {
    double magnitude = absolute_value(x);
    if (magnitude < 0x1p-27) return tiny_result(x, name);
    if (is_nan(x)) return x + x;
    if (is_infinite(x)) return x;
    return with_sign_of(value_of(area_sine_of({magnitude, 0})), x);
}

// u = 2 x / (1 - x).
double area_tangent(double x, const char *name) {
    double magnitude = absolute_value(x);
    if (magnitude < 0x1p-27) return tiny_result(x, name);
    if (__builtin_expect(!(magnitude < 1), false)) {
        if (magnitude == 1) return report(MathError::pole, name, x, with_sign_of(infinity, x));
        return no_result(x, name);
    }
    Pair u = Pair{2 * magnitude, 0} / exact_sum(1, -magnitude);
    Pair result = logarithm_of_successor(u);
    return with_sign_of(0.5 * value_of(result), x);
}

float area_cosine(float x) {
    if (__builtin_expect(!(x >= 1), false)) return static_cast<float>(no_result(x, "acoshf"));
    if (is_infinite(x)) return x;
    double t = x - 1.0;
    return static_cast<float>(
        logarithm_for_float(natural_logarithm, 1 + (t + square_root(t * (t + 2)))));
}

float area_sine(float x) {
    float magnitude = absolute_value(x);
    if (magnitude < 0x1p-13f) return tiny_result(x, "asinhf");
    if (!is_finite(x)) return x + x;
    double wide = magnitude, square = wide * wide;
    double u = wide + square / (1 + square_root(1 + square));
    double result = logarithm_for_float(natural_logarithm, 1 + u);
    return static_cast<float>(with_sign_of(result, static_cast<double>(x)));
}

float area_tangent(float x) {
    float magnitude = absolute_value(x);
    if (magnitude < 0x1p-13f) return tiny_result(x, "atanhf");
    if (__builtin_expect(!(magnitude < 1), false))
        return static_cast<float>(area_tangent(x, "atanhf"));
    double wide = magnitude;
    double result = 0.5 * logarithm_for_float(natural_logarithm, (1 + wide) / (1 - wide));
    return static_cast<float>(with_sign_of(result, static_cast<double>(x)));
}

} // namespace

} // namespace vexrt

using namespace vexrt;

extern "C" {

double acosh(double x) { return area_cosine(x, "acosh"); }
float acoshf(float x) { return area_cosine(x); }
long double acoshl(long double x) { return area_cosine(double(x), "acoshl"); }

double asinh(double x) { return area_sine(x, "asinh"); }
float asinhf(float x) { return area_sine(x); }
long double asinhl(long double x) { return area_sine(double(x), "asinhl"); }

double atanh(double x) { return area_tangent(x, "atanh"); }
float atanhf(float x) { return area_tangent(x); }
long double atanhl(long double x) { return area_tangent(double(x), "atanhl"); }

} // extern "C"
