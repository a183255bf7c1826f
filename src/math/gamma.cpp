// The gamma function and its logarithm.
//
// Up to 11 polynomials serve, from there on Stirling's series, whose large terms are sums of two
// doubles. Negative arguments go by reflection: gamma(x) gamma(-x) = -pi / (x sin(pi x)).

#include "math/data/gamma.h"
#include "math/compose.h"
#include "math/data/arctangent.h"
#include "math/errors.h"
#include "math/exponential.h"
#include "math/logarithm.h"
#include "math/pieces.h"
#include "math/round.h"

#include <math.h>

namespace vexrt {

namespace {

constexpr double stirling_from = 11;
constexpr Pair pi = {whole_pi_high, whole_pi_low};

bool is_integer(double x) { return truncated(x) == x; }

// log gamma(x) from 11 on, up to 2^900.
Pair stirling(double x) {
    Pair logarithm = extended_logarithm(x);
    double rest = polynomial(stirling_series, 1 / (x * x)) / x;
    Pair sum = logarithm * (x - 0.5) + -x; // the difference is exact, or x so large that it is x
    return sum + Pair{half_log_of_two_pi_high, half_log_of_two_pi_low + rest};
}

// A value 2^exponent.
struct ScaledPair {
    Pair value;
    int exponent;
};

// Of a positive number up to 190.
ScaledPair positive_gamma(double x) {
    if (x < 1) {
        Pair next = value_of_pieces(gamma_pieces, x, 4);
        return {sum_of_ordered(next.high, next.low) / Pair{x, 0}, 0};
    }
    if (x < stirling_from) {
        Pair value = value_of_pieces(gamma_pieces, x - 1, 4);
        return {sum_of_ordered(value.high, value.low), 0};
    }
    Pair logarithm = stirling(x);
    Exponential e = table_exponential(logarithm.high, logarithm.low);
    return {pair_of(e), e.exponent};
}

// sin(pi x) of a positive number: of the distance from the nearest multiple of 1/2.
Pair sine_of_pi_times(double x) {
    x -= 2 * truncated(x * 0.5); // exact, as all of these
    auto halves_below = static_cast<unsigned>(truncated_integer(2 * x + 0.5));
    double r = x - halves_below * 0.5, square = r * r;
    Pair result;
    if (halves_below & 1) {
        result = sum_of_ordered(1, square * polynomial(cosine_of_pi_tail, square));
    } else {
        Pair angle = pi * r;
        result = sum_of_ordered(angle.high,
                                angle.low + r * square * polynomial(sine_of_pi_tail, square));
    }
    return halves_below & 2 ? -result : result;
}

constexpr double gamma_overflows = 172, gamma_vanishes = 186;

double reflected_gamma(double x, const Call &call) {
    double magnitude = -x;
    if (magnitude > gamma_vanishes) {
        bool positive = !is_integer(truncated(x) / 2); // between odd and even
        return report(MathError::underflow, call, positive ? 0.0 : -0.0);
    }
    ScaledPair other = positive_gamma(magnitude);
    Pair denominator = sine_of_pi_times(magnitude) * magnitude * other.value;
    return finish(-(pi / denominator), -other.exponent, call);
}

// Poles and errors; and NaNs.
[[gnu::cold]] double special_gamma(double x, const Call &call) {
    if (is_nan(x)) return x + x;
    if (x == 0) return report(MathError::pole, call, with_sign_of(infinity, x));
    if (sign_of(x)) return report(MathError::domain, call, not_a_number);
    return is_infinite(x) ? x : report(MathError::overflow, call, infinity);
}

double gamma_of(double x, const char *name) {
    Call call = {name, x, x};
    if (__builtin_expect(!(x < gamma_overflows) || x == 0 || (x < 0 && is_integer(x)), false))
        return special_gamma(x, call);
    // Near 0 the function is 1 / x.
    if (absolute_value(x) < 0x1p-60) {
        if (absolute_value(x) < 0x1p-1024)
            return report(MathError::overflow, call, with_sign_of(infinity, x));
        return 1 / x;
    }
    if (x < 0) return reflected_gamma(x, call);
    ScaledPair result = positive_gamma(x);
    return finish(result.value, result.exponent, call);
}

// log gamma(x) of a positive number up to 2^900.
Pair positive_log_gamma(double x) {
    if (x >= stirling_from) return stirling(x);
    double u = x - 1;
    if (u >= 2) return value_of_pieces(log_gamma_pieces, u - 2, 4);
    double near = x < 0.5 ? x : u;
    Pair regular = value_of_pieces(log_gamma_middle_pieces, near + 0.5, 4);
    Pair factor = exact_product(near, near - 1);
    Pair result = sum_of_ordered(regular.high, regular.low) * factor.high;
    result.low += regular.high * factor.low;
    if (x >= 0.5) return result;
    return -extended_logarithm(x) + result;
}

Pair reflected_log_gamma(double x) {
    double magnitude = -x;
    Pair sine = sine_of_pi_times(magnitude);
    if (sine.high < 0) sine = -sine;
    Pair logarithm = extended_logarithm(sine * magnitude);
    Pair first =
        Pair{log_of_pi_high, log_of_pi_low} + -sum_of_ordered(logarithm.high, logarithm.low);
    Pair second = positive_log_gamma(magnitude);
    return first + -sum_of_ordered(second.high, second.low);
}

double log_gamma_of(double x, const char *name) {
    Call call = {name, x, x};
    double magnitude = absolute_value(x);
    if (!is_finite(x)) return x * x; // both infinities
    if (x <= 0 && is_integer(x)) return report(MathError::pole, call, infinity);
    if (magnitude < 0x1p-60) {
        Pair logarithm = extended_logarithm(magnitude);
        return -(logarithm.high + logarithm.low);
    }
    if (x > 0x1p100) {
        Pair factor = extended_logarithm(x) + -1;
        return finish(factor * (x * 0x1p-100), 100, call);
    }
    Pair result = x < 0 ? reflected_log_gamma(x) : positive_log_gamma(x);
    return result.high + result.low;
}

float log_gamma_of(float x) {
    if (!(x >= stirling_from && x < 0x1p100f))
        return narrow(log_gamma_of(static_cast<double>(x), "lgammaf"), "lgammaf", x);
    double wide = x, rest = polynomial(stirling_series, 1 / (wide * wide)) / wide;
    double logarithm = logarithm_for_float<natural_logarithm>(x);
    return static_cast<float>(((wide - 0.5) * logarithm - wide) + (half_log_of_two_pi_high + rest));
}

// Below, every float's gamma function is less than half of the least float.
constexpr float float_gamma_vanishes = -60;

float gamma_of(float x) {
    Call call = {"tgammaf", x, x};
    if (x < float_gamma_vanishes && is_finite(x) && !is_integer(x)) {
        bool positive = !is_integer(truncated(static_cast<double>(x)) / 2);
        return static_cast<float>(report(MathError::underflow, call, positive ? 0.0 : -0.0));
    }
    return narrow(gamma_of(static_cast<double>(x), "tgammaf"), call);
}

} // namespace

} // namespace vexrt

using namespace vexrt;

extern "C" {

double tgamma(double x) { return gamma_of(x, "tgamma"); }
float tgammaf(float x) { return gamma_of(x); }
long double tgammal(long double x) { return gamma_of(double(x), "tgammal"); }

double lgamma(double x) { return log_gamma_of(x, "lgamma"); }
float lgammaf(float x) { return log_gamma_of(x); }
long double lgammal(long double x) { return log_gamma_of(double(x), "lgammal"); }

} // extern "C"
