// Rounding to integers: ceil, floor, trunc, round, nearbyint, rint.

#include "math/round.h"

#include "math/errors.h"

#include <math.h>

namespace vexrt {

namespace {

// A signalling NaN becomes quiet, and an exception is raised for it.
template <typename Float>
Float integer_or_quiet(Float x) {
    return is_nan(x) ? x + x : x;
}

// Truncated by the processor, which takes less than 2^31.
template <typename Float>
bool is_small(Float x) {
    return absolute_value(x) < Float(0x1p31);
}

template <typename Float>
Float truncated_small(Float x) {
    return with_sign_of(static_cast<Float>(truncated_integer(x)), x);
}

template <typename Float>
Float truncation_of(Float x) {
    return is_small(x) ? truncated_small(x) : integer_or_quiet(truncated(x));
}

template <typename Float>
Float floor_of(Float x) {
    Float whole = is_small(x) ? truncated_small(x) : truncated(x);
    if (is_nan(x)) return x + x;
    return whole > x ? whole - 1 : whole;
}

template <typename Float>
Float ceiling_of(Float x) {
    return -floor_of(-x);
}

// Deliberately an error when the result is not exact.
template <typename Float>
Float rint_of(Float x, const char *name) {
    Float rounded = rounded_in_direction(x);
    if (rounded == x) return rounded;
    if (is_nan(x)) return x + x;
    return static_cast<Float>(report(MathError::inexact, name, x, rounded));
}

} // namespace

} // namespace vexrt

using namespace vexrt;

extern "C" {

double ceil(double x) { return ceiling_of(x); }
float ceilf(float x) { return ceiling_of(x); }
long double ceill(long double x) { return ceiling_of<double>(x); }

double floor(double x) { return floor_of(x); }
float floorf(float x) { return floor_of(x); }
long double floorl(long double x) { return floor_of<double>(x); }

double trunc(double x) { return truncation_of(x); }
float truncf(float x) { return truncation_of(x); }
long double truncl(long double x) { return truncation_of<double>(x); }

double round(double x) { return integer_or_quiet(rounded_half_away(x)); }
float roundf(float x) { return integer_or_quiet(rounded_half_away(x)); }
long double roundl(long double x) { return integer_or_quiet(rounded_half_away<double>(x)); }

double nearbyint(double x) { return integer_or_quiet(rounded_in_direction(x)); }
float nearbyintf(float x) { return integer_or_quiet(rounded_in_direction(x)); }
long double nearbyintl(long double x) { return integer_or_quiet(rounded_in_direction<double>(x)); }

double rint(double x) { return rint_of(x, "rint"); }
float rintf(float x) { return rint_of(x, "rintf"); }
long double rintl(long double x) { return rint_of<double>(x, "rintl"); }

} // extern "C"
