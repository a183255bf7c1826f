// The parts of complex numbers, and their multiplication and division, which compilers call.

#include "math/arctangent.h"
#include "math/complex_number.h"
#include "math/errors.h"
#include "math/hypotenuse.h"

#include <complex.h>

namespace vexrt {

namespace {

Complex conjugate(Complex z) { return {z.real, -z.imaginary}; }

// All infinities are one.
Complex projection(Complex z) {
    return is_infinite(z) ? Complex{infinity, with_sign_of(0.0, z.imaginary)} : z;
}

// An infinity as a direction: its parts become 1 or 0, what is no number 0.
Complex direction_of_infinity(Complex z) {
    return {with_sign_of(is_infinite(z.real) ? 1.0 : 0.0, z.real),
            with_sign_of(is_infinite(z.imaginary) ? 1.0 : 0.0, z.imaginary)};
}

double number_or_zero(double x) { return is_nan(x) ? with_sign_of(0.0, x) : x; }
Complex numbers_or_zero(Complex z) { return {number_or_zero(z.real), number_or_zero(z.imaginary)}; }

// Where the formula gave two NaNs: an infinite factor, or parts of the product that overflowed,
// make the product infinite.
[[gnu::cold, gnu::noinline]] Complex recovered_product(Complex x, Complex y) {
    bool overflowed = is_infinite(x.real * y.real) || is_infinite(x.imaginary * y.imaginary) ||
                      is_infinite(x.real * y.imaginary) || is_infinite(x.imaginary * y.real);
    if (!is_infinite(x) && !is_infinite(y) && !overflowed) return {not_a_number, not_a_number};
    Complex a = is_infinite(x) ? direction_of_infinity(x) : numbers_or_zero(x);
    Complex b = is_infinite(y) ? direction_of_infinity(y) : numbers_or_zero(y);
    return {infinity * (a.real * b.real - a.imaginary * b.imaginary),
            infinity * (a.real * b.imaginary + a.imaginary * b.real)};
}

} // namespace

Complex product(Complex x, Complex y) {
    Complex result = {x.real * y.real - x.imaginary * y.imaginary,
                      x.real * y.imaginary + x.imaginary * y.real};
    if (__builtin_expect(is_nan(result.real) && is_nan(result.imaginary), false))
        return recovered_product(x, y);
    return result;
}

namespace {

// A divisor of zero, infinities, NaNs.
[[gnu::cold, gnu::noinline]] Complex special_quotient(Complex x, Complex y) {
    if (y.real == 0 && y.imaginary == 0) {
        if (is_nan(x.real) && is_nan(x.imaginary)) return x;
        double pole = 1 / y.real; // raises
        return {pole * x.real, pole * x.imaginary};
    }
    if (is_infinite(x) && is_finite(y)) {
        Complex a = direction_of_infinity(x);
        return {infinity * (a.real * y.real + a.imaginary * y.imaginary),
                infinity * (a.imaginary * y.real - a.real * y.imaginary)};
    }
    if (is_infinite(y) && is_finite(x)) {
        Complex b = direction_of_infinity(y);
        return {0 * (x.real * b.real + x.imaginary * b.imaginary),
                0 * (x.imaginary * b.real - x.real * b.imaginary)};
    }
    return {not_a_number, not_a_number};
}

int exponent_of(Complex z) {
    int real = exponent_field(z.real), imaginary = exponent_field(z.imaginary);
    return real > imaginary ? real : imaginary;
}

Complex scaled_by(Complex z, double factor) { return {z.real * factor, z.imaginary * factor}; }

// a b + c d, rounded little more than once.
double sum_of_products(double a, double b, double c, double d) {
    return sum_of(exact_product(a, b) + exact_product(c, d));
}

// Of numbers whose squares and products are in range.
Complex near_quotient(Complex x, Complex y) {
    double size = sum_of_products(y.real, y.real, y.imaginary, y.imaginary);
    return {sum_of_products(x.real, y.real, x.imaginary, y.imaginary) / size,
            sum_of_products(x.imaginary, y.real, -x.real, y.imaginary) / size};
}

bool is_far_from_1(Complex z) { return exponent_of(z) - 700u > 600; }

// Brings a number near 1 by a power of two, which is returned.
int bring_near_1(Complex &z) {
    if (!is_far_from_1(z)) return 0;
    int shift = exponent_of(z) < 54 ? 1000 : 1023 - exponent_of(z);
    z = scaled_by(scaled_by(z, power_of_two(shift / 2)), power_of_two(shift - shift / 2));
    return shift;
}

// By a real or imaginary number part by part: the parts' sizes may be too far apart for one scale.
[[gnu::cold, gnu::noinline]] Complex far_quotient(Complex x, Complex y) {
    if (x.real != 0 && x.imaginary != 0) {
        if (y.imaginary == 0) return {x.real / y.real, x.imaginary / y.real};
        if (y.real == 0) return {x.imaginary / y.imaginary, -x.real / y.imaginary};
    }
    int power = bring_near_1(y) - bring_near_1(x);
    Complex result = near_quotient(x, y);
    return {scaled({result.real, 0}, power), scaled({result.imaginary, 0}, power)};
}

Complex quotient(Complex x, Complex y) {
    bool zero = y.real == 0 && y.imaginary == 0;
    if (__builtin_expect(zero || !is_finite(x) || !is_finite(y), false))
        return special_quotient(x, y);
    if (__builtin_expect(is_far_from_1(x) || is_far_from_1(y), false)) return far_quotient(x, y);
    return near_quotient(x, y);
}

double magnitude(Complex z, const char *name) { return hypotenuse(z.real, z.imaginary, name); }
double angle(Complex z, const char *name) { return arctangent(z.imaginary, z.real, name); }

} // namespace

} // namespace vexrt

using namespace vexrt;

VEXRT_COMPLEX_FUNCTION(conj, conjugate)
VEXRT_COMPLEX_FUNCTION(cproj, projection)

extern "C" {

double creal(double _Complex z) { return __real__ z; }
float crealf(float _Complex z) { return __real__ z; }
long double creall(long double _Complex z) { return __real__ z; }

double cimag(double _Complex z) { return __imag__ z; }
float cimagf(float _Complex z) { return __imag__ z; }
long double cimagl(long double _Complex z) { return __imag__ z; }

double cabs(double _Complex z) { return magnitude(from_foreign(z), "cabs"); }
float cabsf(float _Complex z) {
    Complex wide = from_foreign(z);
    return narrow(magnitude(wide, "cabsf"), {"cabsf", wide.real, wide.imaginary});
}
long double cabsl(long double _Complex z) { return magnitude(from_foreign(z), "cabsl"); }

double carg(double _Complex z) { return angle(from_foreign(z), "carg"); }
float cargf(float _Complex z) {
    Complex wide = from_foreign(z);
    return narrow(angle(wide, "cargf"), {"cargf", wide.imaginary, wide.real});
}
long double cargl(long double _Complex z) { return angle(from_foreign(z), "cargl"); }

double _Complex __cxmul(double _Complex x, double _Complex y) {
    return to_foreign<double _Complex>(product(from_foreign(x), from_foreign(y)));
}

double _Complex __cxdiv(double _Complex x, double _Complex y) {
    return to_foreign<double _Complex>(quotient(from_foreign(x), from_foreign(y)));
}

} // extern "C"
