// Arc sine and arc cosine: a polynomial up to 1/2; above that the half-angle formula, with
// asin x = pi/2 - 2 asin(sqrt((1 - x) / 2)), the root as a sum of two.

#include "math/data/arctangent.h"
#include "math/errors.h"
#include "math/pair.h"
#include "math/polynomial.h"

#include <math.h>

namespace vexrt {

namespace {

[[gnu::cold, gnu::noinline]] double no_angle(double x, const char *name) {
    if (is_nan(x)) return x + x;
    return report(MathError::domain, name, x, not_a_number);
}

// asin x - x, for |x| up to 1/2, given the square.
double tail_of(double x, double square) { return x * square * polynomial(asin_tail, square); }

// 2 asin(sqrt((1 - magnitude) / 2)), which is acos(magnitude).
Pair angle_from_top(double magnitude) {
    double square = (1 - magnitude) * 0.5; // exact
    if (square == 0) return {0, 0};
    double root = square_root(square), root_high = leading_bits(root);
    double root_low = (square - root_high * root_high) / (root + root_high);
    return {2 * root_high, 2 * (root_low + tail_of(root, square))};
}

double arcsine(double x, const char *name) {
    double magnitude = absolute_value(x);
    if (magnitude < 0.5) {
        if (magnitude < 0x1p-27) return tiny_result(x, name);
        return x + tail_of(x, x * x);
    }
    if (__builtin_expect(!(magnitude <= 1), false)) return no_angle(x, name);
    Pair angle = angle_from_top(magnitude);
    Pair difference = sum_of_ordered(half_pi_high, -angle.high);
    double result = difference.high + (difference.low + (half_pi_low - angle.low));
    return with_sign_of(result, x);
}

double arccosine(double x, const char *name) {
    double magnitude = absolute_value(x);
    if (magnitude < 0.5) {
        if (magnitude < 0x1p-60) return half_pi_high;
        Pair difference = sum_of_ordered(half_pi_high, -x);
        return difference.high + (difference.low + (half_pi_low - tail_of(x, x * x)));
    }
    if (__builtin_expect(!(magnitude <= 1), false)) return no_angle(x, name);
    Pair angle = angle_from_top(magnitude);
    if (!sign_of(x)) return angle.high + angle.low;
    Pair difference = sum_of_ordered(whole_pi_high, -angle.high);
    return difference.high + (difference.low + (whole_pi_low - angle.low));
}

// asin x for |x| up to 1/2, to the precision of float.
double small_arcsine(double x) { return x + x * x * x * polynomial(asin_tail_float, x * x); }

double angle_from_top_for_float(double magnitude) {
    return 2 * small_arcsine(square_root((1 - magnitude) * 0.5));
}

float arcsine(float x) {
    float magnitude = absolute_value(x);
    if (magnitude < 0.5f) {
        if (magnitude < 0x1p-13f) return tiny_result(x, "asinf");
        return static_cast<float>(small_arcsine(x));
    }
    if (__builtin_expect(!(magnitude <= 1), false)) return static_cast<float>(no_angle(x, "asinf"));
    double angle = half_pi_high - angle_from_top_for_float(magnitude);
    return static_cast<float>(with_sign_of(angle, static_cast<double>(x)));
}

float arccosine(float x) {
    float magnitude = absolute_value(x);
    if (magnitude < 0.5f) return static_cast<float>(half_pi_high - small_arcsine(x));
    if (__builtin_expect(!(magnitude <= 1), false)) return static_cast<float>(no_angle(x, "acosf"));
    double angle = angle_from_top_for_float(magnitude);
    return static_cast<float>(sign_of(x) ? whole_pi_high - angle : angle);
}

} // namespace

} // namespace vexrt

using namespace vexrt;

extern "C" {

double asin(double x) { return arcsine(x, "asin"); }
float asinf(float x) { return arcsine(x); }
long double asinl(long double x) { return arcsine(double(x), "asinl"); }

double acos(double x) { return arccosine(x, "acos"); }
float acosf(float x) { return arccosine(x); }
long double acosl(long double x) { return arccosine(double(x), "acosl"); }

} // extern "C"
