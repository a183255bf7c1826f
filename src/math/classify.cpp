// What kind of number a number is, and how two compare. Integer operations only: no NaN raises
// anything.

#include "math/bits.h"

#include <math.h>

namespace vexrt {

namespace {

template <typename Float>
int class_of(Float x) {
    if (is_nan(x)) return FP_NAN;
    if (is_infinite(x)) return FP_INFINITE;
    if (magnitude_bits(x) == 0) return FP_ZERO;
    return is_subnormal(x) ? FP_SUBNORMAL : FP_NORMAL;
}

// Numbers as integers of the same order; both zeros become 0.
template <typename Float>
auto ordered(Float x) {
    auto magnitude = static_cast<typename FloatTraits<Float>::SignedBits>(magnitude_bits(x));
    return sign_of(x) ? -magnitude : magnitude;
}

template <typename Float>
int relation(Float x, Float y) {
    if (is_nan(x) || is_nan(y)) return _FP_UNORDERED;
    if (ordered(x) == ordered(y)) return _FP_EQUAL;
    return ordered(x) < ordered(y) ? _FP_LESS : _FP_GREATER;
}

} // namespace

} // namespace vexrt

using namespace vexrt;

extern "C" {

int __fpclass(double x) { return class_of(x); }
int __fpclassf(float x) { return class_of(x); }
int __fpclassl(long double x) { return class_of(x); }

int __fpcomp(double x, double y) { return relation(x, y); }
int __fpcompf(float x, float y) { return relation(x, y); }
int __fpcompl(long double x, long double y) { return relation(x, y); }

int __fpsign(double x) { return sign_of(x); }
int __fpsignf(float x) { return sign_of(x); }
int __fpsignl(long double x) { return sign_of(x); }

} // extern "C"
