// Cube roots, and the hypotenuse.

#include "math/compose.h"
#include "math/data/cube_root.h"
#include "math/errors.h"
#include "math/hypotenuse.h"
#include "math/polynomial.h"

#include <math.h>

namespace vexrt {

namespace {

// m^(-1/3) 2^(-third / 3) to about 45 bits: a polynomial and a step of third order.
double inverse_root(double m, int third) {
    double estimate = polynomial(inverse_cube_root, m) * inverse_cube_root_of_power[third];
    double whole = m * static_cast<double>(1 << third);
    double error = 1 - whole * (estimate * estimate * estimate);
    return estimate + estimate * error * (1.0 / 3 + error * (2.0 / 9 + error * (14.0 / 81)));
}

struct CubeArgument {
    double m;     // 1 to 2
    int third;    // 0, 1, 2
    int exponent; // x = m 2^(third + 3 exponent)
};

CubeArgument cube_argument(double x) {
    auto [significand, field] = parts_of(x);
    int power = field - 1023 + 3 * 400; // positive
    double m = from_bits<double>((significand & fraction_mask<double>) | uint64_t{1023} << 52);
    return {m, power % 3, power / 3 - 400};
}

// The root cut to 21 bits has an exact cube in two parts; what it lacks is a series in the
// remainder.
double cube_root(double x) {
    if (x == 0 || !is_finite(x)) return x + x;
    auto [m, third, exponent] = cube_argument(x);
    double inverse = inverse_root(m, third), whole = m * static_cast<double>(1 << third);
    double root = leading_bits(whole * inverse * inverse);
    double square = root * root, square_high = leading_bits(square);
    double remainder = (whole - square_high * root) - (square - square_high) * root;
    double relative = remainder / (square * root);
    double step = root * relative * (1.0 / 3 - relative * (1.0 / 9 - relative * (5.0 / 81)));
    return with_sign_of((root + step) * power_of_two(exponent), x);
}

// Of 2^exponent m, m from 1 to 2. A first step of second order is enough.
inline float cube_root_of(double m, int exponent, float sign) {
    constexpr const auto &c = inverse_cube_root;
    unsigned power = static_cast<unsigned>(exponent + 3 * 400), third = power % 3;
    double square = m * m;
    double estimate = (c[4] + c[3] * m) + square * ((c[2] + c[1] * m) + square * c[0]);
    estimate *= inverse_cube_root_of_power[third];
    double scale = power_of_two(static_cast<int>(power / 3) - 400);
    double root = m * power_of_two(static_cast<int>(third)) * (estimate * estimate);
    double error = 1 - root * estimate; // the inverse is off by error / 3
    double signed_root = root * with_sign_of(scale, static_cast<double>(sign));
    return static_cast<float>(signed_root + signed_root * (error * (2.0 / 3 + error * (5.0 / 9))));
}

[[gnu::cold, gnu::noinline]] float rare_cube_root(float x) {
    if (x == 0 || !is_finite(x)) return x + x;
    auto [significand, field] = parts_of(x);
    return cube_root_of(static_cast<double>(significand) * 0x1p-23, field - 127, x);
}

float cube_root(float x) {
    if (__builtin_expect(!is_positive_and_normal(absolute_value(x)), false))
        return rare_cube_root(x);
    double m = from_bits<float>((bits_of(x) & fraction_mask<float>) | bits_of(1.0f));
    return cube_root_of(m, exponent_field(x) - 127, x);
}

// Whether squares neither overflow nor vanish.
constexpr bool has_plain_square(double x) { return exponent_field(x) - 623u <= 800; }

bool is_special(double x, double y) { return !is_finite(x) || !is_finite(y) || x == 0 || y == 0; }

// An infinity counts even beside a NaN.
double special_hypotenuse(double x, double y) {
    if (is_infinite(x) || is_infinite(y)) return infinity;
    if (is_nan(x) || is_nan(y)) return x + y;
    return absolute_value(x) + absolute_value(y);
}

[[gnu::noinline]] double rare_hypotenuse(double x, double y, const char *name) {
    if (is_special(x, y)) return special_hypotenuse(x, y);
    double a = absolute_value(x), b = absolute_value(y);
    double longer = a > b ? a : b, shorter = a > b ? b : a; // without a jump
    int power = 0;
    if (__builtin_expect(exponent_field(longer) > 1023 + 400, false)) power = 600;
    if (__builtin_expect(exponent_field(shorter) < 1023 - 400, false)) power = -600;
    if (exponent_field(longer) - exponent_field(shorter) > 60)
        return finish({longer, 0}, 0, {name, x, y});
    if (power) {
        longer *= power_of_two(-power);
        shorter *= power_of_two(-power);
    }
    return finish(root_of_squares(longer, shorter), power, {name, x, y});
}

double hypotenuse_of(double x, double y, const char *name) {
    if (__builtin_expect(!has_plain_square(x) || !has_plain_square(y), false))
        return rare_hypotenuse(x, y, name);
    double a = absolute_value(x), b = absolute_value(y);
    double longer = a > b ? a : b, shorter = a > b ? b : a; // without a jump
    Pair root = root_of_squares(longer, shorter);
    return root.high + root.low;
}

float hypotenuse_of(float x, float y) {
    double wide = x, other = y, square = wide * wide + other * other;
    constexpr uint32_t least = upper_word(0x1p-250), most = upper_word(0x1p255);
    if (__builtin_expect(upper_word(square) - least < most - least, true))
        return static_cast<float>(square_root(square));
    if (!is_finite(square)) return static_cast<float>(special_hypotenuse(x, y));
    return narrow(square_root(square), {"hypotf", x, y});
}

} // namespace

double hypotenuse(double x, double y, const char *name) { return hypotenuse_of(x, y, name); }

} // namespace vexrt

using namespace vexrt;

extern "C" {

double cbrt(double x) { return cube_root(x); }
float cbrtf(float x) { return cube_root(x); }
long double cbrtl(long double x) { return cube_root(static_cast<double>(x)); }

double hypot(double x, double y) { return hypotenuse_of(x, y, "hypot"); }
float hypotf(float x, float y) { return hypotenuse_of(x, y); }
long double hypotl(long double x, long double y) {
    return hypotenuse_of(double(x), double(y), "hypotl");
}

} // extern "C"
