// Remainders: fmod, remainder, remquo. The x87 unit's partial remainders are exact and take up to
// 63 bits off the quotient a step.

#include "math/errors.h"

#include <math.h>

namespace vexrt {

namespace {

// The instructions set a condition bit while the reduction is not complete.
double truncating_remainder(double x, double y) {
    __asm__("1:\n\tfprem\n\tfnstsw %%ax\n\ttestb $4, %%ah\n\tjnz 1b"
            : "+t"(x)
            : "u"(y)
            : "ax", "cc");
    return x;
}

struct NearestRemainder {
    double rest;
    int quotient; // three bits
};

NearestRemainder nearest_remainder(double x, double y) {
    unsigned short status;
    __asm__("1:\n\tfprem1\n\tfnstsw %%ax\n\ttestb $4, %%ah\n\tjnz 1b"
            : "+t"(x), "=a"(status)
            : "u"(y)
            : "cc");
    return {x, (status >> 8 & 1) << 2 | (status >> 14 & 1) << 1 | (status >> 9 & 1)};
}

// NaNs and errors; and what the unit would not answer so.
bool is_special(double x, double y) { return !is_finite(x) || is_nan(y) || y == 0; }

[[gnu::cold]] double special(double x, double y, const char *name) {
    if (is_nan(x) || is_nan(y)) return x + y;
    return report(MathError::domain, {name, x, y}, not_a_number);
}

double remainder_of(double x, double y, const char *name) {
    if (is_special(x, y)) return special(x, y, name);
    if (absolute_value(x) < absolute_value(y)) return x;
    return truncating_remainder(x, y);
}

double remainder_and_quotient(double x, double y, int *quotient, const char *name) {
    *quotient = 0;
    if (is_special(x, y)) return special(x, y, name);
    if (is_infinite(y)) return x;
    NearestRemainder result = nearest_remainder(x, y);
    *quotient = sign_of(x) == sign_of(y) ? result.quotient : -result.quotient;
    return result.rest == 0 ? with_sign_of(0.0, x) : result.rest;
}

double nearest(double x, double y, const char *name) {
    int quotient;
    return remainder_and_quotient(x, y, &quotient, name);
}

} // namespace

} // namespace vexrt

using namespace vexrt;

extern "C" {

double fmod(double x, double y) { return remainder_of(x, y, "fmod"); }
float fmodf(float x, float y) { return static_cast<float>(remainder_of(x, y, "fmodf")); }
long double fmodl(long double x, long double y) { return remainder_of(x, y, "fmodl"); }

double remainder(double x, double y) { return nearest(x, y, "remainder"); }
float remainderf(float x, float y) { return static_cast<float>(nearest(x, y, "remainderf")); }
long double remainderl(long double x, long double y) { return nearest(x, y, "remainderl"); }

double remquo(double x, double y, int *quotient) {
    return remainder_and_quotient(x, y, quotient, "remquo");
}
float remquof(float x, float y, int *quotient) {
    return static_cast<float>(remainder_and_quotient(x, y, quotient, "remquof"));
}
long double remquol(long double x, long double y, int *quotient) {
    return remainder_and_quotient(x, y, quotient, "remquol");
}

} // extern "C"
