// Rounding to integers: ceil, floor, trunc, round, nearbyint, rint.

#include "math/round.h"

#include "core/cpu.h"
#include "math/errors.h"

#include <math.h>

namespace vexrt {

namespace {

// A signalling NaN becomes quiet, and an exception is raised for it.
template <typename Float>
Float integer_or_quiet(Float x) {
    return is_nan(x) ? x + x : x;
}

// SSE4.1 rounds in one instruction: 1 down, 2 up, 3 toward zero, and 8 for no inexact flag.
enum Direction { down = 9, up = 10, toward_zero = 11 };

template <Direction direction>
double rounded_by_processor(double x) {
    __asm__("roundsd %1, %0, %0" : "+x"(x) : "i"(direction));
    return x;
}

template <Direction direction>
float rounded_by_processor(float x) {
    __asm__("roundss %1, %0, %0" : "+x"(x) : "i"(direction));
    return x;
}

bool processor_rounds() { return cpu_features & cpu_sse41; }

// Older processors. Not inlined: the registers that this takes need not be saved for the others.
template <typename Float>
[[gnu::noinline]] Float plain_truncation(Float x) {
    return integer_or_quiet(truncated(x));
}

template <typename Float>
[[gnu::noinline]] Float plain_floor(Float x) {
    if (is_nan(x)) return x + x;
    Float whole = truncated(x);
    return whole > x ? whole - 1 : whole;
}

template <typename Float>
Float truncation_of(Float x) {
    if (__builtin_expect(processor_rounds(), true)) return rounded_by_processor<toward_zero>(x);
    return plain_truncation(x);
}

template <typename Float>
Float floor_of(Float x) {
    if (__builtin_expect(processor_rounds(), true)) return rounded_by_processor<down>(x);
    return plain_floor(x);
}

template <typename Float>
Float ceiling_of(Float x) {
    if (__builtin_expect(processor_rounds(), true)) return rounded_by_processor<up>(x);
    return -plain_floor(-x);
}

// Half away from zero; the difference is exact. No jump depends on it.
template <typename Float>
Float round_of(Float x) {
    Float whole = truncation_of(x);
    if (__builtin_expect(!is_finite(x), false)) return whole;
    Float away = absolute_value(x - whole) < Float(0.5) ? Float(0) : Float(1);
    return whole + with_sign_of(away, x);
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

double round(double x) { return round_of(x); }
float roundf(float x) { return round_of(x); }
long double roundl(long double x) { return round_of<double>(x); }

double nearbyint(double x) { return integer_or_quiet(rounded_in_direction(x)); }
float nearbyintf(float x) { return integer_or_quiet(rounded_in_direction(x)); }
long double nearbyintl(long double x) { return integer_or_quiet(rounded_in_direction<double>(x)); }

double rint(double x) { return rint_of(x, "rint"); }
float rintf(float x) { return rint_of(x, "rintf"); }
long double rintl(long double x) { return rint_of<double>(x, "rintl"); }

} // extern "C"
