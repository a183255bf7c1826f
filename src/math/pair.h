// Numbers as sums of two doubles, for what must be closer than one. There is no fused
// multiply-add: products are made exact by splitting factors.
#pragma once

#include "math/bits.h"

namespace vexrt {

struct Pair {
    double high, low;
};

// a + b, exactly, if |a| >= |b| or a is 0.
inline Pair sum_of_ordered(double a, double b) {
    double sum = a + b;
    return {sum, (a - sum) + b};
}

// a + b, exactly.
inline Pair exact_sum(double a, double b) {
    double sum = a + b;
    double part = sum - a;
    return {sum, (a - (sum - part)) + (b - part)};
}

// A factor in two pieces of at most 26 bits.
inline Pair halves(double value) {
    double scaled = value * 0x1.0000002p27; // 2^27 + 1
    double high = scaled - (scaled - value);
    return {high, value - high};
}

// a b, exactly, if neither the product nor a 2^27 overflows and a b is above 2^-960.
inline Pair exact_product(double a, double b) {
    Pair x = halves(a), y = halves(b);
    double product = a * b;
    return {product,
            ((x.high * y.high - product) + x.high * y.low + x.low * y.high) + x.low * y.low};
}

// a^2 within 2^-70, without rounding in the first part.
inline Pair square_of(double a) {
    double high = leading_bits(a);
    return {high * high, (a + high) * (a - high)};
}

// (a b) with a relative error of about 2^-100.
inline Pair operator*(Pair a, double b) {
    Pair product = exact_product(a.high, b);
    return sum_of_ordered(product.high, product.low + a.low * b);
}

inline Pair operator*(Pair a, Pair b) {
    Pair product = exact_product(a.high, b.high);
    return sum_of_ordered(product.high, product.low + (a.high * b.low + a.low * b.high));
}

inline Pair operator+(Pair a, Pair b) {
    Pair sum = exact_sum(a.high, b.high);
    return sum_of_ordered(sum.high, sum.low + (a.low + b.low));
}

inline Pair operator+(Pair a, double b) {
    Pair sum = exact_sum(a.high, b);
    return sum_of_ordered(sum.high, sum.low + a.low);
}

inline Pair operator-(Pair a) { return {-a.high, -a.low}; }

inline Pair operator/(Pair a, Pair b) {
    double quotient = a.high / b.high;
    Pair product = exact_product(quotient, b.high);
    double rest = ((a.high - product.high) - product.low) + (a.low - quotient * b.low);
    return sum_of_ordered(quotient, rest / b.high);
}

inline double square_root(double x) { return __builtin_elementwise_sqrt(x); }

// The root of a + b for a positive sum.
inline Pair square_root(Pair value) {
    double root = square_root(value.high);
    Pair square = exact_product(root, root);
    double rest = ((value.high - square.high) - square.low) + value.low;
    return sum_of_ordered(root, rest / (2 * root));
}

} // namespace vexrt
