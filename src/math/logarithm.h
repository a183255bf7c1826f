// Kernels of the logarithm functions.
//
// x = z 2^k with z in one of 128 cells, each with a number 1/c of 11 bits. z/c - 1 comes out
// exactly as a sum of two doubles, since the upper half of z times 1/c is exact. Then log x is k
// log 2 + log c + log(1 + r), with |r| < 0.005, where all first pieces add exactly.
#pragma once

#include "math/data/logarithm.h"
#include "math/pair.h"
#include "math/polynomial.h"

namespace vexrt {

struct LogarithmArgument {
    double z;
    int exponent;
    unsigned cell;
};

// Of a positive, finite, normal number.
inline LogarithmArgument logarithm_argument(double x) {
    uint32_t upper = upper_word(x);
    uint32_t offset = upper - log_first_upper_word;
    return {with_upper_word(x, upper - (offset & 0xFFF00000)), static_cast<int32_t>(offset) >> 20,
            offset >> 13 & 127};
}

// A subnormal number comes scaled by 2^52.
inline LogarithmArgument logarithm_argument_of_any(double x) {
    if (__builtin_expect(x >= least_normal<double>, true)) return logarithm_argument(x);
    LogarithmArgument argument = logarithm_argument(x * 0x1p52);
    argument.exponent -= 52;
    return argument;
}

// log c and k log 2, and z/c - 1 as a sum of two.
struct LogarithmParts {
    double high, low;
    double r, r_rest;
};

inline LogarithmParts logarithm_parts(const LogarithmBase &base, const LogarithmArgument &x) {
    const LogarithmCell &cell = base.cells[x.cell];
    double upper = leading_bits(x.z);
    double r_high = upper * cell.inverse - 1;
    double r_low = (x.z - upper) * cell.inverse;
    Pair r = sum_of_ordered(r_high, r_low); // exact: where r_high is the smaller, there is no rest
    return {x.exponent * base.two_high + cell.high, x.exponent * base.two_low + cell.low, r.high,
            r.low};
}

// The logarithm as a sum of two, with a relative error of about 2^-60.
inline Pair natural_logarithm_of(const LogarithmArgument &x) {
    LogarithmParts parts = logarithm_parts(natural_logarithm, x);
    double r = parts.r;
    Pair sum = sum_of_ordered(parts.high, r);
    double tail = r * r * (r * polynomial(log_tail, r) - 0.5);
    return {sum.high, sum.low + (parts.r_rest + parts.low + tail)};
}

inline Pair logarithm_of(const LogarithmBase &base, const LogarithmArgument &x) {
    LogarithmParts parts = logarithm_parts(base, x);
    double r = parts.r, r_high = leading_bits(r);
    Pair sum = sum_of_ordered(parts.high, r_high * base.scale_high);
    double tail = r * r * (r * polynomial(log_tail, r) - 0.5) + parts.r_rest;
    double rest = (r - r_high) * base.scale_high + r * base.scale_low;
    return {sum.high, sum.low + (rest + (parts.low + tail * (base.scale_high + base.scale_low)))};
}

// The natural logarithm with a relative error of about 2^-68.
inline Pair extended_logarithm(double x) {
    LogarithmParts parts = logarithm_parts(natural_logarithm, logarithm_argument_of_any(x));
    double r = parts.r, r_high = leading_bits(r), r_low = r - r_high;
    Pair sum = sum_of_ordered(parts.high, r);
    Pair square = sum_of_ordered(sum.high, -0.5 * r_high * r_high);
    double low = square.low + sum.low + parts.low + (parts.r_rest - r * parts.r_rest) -
                 0.5 * r_low * (r_high + r) + r * r * r * polynomial(log_tail_extended, r);
    return sum_of_ordered(square.high, low);
}

// The same of a sum.
inline Pair extended_logarithm(Pair x) {
    Pair result = extended_logarithm(x.high);
    return {result.high, result.low + x.low / x.high};
}

// log(1 + u) with all of u's bits.
inline Pair logarithm_of_successor(Pair u) {
    Pair sum = exact_sum(1, u.high);
    return extended_logarithm(sum_of_ordered(sum.high, sum.low + u.low));
}

// To the precision of double, u > -1.
inline double plain_logarithm_of_successor(double u) {
    Pair sum = exact_sum(1, u);
    Pair result = natural_logarithm_of(logarithm_argument(sum.high));
    return result.high + (result.low + sum.low / sum.high);
}

// To the precision of float, also near 1. The terms stand so that few wait for each other.
template <const LogarithmBase &base>
inline double logarithm_for_float(const LogarithmArgument &x) {
    const LogarithmCell &cell = base.cells[x.cell];
    constexpr double scale = base.scale_high + base.scale_low;
    constexpr double second = -0.5 * scale, third = log_tail_float[2] * scale,
                     fourth = log_tail_float[1] * scale, fifth = log_tail_float[0] * scale;
    double r = x.z * cell.inverse - 1, square = r * r;
    double whole = x.exponent * (base.two_high + base.two_low) + (cell.high + cell.low);
    return (whole + r * scale) + square * ((second + third * r) + square * (fourth + fifth * r));
}

template <const LogarithmBase &base>
inline double logarithm_for_float(double x) {
    return logarithm_for_float<base>(logarithm_argument(x));
}

// The same cells, found from the bits of a normal float. The lower three bits of the first word's
// place are 0 in every float.
template <const LogarithmBase &base>
inline double logarithm_for_float(float x) {
    constexpr uint32_t first = (log_first_upper_word - (1023u << 20)) * 8 + (127u << 23);
    uint32_t bits = bits_of(x), offset = bits - first;
    double z = from_bits<float>(bits - (offset & 0xFF800000));
    return logarithm_for_float<base>({z, static_cast<int32_t>(offset) >> 23, offset >> 16 & 127});
}

} // namespace vexrt
