// Rounding to integer types: lrint, llrint in the current direction, lround, llround with halves
// away from zero. What the type cannot hold is a domain error, with the type's least value.

#include "math/errors.h"
#include "math/round.h"

#include <limits.h>
#include <math.h>

namespace vexrt {

namespace {

template <typename Integer>
struct Limits;
template <>
struct Limits<long> {
    static constexpr double beyond = 0x1p31;
    static constexpr long least = LONG_MIN;
};
template <>
struct Limits<long long> {
    static constexpr double beyond = 0x1p63;
    static constexpr long long least = LLONG_MIN;
};

template <typename Integer>
bool fits(double whole) {
    return whole >= -Limits<Integer>::beyond && whole < Limits<Integer>::beyond;
}

// A hook may have put another result in the place of the least value.
template <typename Integer>
[[gnu::cold, gnu::noinline]] Integer out_of_range(double x, const char *name) {
    constexpr Integer least = Limits<Integer>::least;
    double result = report(MathError::domain, name, x, static_cast<double>(least));
    return fits<Integer>(result) ? static_cast<Integer>(result) : least;
}

template <typename Integer>
Integer converted(double whole, double x, const char *name) {
    if (!fits<Integer>(whole)) return out_of_range<Integer>(x, name);
    return static_cast<Integer>(whole);
}

// The x87 unit's store rounds in the direction of that unit, which is the program's.
long stored(double x, long) {
    long result;
    __asm__("fistpl %0" : "=m"(result) : "t"(x) : "st");
    return result;
}

long long stored(double x, long long) {
    long long result;
    __asm__("fistpll %0" : "=m"(result) : "t"(x) : "st");
    return result;
}

template <typename Integer>
Integer rounded_in_direction_to(double x, const char *name) {
    if (__builtin_expect(absolute_value(x) < Limits<Integer>::beyond - 1, true))
        return stored(x, Integer());
    return converted<Integer>(rounded_in_direction(x), x, name);
}

template <typename Integer>
Integer rounded_to(double x, const char *name) {
    return converted<Integer>(rounded_half_away(x), x, name);
}

} // namespace

} // namespace vexrt

using namespace vexrt;

extern "C" {

long lrint(double x) { return rounded_in_direction_to<long>(x, "lrint"); }
long lrintf(float x) { return rounded_in_direction_to<long>(x, "lrintf"); }
long lrintl(long double x) { return rounded_in_direction_to<long>(x, "lrintl"); }

long long llrint(double x) { return rounded_in_direction_to<long long>(x, "llrint"); }
long long llrintf(float x) { return rounded_in_direction_to<long long>(x, "llrintf"); }
long long llrintl(long double x) { return rounded_in_direction_to<long long>(x, "llrintl"); }

long lround(double x) { return rounded_to<long>(x, "lround"); }
long lroundf(float x) { return rounded_to<long>(x, "lroundf"); }
long lroundl(long double x) { return rounded_to<long>(x, "lroundl"); }

long long llround(double x) { return rounded_to<long long>(x, "llround"); }
long long llroundf(float x) { return rounded_to<long long>(x, "llroundf"); }
long long llroundl(long double x) { return rounded_to<long long>(x, "llroundl"); }

} // extern "C"
