// Hyperbolic cosine, sine, tangent.

#include "math/errors.h"
#include "math/exponential.h"
#include "math/primitives.h"

#include <math.h>

namespace vexrt {

namespace {

// Up to here e^-x counts; above, half of e^x is the result.
constexpr double both_parts_limit = 18;

// y e^magnitude / 2 with its error reported.
double half_exponential(double magnitude, double y, double x, const char *name) {
    double result = magnitude;
    ScaleStatus status = scaled_exponential(result, y, -1);
    if (status == scaled_exactly) return result;
    return report(status == scaled_to_infinity ? MathError::overflow : MathError::underflow, name,
                  x, result);
}

double half_exponential(double magnitude) {
    scaled_exponential(magnitude, 1, -1);
    return magnitude;
}

double hyperbolic_cosine(double x, double y, const char *name) {
    if (x == 0) return y;
    if (is_infinite(x)) return y * infinity;
    if (is_nan(x)) return x;
    if (y == 0) return y;
    double magnitude = absolute_value(x);
    if (magnitude > both_parts_limit) return half_exponential(magnitude, y, x, name);
    double t = half_exponential(magnitude);
    return (t + 0.25 / t) * y;
}

double hyperbolic_sine(double x, double y, const char *name) {
    if (x == 0 || y == 0 || is_nan(x)) return is_infinite(x) ? y : x * y;
    if (is_infinite(x)) return x * y;
    double magnitude = absolute_value(x);
    if (magnitude < 1) {
        if (magnitude < 0x1p-27) return y == 1 ? tiny_result(x, name) : x * y;
        double square = x * x;
        return (x + x * square * polynomial(sinh_tail, square)) * y;
    }
    if (magnitude > both_parts_limit)
        return half_exponential(magnitude, with_sign_of(1.0, x) * y, x, name);
    double t = half_exponential(magnitude);
    return with_sign_of(t - 0.25 / t, x) * y;
}

// A float's arguments beyond this overflow, and are well within the range of double.
constexpr float float_limit = 400;

double limited(float x) {
    return absolute_value(x) > float_limit && is_finite(x) ? with_sign_of(float_limit, x) : x;
}

float hyperbolic_cosine(float x, float y, const char *name) {
    if (is_nan(x) || is_infinite(x)) return is_nan(x) ? x + x : y * float_infinity;
    if (y == 0) return y;
    double power = exponential_for_float(limited(x));
    return narrow((power + 1 / power) * 0.5 * y, name, x);
}

float hyperbolic_sine(float x, float y, const char *name) {
    if (!is_finite(x) || x == 0 || y == 0) return is_infinite(x) && y == 0 ? y : x * y;
    double wide = limited(x);
    if (absolute_value(x) < 1) {
        double square = wide * wide;
        return narrow((wide + wide * square * polynomial(sinh_tail, square)) * y, name, x);
    }
    double power = exponential_for_float(wide);
    return narrow((power - 1 / power) * 0.5 * y, name, x);
}

// (e^2x - 1) / (e^2x + 1); at 22 it is 1 within rounding.
double hyperbolic_tangent(double x, const char *name) {
    double magnitude = absolute_value(x);
    if (magnitude < 0x1p-27) return tiny_result(x, name);
    if (is_nan(x)) return x + x;
    if (magnitude > 22) return with_sign_of(1.0, x);
    Pair power = exponential_minus_1(2 * magnitude);
    power = sum_of_ordered(power.high, power.low);
    Pair quotient = power / (power + 2);
    return with_sign_of(quotient.high + quotient.low, x);
}

float hyperbolic_tangent(float x) {
    float magnitude = absolute_value(x);
    if (magnitude < 0x1p-13f) return tiny_result(x, "tanhf");
    if (is_nan(x)) return x + x;
    double wide = 2 * (magnitude < 22 ? magnitude : 22);
    double power;
    if (wide < 0.25)
        power = wide + wide * wide * (0.5 + wide * polynomial(expm1_tail, wide));
    else
        power = exponential_for_float(wide) - 1;
    return static_cast<float>(with_sign_of(power / (power + 2), static_cast<double>(x)));
}

} // namespace

} // namespace vexrt

using namespace vexrt;

extern "C" {

double __cosh(double x, double y) { return hyperbolic_cosine(x, y, "cosh"); }
float __coshf(float x, float y) { return hyperbolic_cosine(x, y, "coshf"); }
long double __coshl(long double x, long double y) {
    return hyperbolic_cosine(double(x), double(y), "coshl");
}

double __sinh(double x, double y) { return hyperbolic_sine(x, y, "sinh"); }
float __sinhf(float x, float y) { return hyperbolic_sine(x, y, "sinhf"); }
long double __sinhl(long double x, long double y) {
    return hyperbolic_sine(double(x), double(y), "sinhl");
}

double cosh(double x) { return __cosh(x, 1); }
float coshf(float x) { return __coshf(x, 1); }
long double coshl(long double x) { return __coshl(x, 1); }

double sinh(double x) { return __sinh(x, 1); }
float sinhf(float x) { return __sinhf(x, 1); }
long double sinhl(long double x) { return __sinhl(x, 1); }

double tanh(double x) { return hyperbolic_tangent(x, "tanh"); }
float tanhf(float x) { return hyperbolic_tangent(x); }
long double tanhl(long double x) { return hyperbolic_tangent(double(x), "tanhl"); }

} // extern "C"
