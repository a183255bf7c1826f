// Remainders: fmod, remainder, remquo. The x87 unit's partial remainders are exact and take up to
// 63 bits off the quotient a step.

#include "math/errors.h"

#include <math.h>

namespace vexrt {

namespace {

// The instructions set a condition bit while the reduction is not complete.
template <typename Float>
Float truncating_remainder(Float x, Float y) {
    __asm__("1:\n\tfprem\n\tfnstsw %%ax\n\ttestb $4, %%ah\n\tjnz 1b"
            : "+t"(x)
            : "u"(y)
            : "ax", "cc");
    return x;
}

template <typename Float>
struct NearestRemainder {
    Float rest;
    int quotient; // three bits
};

template <typename Float>
NearestRemainder<Float> nearest_remainder(Float x, Float y) {
    unsigned short status;
    __asm__("1:\n\tfprem1\n\tfnstsw %%ax\n\ttestb $4, %%ah\n\tjnz 1b"
            : "+t"(x), "=a"(status)
            : "u"(y)
            : "cc");
    return {x, (status >> 8 & 1) << 2 | (status >> 14 & 1) << 1 | (status >> 9 & 1)};
}

// NaNs and errors; and what the unit would not answer so.
template <typename Float>
bool is_special(Float x, Float y) {
    return !is_finite(x) || is_nan(y) || y == 0;
}

template <typename Float>
[[gnu::cold, gnu::noinline]] Float special(Float x, Float y, const char *name) {
    if (is_nan(x) || is_nan(y)) return x + y;
    return static_cast<Float>(report(MathError::domain, {name, x, y}, not_a_number));
}

template <typename Float>
Float remainder_of(Float x, Float y, const char *name) {
    if (__builtin_expect(is_special(x, y), false)) return special(x, y, name);
    if (absolute_value(x) < absolute_value(y)) return x;
    return truncating_remainder(x, y);
}

template <typename Float>
Float nearest(Float x, Float y, const char *name) {
    if (__builtin_expect(is_special(x, y), false)) return special(x, y, name);
    if (is_infinite(y)) return x;
    Float rest = nearest_remainder(x, y).rest;
    return rest == 0 ? with_sign_of(Float(0), x) : rest;
}

template <typename Float>
Float remainder_and_quotient(Float x, Float y, int *quotient, const char *name) {
    *quotient = 0;
    if (is_special(x, y) || is_infinite(y)) return nearest(x, y, name);
    NearestRemainder<Float> result = nearest_remainder(x, y);
    *quotient = sign_of(x) == sign_of(y) ? result.quotient : -result.quotient;
    return result.rest == 0 ? with_sign_of(Float(0), x) : result.rest;
}

} // namespace

} // namespace vexrt

using namespace vexrt;

extern "C" {

double fmod(double x, double y) { return remainder_of(x, y, "fmod"); }
float fmodf(float x, float y) { return remainder_of(x, y, "fmodf"); }
long double fmodl(long double x, long double y) { return remainder_of<double>(x, y, "fmodl"); }

double remainder(double x, double y) { return nearest(x, y, "remainder"); }
float remainderf(float x, float y) { return nearest(x, y, "remainderf"); }
long double remainderl(long double x, long double y) { return nearest<double>(x, y, "remainderl"); }

double remquo(double x, double y, int *quotient) {
    return remainder_and_quotient(x, y, quotient, "remquo");
}
float remquof(float x, float y, int *quotient) {
    return remainder_and_quotient(x, y, quotient, "remquof");
}
long double remquol(long double x, long double y, int *quotient) {
    return remainder_and_quotient<double>(x, y, quotient, "remquol");
}

} // extern "C"
