// The error function and its complement, by polynomials; the complement of more than 1 as e^(-x^2)
// / x times a function that hardly changes.

#include "math/data/error_function.h"
#include "math/compose.h"
#include "math/errors.h"
#include "math/exponential.h"
#include "math/pieces.h"

#include <math.h>

namespace vexrt {

namespace {

constexpr double erf_is_1 = 6, erfc_vanishes = 28;
constexpr Pair two_over_root_pi = {two_over_root_pi_high, two_over_root_pi_low};

// Of a magnitude below 6.
Pair positive_erf(double x) {
    if (x >= 0.25) return value_of_pieces(erf_pieces, x - 0.25, 4);
    double square = x * x;
    Pair linear = two_over_root_pi * x;
    return {linear.high, linear.low + x * square * polynomial(erf_tail, square)};
}

double error_function(double x, const char *name) {
    double magnitude = absolute_value(x);
    if (magnitude < 0x1p-30) {
        if (x == 0) return x;
        Pair scaled = two_over_root_pi * (x * 0x1p200);
        return finish(scaled, -200, {name, x, x});
    }
    if (!(magnitude < erf_is_1)) return is_nan(x) ? x + x : with_sign_of(1.0, x);
    Pair value = positive_erf(magnitude);
    return with_sign_of(value.high + value.low, x);
}

// From 1 to 28.
double vanishing_complement(double x, const Call &call) {
    Pair square = exact_product(x, x);
    Exponential e = table_exponential(-square.high, -square.low);
    Pair regular = value_of_pieces(scaled_erfc_pieces, 1 / x, 16);
    Pair factor = sum_of_ordered(regular.high, regular.low) / Pair{x, 0};
    return finish(pair_of(e) * factor, e.exponent, call);
}

double complement(double x, const char *name) {
    if (x < 0.25) {
        if (x <= -erf_is_1) return 2;
        double magnitude = absolute_value(x);
        if (magnitude < 0x1p-60) return 1;
        Pair value = positive_erf(magnitude);
        if (x > 0) value = -value;
        Pair sum = sum_of_ordered(1, value.high);
        return sum.high + (sum.low + value.low);
    }
    if (x < 1) {
        Pair value = value_of_pieces(erfc_pieces, x - 0.25, 4);
        return value.high + value.low;
    }
    Call call = {name, x, x};
    if (x < erfc_vanishes) return vanishing_complement(x, call);
    if (!is_finite(x)) return is_nan(x) ? x + x : 0;
    return report(MathError::underflow, call, 0);
}

// ---- float ----

// From here on a float's error function rounds to 1. Where the complement is less than half of the
// least float it vanishes.
constexpr double float_erf_is_1 = 4, float_erfc_vanishes = 12;

// Of a magnitude below 4, to the precision of float.
double plain_erf(double x) {
    double magnitude = absolute_value(x), square = x * x;
    if (magnitude < 0.25)
        return x * (two_over_root_pi_high + square * polynomial(erf_tail, square));
    return with_sign_of(plain_value_of_pieces<10>(erf_pieces, magnitude - 0.25, 4), x);
}

float error_function(float x) {
    if (!(absolute_value(x) < float_erf_is_1)) return is_nan(x) ? x + x : with_sign_of(1.0f, x);
    return narrow(plain_erf(x), "erff", x);
}

float complement(float x) {
    double wide = x;
    if (wide < 0.25) return wide <= -float_erf_is_1 ? 2 : static_cast<float>(1 - plain_erf(wide));
    if (wide < 1) return static_cast<float>(plain_value_of_pieces<10>(erfc_pieces, wide - 0.25, 4));
    if (!(wide < float_erfc_vanishes)) {
        if (!is_finite(x)) return is_nan(x) ? x + x : 0;
        return static_cast<float>(report(MathError::underflow, "erfcf", x, 0));
    }
    double inverse = 1 / wide;
    double regular = plain_value_of_pieces<9>(scaled_erfc_pieces, inverse, 16);
    return narrow(exponential_for_float(-(wide * wide)) * regular * inverse, "erfcf", x);
}

} // namespace

} // namespace vexrt

using namespace vexrt;

extern "C" {

double erf(double x) { return error_function(x, "erf"); }
float erff(float x) { return error_function(x); }
long double erfl(long double x) { return error_function(double(x), "erfl"); }

double erfc(double x) { return complement(x, "erfc"); }
float erfcf(float x) { return complement(x); }
long double erfcl(long double x) { return complement(double(x), "erfcl"); }

} // extern "C"
