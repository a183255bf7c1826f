// Inverse hyperbolic and trigonometric functions of complex numbers, by square roots that never
// cancel: with a + i b = sqrt(1 - z) and c + i d = sqrt(1 + z), where b and d have opposite signs,
//
//   acos z = 2 atan(a / c) + i asinh(c b - d a)
//   asin z = atan(x / (a c - b d)) + i asinh(a d - b c)
//
// acosh likewise from the roots of z - 1 and z + 1; asinh z = -i asin(i z), atan z = -i atanh(i z).
//
// The functions of double take the formulas in sums of two doubles, those of float in doubles.

#include "math/arctangent.h"
#include "math/complex_number.h"
#include "math/hypotenuse.h"
#include "math/logarithm.h"

#include <complex.h>

namespace vexrt {

namespace {

template <typename Number>
Number successor_of(double x);
template <>
inline Pair successor_of<Pair>(double x) {
    return exact_sum(1, x);
}
template <>
inline double successor_of<double>(double x) {
    return 1 + x;
}

// asinh of a number of either sign.
double signed_area_sine(Pair x) {
    return sign_of(x.high) ? -sum_of(area_sine_of(-x)) : sum_of(area_sine_of(x));
}

double signed_area_sine(double x) {
    double magnitude = absolute_value(x), square = x * x;
    double u = magnitude + square / (1 + square_root(1 + square));
    return with_sign_of(plain_logarithm_of_successor(u), x);
}

double angle_between(Pair y, Pair x) { return sum_of(angle_of(y, x)); }
double angle_between(double y, Pair x) { return angle_between(Pair{y, 0}, x); }
double angle_between(double y, double x) { return angle_of(y, x); }

// Of what has the size of floats: squares are in range.
Complex square_root_of(double real, double imaginary) {
    double x = absolute_value(real), y = absolute_value(imaginary);
    if (x == 0 && y == 0) return {0, imaginary};
    double t = square_root(0.5 * (x + square_root(x * x + y * y))), other = 0.5 * y / t;
    Complex root = sign_of(real) ? Complex{other, t} : Complex{t, other};
    return {root.real, with_sign_of(root.imaginary, imaginary)};
}

Complex with_signs_of(Complex magnitudes, Complex z) {
    return {with_sign_of(magnitudes.real, z.real), with_sign_of(magnitudes.imaginary, z.imaginary)};
}

constexpr double huge = 0x1p500;

bool is_huge(Complex z) {
    return absolute_value(z.real) > huge || absolute_value(z.imaginary) > huge;
}

// asinh of numbers whose squares overflow: log 2 |z|, and the angle.
Complex huge_area_sine(Complex z) {
    double size = hypotenuse(z.real * 0x1p-10, z.imaginary * 0x1p-10, "casinh");
    Pair logarithm = extended_logarithm(size) +
                     Pair{11 * natural_logarithm.two_high, 11 * natural_logarithm.two_low};
    return {with_sign_of(sum_of(logarithm), z.real), angle_of(z.imaginary, absolute_value(z.real))};
}

// asin z of a finite number that is not huge.
template <typename Number>
Complex finite_arcsine(Complex z) {
    auto [a, b] = square_root_of(successor_of<Number>(-z.real), -z.imaginary);
    auto [c, d] = square_root_of(successor_of<Number>(z.real), z.imaginary);
    double real = angle_between(z.real, a * c + -(b * d));
    return {real, signed_area_sine(a * d + -(b * c))};
}

// G.6.2.2.
[[gnu::cold, gnu::noinline]] Complex special_area_sine(Complex z) {
    auto [x, y] = z;
    if (is_infinite(x)) {
        if (is_nan(y)) return {x, y};
        double quarter = half_pi_high / 2;
        return {x, with_sign_of(is_infinite(y) ? quarter : 0.0, y)};
    }
    if (is_nan(x)) {
        if (is_infinite(y)) return {y, x};
        return {x, y == 0 ? y : x + y};
    }
    if (is_infinite(y)) return {with_sign_of(infinity, x), with_sign_of(half_pi_high, y)};
    return {y, y};
}

template <typename Number>
Complex area_sine(Complex z) {
    if (!is_finite(z)) return special_area_sine(z);
    if (is_huge(z)) return huge_area_sine(z);
    Complex result = times_minus_i(finite_arcsine<Number>(times_i(z)));
    return with_signs_of(result, z);
}

template <typename Number>
Complex arcsine(Complex z) {
    return times_minus_i(area_sine<Number>(times_i(z)));
}

// G.6.1.1.
[[gnu::cold, gnu::noinline]] Complex special_arccosine(Complex z) {
    auto [x, y] = z;
    if (is_infinite(y)) {
        double real = half_pi_high;
        if (is_nan(x)) real = x;
        if (is_infinite(x)) real = sign_of(x) ? whole_pi_high - half_pi_high / 2 : half_pi_high / 2;
        return {real, -y};
    }
    if (is_infinite(x)) {
        if (is_nan(y)) return {y, x};
        return {sign_of(x) ? whole_pi_high : 0, with_sign_of(infinity, -y)};
    }
    if (x == 0) return {half_pi_high, y};
    return {x + y, x + y};
}

template <typename Number>
Complex arccosine(Complex z) {
    if (!is_finite(z)) return special_arccosine(z);
    if (is_huge(z)) {
        Complex sine = huge_area_sine({absolute_value(z.imaginary), z.real});
        return {angle_of(absolute_value(z.imaginary), z.real),
                with_sign_of(sine.real, -z.imaginary)};
    }
    auto [a, b] = square_root_of(successor_of<Number>(-z.real), -z.imaginary);
    auto [c, d] = square_root_of(successor_of<Number>(z.real), z.imaginary);
    double imaginary = signed_area_sine(c * b + -(d * a));
    return {2 * angle_between(a, c), with_sign_of(imaginary, -z.imaginary)};
}

// acosh z is i acos z or -i acos z, the one whose real part is not negative.
template <typename Number>
Complex area_cosine(Complex z) {
    if (is_nan(z.real) && z.imaginary == 0) return {z.real, z.real};
    Complex angle = arccosine<Number>(z);
    if (is_nan(z.imaginary) && z.real == 0) return {z.imaginary, half_pi_high};
    double imaginary = with_sign_of(angle.real, z.imaginary);
    return {absolute_value(angle.imaginary), imaginary};
}

// G.6.2.3.
[[gnu::cold, gnu::noinline]] Complex special_area_tangent(Complex z) {
    auto [x, y] = z;
    if (is_infinite(y)) return {with_sign_of(0.0, x), with_sign_of(half_pi_high, y)};
    if (is_infinite(x))
        return {with_sign_of(0.0, x), is_nan(y) ? y : with_sign_of(half_pi_high, y)};
    if (is_nan(y) && x == 0) return z;
    return {x + y, x + y};
}

// Parts of 1 / z: where z is so large that atanh z is that and a quarter turn. Neither is negative.
Complex huge_area_tangent(double x, double y) {
    double scale = power_of_two(1024 - exponent_field(x > y ? x : y)), near = x * scale;
    Pair square = exact_product(near, near) + exact_product(y * scale, y * scale);
    return {near / sum_of(square) * scale, half_pi_high};
}

// log(1 + 4 x / ((1 - x)^2 + y^2)) / 4 + i atan(2 y / ((1 - x) (1 + x) - y^2)) / 2 for x >= 0.
Complex first_quadrant_area_tangent(double x, double y) {
    if (x == 1 && y < 0x1p-400) {
        if (y == 0) return {1 / y, y}; // raises
        Pair logarithm =
            Pair{natural_logarithm.two_high, natural_logarithm.two_low} + -extended_logarithm(y);
        return {0.5 * sum_of(logarithm), half_pi_high / 2};
    }
    Pair below = exact_sum(1, -x), above = exact_sum(1, x);
    Pair square = y < 0x1p-400 ? Pair{0, 0} : exact_product(y, y);
    double real = x;
    if (x >= 0x1p-400) {
        Pair ratio = Pair{4 * x, 0} / (below * below + square);
        real = 0.25 * sum_of(logarithm_of_successor(ratio));
    } else if (x > 0 && y > 0) {
        real = x / (1 + y * y);
    }
    double imaginary = 0.5 * angle_between({2 * y, 0}, below * above + -square);
    return {real, imaginary};
}

// The same of floats, up to their greatest.
Complex area_tangent_of_float(double x, double y) {
    if (x == 1 && y == 0) return {1 / y, y}; // raises
    double below = 1 - x, square = y * y;
    double real = 0.25 * plain_logarithm_of_successor(4 * x / (below * below + square));
    return {real, 0.5 * angle_between(2 * y, below * (1 + x) - square)};
}

template <typename Number>
Complex area_tangent(Complex z);

template <>
Complex area_tangent<double>(Complex z) {
    if (!is_finite(z)) return special_area_tangent(z);
    return with_signs_of(area_tangent_of_float(absolute_value(z.real), absolute_value(z.imaginary)),
                         z);
}

template <>
Complex area_tangent<Pair>(Complex z) {
    if (!is_finite(z)) return special_area_tangent(z);
    double x = absolute_value(z.real), y = absolute_value(z.imaginary);
    bool far = x > 0x1p60 || y > 0x1p60;
    Complex result = far ? huge_area_tangent(x, y) : first_quadrant_area_tangent(x, y);
    return with_signs_of(result, z);
}

template <typename Number>
Complex arctangent(Complex z) {
    return times_minus_i(area_tangent<Number>(times_i(z)));
}

} // namespace

} // namespace vexrt

using namespace vexrt;

VEXRT_COMPLEX_FUNCTION_OF_TWO_WORKERS(casinh, area_sine<Pair>, area_sine<double>)
VEXRT_COMPLEX_FUNCTION_OF_TWO_WORKERS(cacosh, area_cosine<Pair>, area_cosine<double>)
VEXRT_COMPLEX_FUNCTION_OF_TWO_WORKERS(catanh, area_tangent<Pair>, area_tangent<double>)
VEXRT_COMPLEX_FUNCTION_OF_TWO_WORKERS(casin, arcsine<Pair>, arcsine<double>)
VEXRT_COMPLEX_FUNCTION_OF_TWO_WORKERS(cacos, arccosine<Pair>, arccosine<double>)
VEXRT_COMPLEX_FUNCTION_OF_TWO_WORKERS(catan, arctangent<Pair>, arctangent<double>)
