// The next number in a direction, and NaNs with a payload.

#include "math/errors.h"

#include <math.h>

namespace vexrt {

namespace {

template <typename Float>
Float step(Float x, bool up) {
    if (x == 0) return from_bits<Float>(1 | (up ? 0 : sign_mask<Float>));
    bool away = up != sign_of(x);
    return from_bits<Float>(away ? bits_of(x) + 1 : bits_of(x) - 1);
}

// From a finite number to an infinity is an overflow; a subnormal result or zero, an underflow.
template <typename Float>
Float next(Float x, double y, const char *name) {
    if (is_nan(x)) return x + x;
    if (is_nan(y)) return static_cast<Float>(y + y);
    if (x == y) return static_cast<Float>(y);
    Float result = step(x, x < y);
    if (is_infinite(result) && is_finite(x))
        return static_cast<Float>(report(MathError::overflow, {name, x, y}, result));
    if (absolute_value(result) < least_normal<Float>)
        return static_cast<Float>(report(MathError::underflow, {name, x, y}, result));
    return result;
}

constexpr unsigned digit_of(char c) {
    if (c >= '0' && c <= '9') return c - '0';
    char lower = c | 0x20;
    return lower >= 'a' && lower <= 'f' ? lower - 'a' + 10 : 16;
}

// The payload that a tag names, 0 if it is not a number.
uint64_t payload(const char *tag) {
    unsigned base = 10;
    if (*tag == '0') {
        base = (tag[1] | 0x20) == 'x' ? 16 : 8;
        tag += base == 16 ? 2 : 1;
    }
    uint64_t value = 0;
    for (; *tag; ++tag) {
        if (digit_of(*tag) >= base) return 0;
        value = value * base + digit_of(*tag);
    }
    return value;
}

template <typename Float>
Float nan_of(const char *tag) {
    constexpr Bits<Float> quiet = implicit_bit<Float> >> 1;
    auto bits = static_cast<Bits<Float>>(payload(tag));
    return from_bits<Float>(infinity_bits<Float> | quiet | (bits & (quiet - 1)));
}

} // namespace

} // namespace vexrt

using namespace vexrt;

extern "C" {

double nextafter(double x, double y) { return next(x, y, "nextafter"); }
float nextafterf(float x, float y) { return next(x, y, "nextafterf"); }
long double nextafterl(long double x, long double y) { return next<double>(x, y, "nextafterl"); }

double nexttoward(double x, long double y) { return next(x, y, "nexttoward"); }
float nexttowardf(float x, long double y) { return next(x, y, "nexttowardf"); }
long double nexttowardl(long double x, long double y) { return next<double>(x, y, "nexttowardl"); }

double nan(const char *tag) { return nan_of<double>(tag); }
float nanf(const char *tag) { return nan_of<float>(tag); }
long double nanl(const char *tag) { return nan_of<double>(tag); }

} // extern "C"
