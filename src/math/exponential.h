// Kernels of the exponential functions.
//
// Two ways lead to e^x. The scaled exponential divides two short polynomials and cuts off what
// falls below the normal range: exp, cosh and sinh are defined by it. All others take 2^(i/128)
// from a table, which leaves |r| < 0.003 for a polynomial, and are within little more than half a
// unit in the last place.
#pragma once

#include "math/data/exponential.h"
#include "math/pair.h"
#include "math/polynomial.h"
#include "math/scale.h"

namespace vexrt {

// Adding 1.5 2^52 rounds to an integer, which stands in the lower word. In other directions than to
// nearest it may be the next integer; reductions leave room for that.
constexpr double integer_shift = 0x1.8p52;

struct NearInteger {
    double value;
    int integer;
};

inline NearInteger near_integer(double x) {
    double shifted = x + integer_shift;
    return {shifted - integer_shift, static_cast<int>(bits_of(shifted))};
}

// y e^x 2^k in place of x, for |x| up to 1842 by the quotient of polynomials.
inline ScaleStatus scaled_exponential(double &x, double y, int k) {
    if (x <= -1842) {
        x = 0;
        return scaled_to_zero;
    }
    if (x > 1842) {
        x = infinity * y;
        return scaled_to_infinity;
    }
    constexpr double negligible = 5.551115123125783e-17; // beside 1
    if (__builtin_expect(!(absolute_value(x) >= negligible), false)) {
        if (is_nan(x)) return scaled_exactly;
        x = y;
        return scale_truncating(x, k);
    }
    double multiple = x * 1.4426950408889634;
    int g = truncated_integer(multiple < 0 ? multiple - 0.5 : multiple + 0.5);
    double r = (x - g * 0.6931470632553101) - g * 1.1730463525082348e-7;
    double mantissa = y;
    if (absolute_value(r) >= negligible) {
        static constexpr double odd[] = {3.304120783105597e-5, 0.01388723295391838, 0.5};
        static constexpr double even[] = {0.0009917323526335046, 0.11110779924116565, 1};
        double square = r * r;
        double p = polynomial(odd, square) * r;
        double q = polynomial(even, square);
        mantissa = (q + p) / (q - p) * y;
    }
    x = mantissa;
    // The common case of scale_truncating.
    int field = exponent_field(mantissa), scaled = field + g + k;
    bool normal = field > 0 && field < 0x7FF && scaled > 0 && scaled < 0x7FF;
    if (__builtin_expect(normal, true)) {
        x = with_upper_word(mantissa, upper_word(mantissa) + (static_cast<uint32_t>(g + k) << 20));
        return scaled_exactly;
    }
    return scale_truncating(x, g + k);
}

// e^x = power (1 + rest) 2^exponent.
struct Exponential {
    double power, rest;
    int exponent;
};

inline Exponential exponential_of_rest(double r, int steps) {
    const ExponentialEntry &entry = exponential_table[steps & 127];
    double rest = entry.rest + (r + r * r * polynomial(exp_tail, r));
    return {entry.power, rest, steps >> 7};
}

// Of x + low, |x| <= 1500, |low| < ulp(x).
inline Exponential table_exponential(double x, double low) {
    auto [multiple, steps] = near_integer(x * exp_steps_per_unit);
    double r = (x - multiple * exp_step_high) - multiple * exp_step_low;
    return exponential_of_rest(r + low, steps);
}

// 2^x, |x| < 1100.
inline Exponential table_power_of_two(double x) {
    auto [multiple, steps] = near_integer(x * 128);
    double r = x - multiple * 0x1p-7; // exact
    return exponential_of_rest(r * 0x1.62e42fefa39efp-1, steps);
}

inline Pair pair_of(const Exponential &e) { return {e.power, e.power * e.rest}; }

constexpr double scaled_power(double power, int exponent) {
    return with_upper_word(power, upper_word(power) + (static_cast<uint32_t>(exponent) << 20));
}

// Whether the value, and its product with the rest, are in the normal range for certain.
constexpr bool is_plain(const Exponential &e) {
    return static_cast<unsigned>(e.exponent + 900) <= 1900;
}

inline double plain_value_of(const Exponential &e) {
    double power = scaled_power(e.power, e.exponent);
    return power + power * e.rest;
}

// To the precision of float, |x| < 700.
inline double exponential_of_float_rest(double r, int steps) {
    double power = scaled_power(exponential_table[steps & 127].power, steps >> 7);
    return power + power * (r + r * r * polynomial(exp_tail_float, r));
}

inline double exponential_for_float(double x) {
    auto [multiple, steps] = near_integer(x * exp_steps_per_unit);
    return exponential_of_float_rest(x - multiple * (exp_step_high + exp_step_low), steps);
}

inline double power_of_two_for_float(double x) {
    auto [multiple, steps] = near_integer(x * 128);
    return exponential_of_float_rest((x - multiple * 0x1p-7) * 0x1.62e42fefa39efp-1, steps);
}

// e^x - 1 as a sum of two, for |x| from 2^-54 to 40.
inline Pair exponential_minus_1(double x) {
    if (absolute_value(x) < 0.25) {
        double rest = x * x * (0.5 + x * polynomial(expm1_tail, x));
        return sum_of_ordered(x, rest);
    }
    Exponential e = table_exponential(x, 0);
    double power = e.power * power_of_two(e.exponent);
    Pair sum = exact_sum(power, -1);
    return {sum.high, sum.low + power * e.rest};
}

} // namespace vexrt
