// Complex hyperbolic functions, and through them the trigonometric ones: sin z = -i sinh(i z).
//
//   sinh(x + i y) = sinh x cos y + i cosh x sin y
//   cosh(x + i y) = cosh x cos y + i sinh x sin y
//   tanh(x + i y) = (sinh x cosh x + i sin y cos y) / (sinh^2 x + cos^2 y)

#include "math/complex_number.h"

#include <complex.h>

namespace vexrt {

namespace {

// From here on sinh x and cosh x are both half of e^x.
constexpr double large = 40;

// sinh x and cosh x of a magnitude; with their common power of two.
struct SineAndCosineHyperbolic {
    Pair sine, cosine;
    int exponent;
};

SineAndCosineHyperbolic hyperbolic(double magnitude) {
    if (magnitude < 0x1p-27) return {{magnitude, 0}, {1, 0}, 0};
    if (magnitude >= large) {
        Exponential e =
            table_exponential(magnitude < exponent_limit ? magnitude : exponent_limit, 0);
        return {pair_of(e), pair_of(e), e.exponent - 1};
    }
    Pair less_one = exponential_minus_1(magnitude);
    less_one = sum_of_ordered(less_one.high, less_one.low);
    Pair rest = less_one / (less_one + 1); // 1 - e^-x
    Pair sine = less_one + rest, difference = less_one + -rest;
    return {{0.5 * sine.high, 0.5 * sine.low},
            Pair{0.5 * difference.high, 0.5 * difference.low} + 1,
            0};
}

// Parts that are infinite or no numbers, and zeros beside them (G.6.2.5).
[[gnu::cold, gnu::noinline]] Complex special_sine(Complex z) {
    auto [x, y] = z;
    if (is_infinite(x) && is_finite(y)) {
        if (y == 0) return z;
        SineAndCosine direction = sine_and_cosine(y);
        return {with_sign_of(x, sign_of(x) ? -direction.cosine.high : direction.cosine.high),
                with_sign_of(infinity, direction.sine.high)};
    }
    if (is_infinite(x)) return {x, y - y};
    if (x == 0) return {x, y - y};
    if (is_nan(x)) return {x, y == 0 ? y : x + (y - y)};
    return {y - y, y - y};
}

// G.6.2.4.
[[gnu::cold, gnu::noinline]] Complex special_cosine(Complex z) {
    auto [x, y] = z;
    if (is_infinite(x) && is_finite(y)) {
        if (y == 0) return {infinity, sign_of(x) ? -y : y};
        SineAndCosine direction = sine_and_cosine(y);
        double sine = sign_of(x) ? -direction.sine.high : direction.sine.high;
        return {with_sign_of(infinity, direction.cosine.high), with_sign_of(infinity, sine)};
    }
    if (is_infinite(x)) return {infinity, y - y};
    if (x == 0) return {y - y, x};
    if (is_nan(x)) return {x, y == 0 ? y : x + (y - y)};
    return {y - y, y - y};
}

// G.6.2.6.
[[gnu::cold, gnu::noinline]] Complex special_tangent(Complex z) {
    auto [x, y] = z;
    if (is_infinite(x)) {
        double sign = 1;
        if (is_finite(y) && y != 0) {
            SineAndCosine direction = sine_and_cosine(y);
            sign = direction.sine.high * direction.cosine.high;
        } else if (y == 0) {
            sign = y;
        }
        return {with_sign_of(1.0, x), with_sign_of(0.0, sign)};
    }
    if (is_nan(x)) return {x, y == 0 ? y : x + (y - y)};
    return {x == 0 ? x : y - y, y - y};
}

Complex hyperbolic_sine(Complex z) {
    if (__builtin_expect(!is_finite(z), false)) return special_sine(z);
    auto [sine, cosine, exponent] = hyperbolic(absolute_value(z.real));
    SineAndCosine direction = sine_and_cosine(z.imaginary);
    double real = z.real == 0 ? 0 : scaled_product(sine, direction.cosine, exponent);
    double imaginary =
        z.imaginary == 0 ? z.imaginary : scaled_product(cosine, direction.sine, exponent);
    if (z.real == 0) real = with_sign_of(0.0, direction.cosine.high);
    return {sign_of(z.real) ? -real : real, imaginary};
}

Complex hyperbolic_cosine(Complex z) {
    if (__builtin_expect(!is_finite(z), false)) return special_cosine(z);
    auto [sine, cosine, exponent] = hyperbolic(absolute_value(z.real));
    SineAndCosine direction = sine_and_cosine(z.imaginary);
    bool zero = z.real == 0 || z.imaginary == 0;
    double imaginary = zero ? with_sign_of(0.0, direction.sine.high)
                            : scaled_product(sine, direction.sine, exponent);
    return {scaled_product(cosine, direction.cosine, exponent),
            sign_of(z.real) ? -imaginary : imaginary};
}

Complex hyperbolic_tangent(Complex z) {
    if (__builtin_expect(!is_finite(z), false)) return special_tangent(z);
    double magnitude = absolute_value(z.real);
    SineAndCosine direction = sine_and_cosine(z.imaginary);
    Pair turn = direction.sine * direction.cosine;
    if (magnitude > large) { // 4 sin y cos y e^(-2 x)
        constexpr double limit = exponent_limit / 2;
        Exponential e = table_exponential(-2 * (magnitude < limit ? magnitude : limit), 0);
        double imaginary =
            z.imaginary == 0 ? z.imaginary : scaled_product(turn, pair_of(e), e.exponent + 2);
        return {with_sign_of(1.0, z.real), imaginary};
    }
    auto [sine, cosine, exponent] = hyperbolic(magnitude);
    Pair denominator = sine * sine + direction.cosine * direction.cosine;
    double real = z.real == 0 ? 0 : sum_of(sine * cosine / denominator);
    double imaginary = sum_of(turn / denominator);
    double sign = direction.sine.high * direction.cosine.high;
    return {with_sign_of(real, z.real), with_sign_of(imaginary, sign)};
}

// The same for parts that are floats, in double.
struct FloatHyperbolic {
    double sine, cosine;
};

FloatHyperbolic float_hyperbolic(double x) {
    double power = exponential_for_float(x), inverse = 1 / power, square = x * x;
    double sine = absolute_value(x) < 1 ? x + x * square * polynomial(sinh_tail, square)
                                        : 0.5 * (power - inverse);
    return {sine, 0.5 * (power + inverse)};
}

// Zeros keep their signs, which products of zeros give them.
Complex float_hyperbolic_sine(Complex z) {
    if (__builtin_expect(!is_plain_float_exponent(z), false)) return hyperbolic_sine(z);
    FloatHyperbolic x = float_hyperbolic(z.real);
    Direction y = direction_of_float(z.imaginary);
    return {x.sine * y.cosine, x.cosine * y.sine};
}

Complex float_hyperbolic_cosine(Complex z) {
    if (__builtin_expect(!is_plain_float_exponent(z), false)) return hyperbolic_cosine(z);
    FloatHyperbolic x = float_hyperbolic(z.real);
    Direction y = direction_of_float(z.imaginary);
    return {x.cosine * y.cosine, x.sine * y.sine};
}

Complex float_hyperbolic_tangent(Complex z) {
    if (__builtin_expect(!is_plain_float_exponent(z), false)) return hyperbolic_tangent(z);
    FloatHyperbolic x = float_hyperbolic(z.real);
    Direction y = direction_of_float(z.imaginary);
    double size = x.sine * x.sine + y.cosine * y.cosine;
    return {x.sine * x.cosine / size, y.sine * y.cosine / size};
}

Complex sine(Complex z) { return times_minus_i(hyperbolic_sine(times_i(z))); }
Complex cosine(Complex z) { return hyperbolic_cosine(times_i(z)); }
Complex tangent(Complex z) { return times_minus_i(hyperbolic_tangent(times_i(z))); }
Complex float_sine(Complex z) { return times_minus_i(float_hyperbolic_sine(times_i(z))); }
Complex float_cosine(Complex z) { return float_hyperbolic_cosine(times_i(z)); }
Complex float_tangent(Complex z) { return times_minus_i(float_hyperbolic_tangent(times_i(z))); }

} // namespace

} // namespace vexrt

using namespace vexrt;

VEXRT_COMPLEX_FUNCTION_OF_TWO_WORKERS(csinh, hyperbolic_sine, float_hyperbolic_sine)
VEXRT_COMPLEX_FUNCTION_OF_TWO_WORKERS(ccosh, hyperbolic_cosine, float_hyperbolic_cosine)
VEXRT_COMPLEX_FUNCTION_OF_TWO_WORKERS(ctanh, hyperbolic_tangent, float_hyperbolic_tangent)
VEXRT_COMPLEX_FUNCTION_OF_TWO_WORKERS(csin, sine, float_sine)
VEXRT_COMPLEX_FUNCTION_OF_TWO_WORKERS(ccos, cosine, float_cosine)
VEXRT_COMPLEX_FUNCTION_OF_TWO_WORKERS(ctan, tangent, float_tangent)
