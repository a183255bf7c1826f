// Inverse hyperbolic functions: polynomials near the zero, elsewhere logarithms of sums of two
// doubles.
//
//   acosh x = log(x + sqrt(x^2 - 1))     asinh x = log(x + sqrt(x^2 + 1))
//   atanh x = log((1 + x) / (1 - x)) / 2

#include "math/data/inverse_hyperbolic.h"
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
    LogarithmArgument argument = logarithm_argument(x);
    ++argument.exponent;
    return value_of(natural_logarithm_of(argument));
}

// log(a + b) for |b| far below a.
Pair logarithm_of_sum(double a, double b) {
    Pair result = natural_logarithm_of(logarithm_argument(a));
    return {result.high, result.low + b / a};
}

// log(x + sqrt(x^2 + one)) for x from 1/2 on, with one being 1 or -1.
double logarithm_with_root(double x, double one) {
    Pair square = square_of(x), sum = exact_sum(square.high, one);
    double low = sum.low + square.low, total = sum.high + low;
    double root = square_root(total);
    Pair root_square = square_of(root);
    double root_low = (((sum.high - root_square.high) + low) - root_square.low) / (2 * root);
    Pair argument = sum_of_ordered(x, root);
    if (root > x) argument = sum_of_ordered(root, x);
    return value_of(logarithm_of_sum(argument.high, argument.low + root_low));
}

[[gnu::cold, gnu::noinline]] double no_result(double x, const char *name) {
    if (is_nan(x)) return x + x;
    return report(MathError::domain, name, x, not_a_number);
}

// Near 1, with t = x - 1, sqrt(2 t) times a polynomial.
double area_cosine_near_1(double t) {
    if (t == 0) return 0;
    double root = square_root(2 * t);
    Pair square = square_of(root);
    double root_low = ((2 * t - square.high) - square.low) / (2 * root);
    return root + (root_low + root * t * polynomial(acosh_tail, t));
}

double area_cosine(double x, const char *name) {
    if (__builtin_expect(!(x >= 1), false)) return no_result(x, name);
    if (x < 1.5) return area_cosine_near_1(x - 1);
    if (x > huge) return is_infinite(x) ? x : logarithm_of_double(x);
    return logarithm_with_root(x, -1);
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
    if (magnitude < 0.5) {
        if (magnitude < 0x1p-27) return tiny_result(x, name);
        double square = x * x;
        return x + x * square * polynomial(asinh_tail, square);
    }
    if (!is_finite(x)) return x + x;
    double result =
        magnitude > huge ? logarithm_of_double(magnitude) : logarithm_with_root(magnitude, 1);
    return with_sign_of(result, x);
}

// The quotient's correction by what it leaves, over the divisor and over the quotient itself, is
// that over 1 + x.
double logarithm_of_ratio(double x) {
    Pair above = exact_sum(1, x);
    double below = 1 - x, quotient = above.high / below; // the difference is exact
    Pair product = exact_product(quotient, below);
    double rest = ((above.high - product.high) - product.low) + above.low;
    Pair result = natural_logarithm_of(logarithm_argument(quotient));
    return result.high + (result.low + rest / above.high);
}

double area_tangent(double x, const char *name) {
    double magnitude = absolute_value(x);
    if (magnitude < 0.5) {
        if (magnitude < 0x1p-27) return tiny_result(x, name);
        double square = x * x;
        return x + x * square * polynomial(atanh_tail, square);
    }
    if (__builtin_expect(!(magnitude < 1), false)) {
        if (magnitude == 1) return report(MathError::pole, name, x, with_sign_of(infinity, x));
        return no_result(x, name);
    }
    return with_sign_of(0.5 * logarithm_of_ratio(magnitude), x);
}

float area_cosine(float x) {
    if (__builtin_expect(!(x >= 1), false)) return static_cast<float>(no_result(x, "acoshf"));
    if (is_infinite(x)) return x;
    double t = x - 1.0;
    return static_cast<float>(
        logarithm_for_float<natural_logarithm>(1 + (t + square_root(t * (t + 2)))));
}

float area_sine(float x) {
    float magnitude = absolute_value(x);
    if (magnitude < 0x1p-13f) return tiny_result(x, "asinhf");
    if (!is_finite(x)) return x + x;
    double wide = magnitude, square = wide * wide;
    double u = wide + square / (1 + square_root(1 + square));
    double result = logarithm_for_float<natural_logarithm>(1 + u);
    return static_cast<float>(with_sign_of(result, static_cast<double>(x)));
}

float area_tangent(float x) {
    float magnitude = absolute_value(x);
    if (magnitude < 0x1p-13f) return tiny_result(x, "atanhf");
    if (__builtin_expect(!(magnitude < 1), false))
        return static_cast<float>(area_tangent(x, "atanhf"));
    double wide = magnitude;
    double result = 0.5 * logarithm_for_float<natural_logarithm>((1 + wide) / (1 - wide));
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
