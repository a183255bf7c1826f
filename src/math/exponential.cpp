// e^x, 2^x, e^x - 1.

#include "math/exponential.h"

#include "math/compose.h"
#include "math/errors.h"
#include "math/primitives.h"

#include <math.h>

namespace vexrt {

namespace {

[[gnu::cold]] double extreme_exponential(double x, double result, ScaleStatus status,
                                         const char *name) {
    if (!is_finite(x)) return is_infinite(x) && sign_of(x) ? 0 : x + x;
    bool overflow = status == scaled_to_infinity;
    return report(overflow ? MathError::overflow : MathError::underflow, name, x, result);
}

double exponential(double x, const char *name) {
    double result = x;
    ScaleStatus status = scaled_exponential(result, 1, 0);
    if (__builtin_expect(status != scaled_exactly || is_nan(x), false))
        return extreme_exponential(x, result, status, name);
    return result;
}

// Up to the first limits a float's exponential is in the normal range; beyond the second it is 0 or
// infinite, well inside the range of double.
constexpr float float_plain = 87, float_plain_binary = 125;
constexpr float float_limit = 110, float_limit_binary = 160;

[[gnu::cold]] float extreme_exponential(float x, const char *name) {
    if (is_nan(x)) return x + x;
    if (is_infinite(x)) return sign_of(x) ? 0 : x;
    return narrow(sign_of(x) ? 0x1p-200 : 0x1p200, name, x);
}

double power_of_two(double x, const char *name) {
    double limited = x;
    if (!(absolute_value(x) < 1100)) {
        if (!is_finite(x)) return is_infinite(x) && sign_of(x) ? 0 : x + x;
        limited = with_sign_of(1099.0, x);
    }
    if (absolute_value(x) < 0x1p-60) return 1 + x; // squares would vanish
    Exponential e = table_power_of_two(limited);
    if (__builtin_expect(is_plain(e), true)) return plain_value_of(e);
    return finish(pair_of(e), e.exponent, {name, x, x});
}

double less_one(double x, const char *name) {
    double magnitude = absolute_value(x);
    if (magnitude < 0x1p-54) return tiny_result(x, name);
    if (magnitude < 40) {
        Pair value = exponential_minus_1(x);
        return value.high + value.low;
    }
    if (is_nan(x)) return x + x;
    if (x < 0) return -1;
    if (is_infinite(x)) return x;
    Exponential e = table_exponential(magnitude < 800 ? x : 800, 0);
    return finish(pair_of(e), e.exponent, {name, x, x});
}

float less_one(float x) {
    float magnitude = absolute_value(x);
    if (magnitude < 0x1p-26f) return tiny_result(x, "expm1f");
    if (!(magnitude < float_limit))
        return !is_nan(x) && sign_of(x) ? -1 : extreme_exponential(x, "expm1f");
    if (magnitude < 0.25f) {
        double wide = x;
        return static_cast<float>(wide + wide * wide * (0.5 + wide * polynomial(expm1_tail, wide)));
    }
    return narrow(exponential_for_float(x) - 1, "expm1f", x);
}

} // namespace

ScaleStatus scaled_exponential(float &x, float y, int k) {
    double value = x;
    ScaleStatus status = scaled_exponential(value, y, k);
    if (!is_finite(value)) {
        x = static_cast<float>(value);
        return status;
    }
    // Halfway cases apart, what is beyond the greatest float is an infinity.
    if (absolute_value(value) >= 0x1.ffffffp127) {
        x = static_cast<float>(with_sign_of(infinity, value));
        return scaled_to_infinity;
    }
    double shift = absolute_value(value) < least_normal<float> ? with_sign_of(0x1.8p-97, value) : 0;
    x = static_cast<float>(with_sign_of((value + shift) - shift, value));
    if (x == 0 && y != 0) return scaled_to_zero;
    return is_subnormal(x) ? scaled_subnormal : scaled_exactly;
}

} // namespace vexrt

using namespace vexrt;

extern "C" {

double exp(double x) { return exponential(x, "exp"); }
long double expl(long double x) { return exponential(x, "expl"); }
float expf(float x) {
    if (__builtin_expect(absolute_value(x) < float_plain, true))
        return static_cast<float>(exponential_for_float(x));
    if (!(absolute_value(x) < float_limit)) return extreme_exponential(x, "expf");
    return narrow(exponential_for_float(x), "expf", x);
}

double exp2(double x) { return power_of_two(x, "exp2"); }
long double exp2l(long double x) { return power_of_two(x, "exp2l"); }
float exp2f(float x) {
    if (__builtin_expect(absolute_value(x) < float_plain_binary, true))
        return static_cast<float>(power_of_two_for_float(x));
    if (!(absolute_value(x) < float_limit_binary)) return extreme_exponential(x, "exp2f");
    return narrow(power_of_two_for_float(x), "exp2f", x);
}

double expm1(double x) { return less_one(x, "expm1"); }
long double expm1l(long double x) { return less_one(x, "expm1l"); }
float expm1f(float x) { return less_one(x); }

int __exp(double *x, double y, int k) { return scaled_exponential(*x, y, k); }
int __expl(long double *x, long double y, int k) {
    double value = *x;
    ScaleStatus status = scaled_exponential(value, static_cast<double>(y), k);
    *x = value;
    return status;
}
int __expf(float *x, float y, int k) { return scaled_exponential(*x, y, k); }

} // extern "C"
