// Arc tangents, of a number and of a point.

#include "math/arctangent.h"

#include "math/complex_number.h"
#include "math/compose.h"
#include "math/errors.h"

#include <math.h>

namespace vexrt {

namespace {

double arctangent(double x, const char *name) {
    double magnitude = absolute_value(x);
    if (magnitude < 0x1p-27) return tiny_result(x, name);
    if (magnitude >= 0x1p60) return with_sign_of(half_pi_high, x);
    if (is_nan(x)) return x + x;
    Pair angle = arctangent_of(magnitude);
    return with_sign_of(angle.high + angle.low, x);
}

float arctangent(float x) {
    float magnitude = absolute_value(x);
    if (magnitude < 0x1p-13f) return tiny_result(x, "atanf");
    if (is_nan(x)) return x + x;
    if (magnitude >= 0x1p30f) return static_cast<float>(with_sign_of(half_pi_high, double(x)));
    const ArcTangentEntry &entry = arctangent_entry(magnitude);
    double t = magnitude;
    double quotient = (t * entry.cosine - entry.sine) / (entry.cosine + t * entry.sine);
    double square = quotient * quotient;
    double angle = entry.angle + quotient * (1 + square * polynomial(atan_tail_float, square));
    return static_cast<float>(with_sign_of(angle, static_cast<double>(x)));
}

// An axis or an infinity: multiples of pi/4.
[[gnu::cold, gnu::noinline]] double special_angle(double y, double x) {
    if (is_nan(x) || is_nan(y)) return x + y;
    double angle = half_pi_high;
    if (y == 0) {
        angle = sign_of(x) ? whole_pi_high : 0;
    } else if (is_infinite(x)) {
        angle = is_infinite(y) ? half_pi_high / 2 : 0;
        if (sign_of(x)) angle = whole_pi_high - angle;
    }
    return with_sign_of(angle, y);
}

// Quotients beyond 2^60 either way; those toward the positive axis may underflow.
[[gnu::cold, gnu::noinline]] double extreme_angle(double y, double x, int difference,
                                                  const char *name) {
    if (difference > 0) return with_sign_of(half_pi_high, y);
    if (sign_of(x)) return with_sign_of(whole_pi_high, y);
    auto [y_significand, y_exponent] = parts_of(y);
    auto [x_significand, x_exponent] = parts_of(x);
    Pair quotient =
        Pair{static_cast<double>(y_significand), 0} / Pair{static_cast<double>(x_significand), 0};
    int power = y_exponent - x_exponent;
    // The angle is less than the quotient: no subnormal result is exact.
    if (power < 2 - FloatTraits<double>::bias) quotient.low -= quotient.high * 0x1p-58;
    if (sign_of(y)) quotient = -quotient;
    return finish(quotient, power, {name, y, x});
}

bool is_on_axis(double x) { return magnitude_bits(x) - 1 >= infinity_bits<double> - 1; }

double angle_of_point(double y, double x, const char *name) {
    if (__builtin_expect(is_on_axis(x) || is_on_axis(y), false)) return special_angle(y, x);
    int difference = exponent_field(y) - exponent_field(x);
    if (__builtin_expect(difference > 60 || difference < -60, false))
        return extreme_angle(y, x, difference, name);
    double rise = absolute_value(y), run = absolute_value(x);
    if (__builtin_expect(exponent_field(y) < 200 || exponent_field(x) < 200, false)) {
        rise *= 0x1p300;
        run *= 0x1p300;
    } else if (__builtin_expect(exponent_field(y) > 1900 || exponent_field(x) > 1900, false)) {
        rise *= 0x1p-300;
        run *= 0x1p-300;
    }
    Pair angle = arctangent_of_quotient(rise, run, rise / run);
    if (sign_of(x)) {
        Pair sum = sum_of_ordered(whole_pi_high, -angle.high);
        angle = {sum.high, sum.low + (whole_pi_low - angle.low)};
    }
    return with_sign_of(angle.high + angle.low, y);
}

} // namespace

double arctangent(double y, double x, const char *name) { return angle_of_point(y, x, name); }

// The coordinates' second parts move the angle by their share at the point.
Pair angle_of(Pair y, Pair x) {
    double rise = absolute_value(y.high), run = absolute_value(x.high);
    bool middle = exponent_field(y.high) - 400u < 1200 && exponent_field(x.high) - 400u < 1200;
    bool narrow_angle = rise < run * 0x1p-30 || run < rise * 0x1p-30;
    if (!middle || narrow_angle) {
        bool small = x.high > 0 && rise < run * 0x1p-30 && run > 0x1p-400 && run < 0x1p400;
        return small ? extreme_quotient(y, x) : Pair{angle_of(y.high, x.high), 0};
    }
    Pair angle = arctangent_of_quotient(rise, run, rise / run);
    angle = sum_of_ordered(angle.high, angle.low);
    if (sign_of(x.high)) angle = Pair{whole_pi_high, whole_pi_low} + -angle;
    if (sign_of(y.high)) angle = -angle;
    double moved = (y.low * x.high - y.high * x.low) / (run * run + rise * rise);
    return sum_of_ordered(angle.high, angle.low + moved);
}

namespace {

float angle_of_point(float y, float x) {
    if (__builtin_expect(is_on_axis(x) || is_on_axis(y), false))
        return static_cast<float>(special_angle(y, x));
    double rise = absolute_value(y), run = absolute_value(x); // any quotient is in double's range
    const ArcTangentEntry &entry = arctangent_entry(rise / run);
    double quotient =
        (rise * entry.cosine - run * entry.sine) / (run * entry.cosine + rise * entry.sine);
    double square = quotient * quotient;
    double angle = entry.angle + quotient * (1 + square * polynomial(atan_tail_float, square));
    if (sign_of(x)) angle = whole_pi_high - angle;
    return narrow(with_sign_of(angle, static_cast<double>(y)), {"atan2f", y, x});
}

} // namespace

} // namespace vexrt

using namespace vexrt;

extern "C" {

double atan(double x) { return arctangent(x, "atan"); }
float atanf(float x) { return arctangent(x); }
long double atanl(long double x) { return arctangent(double(x), "atanl"); }

double atan2(double y, double x) { return angle_of_point(y, x, "atan2"); }
float atan2f(float y, float x) { return angle_of_point(y, x); }
long double atan2l(long double y, long double x) {
    return angle_of_point(double(y), double(x), "atan2l");
}

} // extern "C"
