// Complex exponential, logarithm, power and square root.

#include "math/arctangent.h"
#include "math/complex_number.h"
#include "math/hypotenuse.h"
#include "math/logarithm.h"

#include <complex.h>

namespace vexrt {

SineAndCosine sine_and_cosine(double x, double low) {
    if (absolute_value(x) < 0x1p-27) return {{x, low}, {1, 0}};
    Reduced reduced = reduce(x);
    // The second part of a large angle counts in every term.
    Pair rest = exact_sum(reduced.high, reduced.low + low);
    reduced.high = rest.high;
    reduced.low = rest.low;
    SmallAngle angle = small_angle(reduced);
    Pair sine = sine_of(angle, reduced.step), cosine = sine_of(angle, reduced.step + quarter_turn);
    return {sum_of_ordered(sine.high, sine.low), sum_of_ordered(cosine.high, cosine.low)};
}

namespace {

// power (1 + rest) times a sum, rounded little more than once: the leading bits' product is exact.
double part_of(double power, double rest, Pair direction) {
    double power_high = leading_bits(power), high = leading_bits(direction.high);
    double low = power_high * (direction.high - high) + (power - power_high) * direction.high;
    return power_high * high + (low + power * (direction.low + rest * direction.high));
}

// e^x (cos y + i sin y) for finite parts.
Complex finite_exponential(Pair x, Pair y) {
    if (!(absolute_value(x.high) < exponent_limit)) x = {with_sign_of(exponent_limit, x.high), 0};
    Exponential e = table_exponential(x.high, x.low);
    SineAndCosine direction = sine_and_cosine(y.high, y.low);
    bool tiny = absolute_value(y.high) < 0x1p-900; // what is left of its product must be kept
    if (__builtin_expect(is_plain(e) && !tiny, true)) {
        double power = scaled_power(e.power, e.exponent);
        return {part_of(power, e.rest, direction.cosine), part_of(power, e.rest, direction.sine)};
    }
    Pair magnitude = pair_of(e);
    return {scaled_product(magnitude, direction.cosine, e.exponent),
            y.high == 0 ? y.high : scaled_product(magnitude, direction.sine, e.exponent)};
}

[[gnu::cold, gnu::noinline]] Complex special_exponential(Complex z) {
    auto [x, y] = z;
    if (is_infinite(x)) {
        double size = sign_of(x) ? 0.0 : infinity;
        if (y == 0) return {size, y};
        if (is_finite(y)) {
            SineAndCosine direction = sine_and_cosine(y);
            return {with_sign_of(size, direction.cosine.high),
                    with_sign_of(size, direction.sine.high)};
        }
        if (sign_of(x)) return {0, 0};
        return {x, y - y}; // invalid for an infinite y
    }
    if (is_nan(x)) return {x, y == 0 ? y : x};
    return {y - y, y - y};
}

// What counts beside a number more than 2^70 times its size only where that is 1.
constexpr double negligible = 0x1p-70;

// The logarithm of a^2 + b^2 near 1: its excess over 1 is summed up from exact products.
Pair logarithm_near_1(Pair a_square, Pair b_square) {
    Pair first = exact_sum(a_square.high, -1), second = exact_sum(first.high, b_square.high);
    Pair third = exact_sum(second.high, a_square.low);
    double rest = third.low + (second.low + first.low) + b_square.low;
    return logarithm_of_successor(exact_sum(third.high, rest));
}

// log |z| as a sum of two for finite z but 0.
Pair logarithm_of_magnitude(Complex z) {
    double longer = absolute_value(z.real), shorter = absolute_value(z.imaginary);
    if (longer < shorter) {
        double other = longer;
        longer = shorter;
        shorter = other;
    }
    int power = exponent_field(longer) - FloatTraits<double>::bias;
    if (power > -400 && power < 400) power = 0;
    if (power > 1000) power = 1000; // its reciprocal is in the normal range
    if (power < -1000) power = -1000;
    double factor = power_of_two(-power);
    if (power < 0) longer *= factor, shorter *= factor;
    bool counts = shorter >= longer * negligible;
    if (!counts && longer != 1) shorter = 0;
    if (power > 0) longer *= factor, shorter *= factor;
    Pair a = exact_product(longer, longer);
    Pair b = counts ? exact_product(shorter, shorter) : Pair{shorter * shorter, 0};
    double square = a.high + b.high;
    bool near_1 = power == 0 && square > 0.4 && square < 2.5;
    Pair result = near_1 ? logarithm_near_1(a, b) : extended_logarithm(a + b);
    result = Pair{0.5 * result.high, 0.5 * result.low};
    return result + Pair{power * natural_logarithm.two_high, power * natural_logarithm.two_low};
}

bool is_zero(Complex z) { return z.real == 0 && z.imaginary == 0; }

[[gnu::cold, gnu::noinline]] Complex special_logarithm(Complex z) {
    double angle = angle_of(z.imaginary, z.real);
    if (is_infinite(z)) return {infinity, angle};
    if (is_zero(z)) return {-1 / absolute_value(z.real), angle}; // raises
    return {not_a_number, not_a_number};
}

Complex exponential(Complex z) {
    if (__builtin_expect(!is_finite(z), false)) return special_exponential(z);
    return finite_exponential({z.real, 0}, {z.imaginary, 0});
}

Complex logarithm(Complex z) {
    if (__builtin_expect(!is_finite(z) || is_zero(z), false)) return special_logarithm(z);
    return {sum_of(logarithm_of_magnitude(z)), angle_of(z.imaginary, z.real)};
}

// a b for a factor so large that an exact product with it might overflow. Beyond 2^1000 one number
// is as good as another.
Pair times_any(Pair a, double b) {
    if (__builtin_expect(absolute_value(b) < 0x1p500, true)) return a * b;
    Pair product = a * (b * 0x1p-600);
    if (absolute_value(product.high) > 0x1p400) return {with_sign_of(0x1p1000, product.high), 0};
    return scaled_by(product, 0x1p600);
}

// e^(w log z), the logarithm as sums of two.
Complex power(Complex z, Complex w) {
    if (is_zero(w)) return {1, 0};
    if (is_zero(z) && w.real > 0 && is_finite(w)) return {0, 0};
    if (!is_finite(z) || !is_finite(w) || is_zero(z)) {
        return exponential(product(w, logarithm(z)));
    }
    Pair size = logarithm_of_magnitude(z), angle = angle_of(Pair{z.imaginary, 0}, Pair{z.real, 0});
    Pair x = times_any(size, w.real) + -times_any(angle, w.imaginary);
    Pair y = times_any(angle, w.real) + times_any(size, w.imaginary);
    return finite_exponential(x, y);
}

// G.6.4.2; a NaN beside a number gives NaNs.
[[gnu::cold, gnu::noinline]] Complex special_root(Complex z) {
    auto [x, y] = z;
    if (is_infinite(y)) return {infinity, y};
    if (!is_infinite(x)) return {not_a_number, not_a_number};
    double rest = is_nan(y) ? y : 0.0;
    if (sign_of(x)) return {is_nan(y) ? y : 0.0, with_sign_of(infinity, y)};
    return {x, is_nan(y) ? rest : with_sign_of(0.0, y)};
}

bool is_middling(double x) { return exponent_field(x) - (1023u - 400) < 800; }

// As square_root_of, with one division. Both parts are positive, their squares of ordinary size.
Complex middling_root(double x, double y) {
    Pair size = x > y ? root_of_squares(x, y) : root_of_squares(y, x);
    Pair sum = sum_of_ordered(size.high, x);
    double high = 0.5 * sum.high, low = 0.5 * (sum.low + size.low);
    double root = square_root(high), inverse = 0.5 / root;
    Pair square = square_of(root);
    double rest = ((((high - square.high) + low) - square.low)) * inverse;
    double other = y * inverse;
    Pair product = exact_product(other, 2 * root);
    double left = (y - product.high) - product.low;
    return {root + rest, other + (left - 2 * other * rest) * inverse};
}

Complex root(Complex z) {
    double x = absolute_value(z.real), y = absolute_value(z.imaginary);
    if (__builtin_expect(is_middling(x) && is_middling(y), true)) {
        Complex result = middling_root(x, y);
        if (sign_of(z.real)) result = {result.imaginary, result.real};
        return {result.real, with_sign_of(result.imaginary, z.imaginary)};
    }
    if (!is_finite(z)) return special_root(z);
    Complex result = sum_of(square_root_of({z.real, 0}, z.imaginary));
    return {result.real, with_sign_of(result.imaginary, z.imaginary)}; // of a zero, too
}

} // namespace

// With t = sqrt((|x| + |z|) / 2) the root is t + i y / 2t, or the other way round.
ComplexPair square_root_of(Pair real, double imaginary) {
    double y = absolute_value(imaginary);
    bool negative = sign_of(real.high);
    Pair x = negative ? -real : real;
    if (x.high == 0 && y == 0) return {{0, 0}, {imaginary, 0}};
    // Powers of 4 keep the squares in range.
    double larger = x.high > y ? x.high : y, scale = 1, back = 1;
    if (larger > 0x1p400) scale = 0x1p-600, back = 0x1p300;
    if (larger < 0x1p-400) scale = 0x1p600, back = 0x1p-300;
    x = {x.high * scale, x.low * scale};
    y *= scale;
    Pair size;
    if (y < x.high * negligible * negligible)
        size = x;
    else if (x.high < y * negligible * negligible)
        size = {y, 0};
    else
        size = square_root(x * x + exact_product(y, y));
    Pair sum = x + size;
    Pair t = square_root(Pair{sum.high * 0.5, sum.low * 0.5});
    t = {t.high * back, t.low * back};
    Pair other = extreme_quotient({absolute_value(imaginary), 0}, {2 * t.high, 2 * t.low});
    ComplexPair result = negative ? ComplexPair{other, t} : ComplexPair{t, other};
    if (sign_of(imaginary)) result.imaginary = -result.imaginary;
    return result;
}

namespace {

Complex float_exponential(Complex z) {
    if (__builtin_expect(!is_plain_float_exponent(z), false)) return exponential(z);
    double magnitude = exponential_for_float(z.real);
    Direction direction = direction_of_float(z.imaginary);
    return {magnitude * direction.cosine,
            z.imaginary == 0 ? z.imaginary : magnitude * direction.sine};
}

// The squares of floats are in the range of double.
Complex float_root(Complex z) {
    double x = absolute_value(z.real), y = absolute_value(z.imaginary);
    double size = square_root(x * x + y * y);
    if (__builtin_expect(!is_finite(size) || size == 0, false)) return root(z);
    double t = square_root((x + size) * 0.5), other = y / (2 * t);
    bool negative = sign_of(z.real);
    return {negative ? other : t, with_sign_of(negative ? t : other, z.imaginary)};
}

} // namespace

} // namespace vexrt

using namespace vexrt;

VEXRT_COMPLEX_FUNCTION_OF_TWO_WORKERS(cexp, exponential, float_exponential)
VEXRT_COMPLEX_FUNCTION(clog, logarithm)
VEXRT_COMPLEX_FUNCTION_OF_TWO_WORKERS(csqrt, root, float_root)

extern "C" {

double _Complex cpow(double _Complex z, double _Complex w) {
    return to_foreign<double _Complex>(power(from_foreign(z), from_foreign(w)));
}
float _Complex cpowf(float _Complex z, float _Complex w) {
    return to_foreign<float _Complex>(power(from_foreign(z), from_foreign(w)));
}
long double _Complex cpowl(long double _Complex z, long double _Complex w) {
    return to_foreign<long double _Complex>(power(from_foreign(z), from_foreign(w)));
}

} // extern "C"
