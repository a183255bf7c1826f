// Complex numbers as the kernels see them. All complex functions compute in double, many of them
// with sums of two doubles; those of float round the parts at the end.
//
// Flags come from the arithmetic: complex functions neither set errno nor call the hook, which
// knows no complex arguments.
#pragma once

#include "math/arctangent.h"
#include "math/exponential.h"
#include "math/pair.h"
#include "math/trigonometric.h"

namespace vexrt {

struct Complex {
    double real, imaginary;
};

struct ComplexPair {
    Pair real, imaginary;
};

inline Complex times_i(Complex z) { return {-z.imaginary, z.real}; }
inline Complex times_minus_i(Complex z) { return {z.imaginary, -z.real}; }

inline bool is_finite(Complex z) { return is_finite(z.real) && is_finite(z.imaginary); }
inline bool is_infinite(Complex z) { return is_infinite(z.real) || is_infinite(z.imaginary); }

inline double sum_of(Pair x) { return x.high + x.low; }
inline Complex sum_of(const ComplexPair &z) { return {sum_of(z.real), sum_of(z.imaginary)}; }

inline Pair scaled_by(Pair value, double factor) {
    return {value.high * factor, value.low * factor};
}

// Past +-this e^x and all its products with numbers in range over- or underflow.
constexpr double exponent_limit = 1500;

// value 2^power for |power| < 3000, by multiplications that raise what is due.
inline double scaled(Pair value, int power) {
    int third = power / 3;
    double factor = power_of_two(third);
    return sum_of(value) * factor * factor * power_of_two(power - 2 * third);
}

// Takes 2^-600 out of a factor so small that an exact product with it might vanish.
inline int take_power_out(Pair &factor) {
    if (__builtin_expect(absolute_value(factor.high) >= 0x1p-400, true)) return 0;
    factor = scaled_by(factor, 0x1p600);
    return -600;
}

// a b 2^power, |power| < 2200.
inline double scaled_product(Pair a, Pair b, int power) {
    power += take_power_out(a) + take_power_out(b);
    if (power == 0) return sum_of(a * b);
    return scaled(a * b, power > -3000 ? power : -3000);
}

// y / x where the division's exact products may vanish, or overflow.
inline Pair extreme_quotient(Pair y, Pair x) {
    double size = absolute_value(y.high);
    if (size >= 0x1p-300 && size < 0x1p900) return y / x;
    double factor = size < 1 ? 0x1p600 : 0x1p-600;
    return scaled_by(scaled_by(y, factor) / x, 1 / factor);
}

// The angle of a point, also of one whose coordinates are sums. A small one is a quotient, and
// raises what a division raises.
inline double angle_of(double y, double x) {
    if (x > 0 && absolute_value(y) < x * 0x1p-30) return y / x;
    return arctangent(y, x, "carg");
}

Pair angle_of(Pair y, Pair x);

struct SineAndCosine {
    Pair sine, cosine;
};

// Of x + low, finite.
SineAndCosine sine_and_cosine(double x, double low = 0);

// asinh of a sum that is not negative, below 2^900.
Pair area_sine_of(Pair x);

// By the formula, with the infinities of Annex G.
Complex product(Complex x, Complex y);

// The principal root of a number whose real part is a sum; finite.
ComplexPair square_root_of(Pair real, double imaginary);

// ---- the boundary ----

// Number is one of the compiler's complex types.
template <typename Number>
inline Complex from_foreign(Number z) {
    return {static_cast<double>(__real__ z), static_cast<double>(__imag__ z)};
}

template <typename Number>
inline Number to_foreign(Complex z) {
    Number result;
    __real__ result = static_cast<decltype(__real__ result + 0)>(z.real);
    __imag__ result = static_cast<decltype(__real__ result + 0)>(z.imaginary);
    return result;
}

// A function of one complex argument in its three precisions. Only the first calls the worker,
// which is compiled into it and stores the parts where the caller wants them: a pair that is copied
// at once waits for both stores. The form of float has a worker of its own that rounds less in less
// time, or the same.
#define VEXRT_COMPLEX_FUNCTION_OF_TWO_WORKERS(name, worker, float_worker)                          \
    extern "C" double _Complex name(double _Complex z) {                                           \
        return to_foreign<double _Complex>(worker(from_foreign(z)));                               \
    }                                                                                              \
    extern "C" float _Complex name##f(float _Complex z) {                                          \
        return to_foreign<float _Complex>(float_worker(from_foreign(z)));                          \
    }                                                                                              \
    extern "C" long double _Complex name##l(long double _Complex z) {                              \
        double _Complex wide = to_foreign<double _Complex>(from_foreign(z));                       \
        return to_foreign<long double _Complex>(from_foreign(name(wide)));                         \
    }

#define VEXRT_COMPLEX_FUNCTION(name, worker)                                                       \
    VEXRT_COMPLEX_FUNCTION_OF_TWO_WORKERS(name, worker, [](Complex z) {                            \
        return from_foreign(name(to_foreign<double _Complex>(z)));                                 \
    })

// What the float forms compute with: sine and cosine, and e^x, in double. The parts are floats.
struct Direction {
    double sine, cosine;
};

inline Direction direction_of_float(double angle) {
    auto narrow = static_cast<float>(angle);
    if (absolute_value(narrow) < 0x1p-30f) return {angle, 1};
    Reduced reduced = reduce(narrow);
    return {sine_for_float(reduced.high, reduced.step),
            sine_for_float(reduced.high, reduced.step + quarter_turn)};
}

// Whether the parts are finite and e to the real one is a float in the normal range.
inline bool is_plain_float_exponent(Complex z) {
    return absolute_value(z.real) < 80 && is_finite(z.imaginary);
}

} // namespace vexrt
