// Logarithms: log, log2, log10, log1p.

#include "math/logarithm.h"

#include "math/errors.h"
#include "math/primitives.h"

#include <math.h>

namespace vexrt {

namespace {

// The selector of `__log`.
enum Selector { natural, decimal, binary };

constexpr const char *names[] = {"log", "log10", "log2"};
constexpr const char *long_names[] = {"logl", "log10l", "log2l"};
constexpr const char *float_names[] = {"logf", "log10f", "log2f"};

// What has no finite logarithm; also NaNs.
[[gnu::cold, gnu::noinline]] double no_logarithm(double x, double distance, const char *name) {
    if (is_nan(x)) return x + x;
    if (distance == 0) return report(MathError::pole, name, x, -infinity);
    if (distance < 0) return report(MathError::domain, name, x, not_a_number);
    return x; // infinity
}

template <const LogarithmBase &base>
double logarithm(double x, const char *name) {
    if (__builtin_expect(!is_positive_and_finite(x), false)) return no_logarithm(x, x, name);
    if (x == 1) return 0; // in every rounding direction
    LogarithmArgument argument = logarithm_argument_of_any(x);
    Pair result =
        &base == &natural_logarithm ? natural_logarithm_of(argument) : logarithm_of(base, argument);
    return result.high + result.low;
}

template <const LogarithmBase &base>
[[gnu::noinline]] float rare_logarithm(float x, const char *name) {
    if (!is_positive_and_finite(x)) return static_cast<float>(no_logarithm(x, x, name));
    return static_cast<float>(logarithm_for_float<base>(static_cast<double>(x)));
}

template <const LogarithmBase &base>
float logarithm(float x, const char *name) {
    if (__builtin_expect(!is_positive_and_normal(x), false)) return rare_logarithm<base>(x, name);
    return static_cast<float>(logarithm_for_float<base>(x));
}

double logarithm_of_successor(double x, const char *name) {
    if (absolute_value(x) < 0x1p-54) return tiny_result(x, name);
    if (__builtin_expect(!(x > -1 && x < 0x1p1000), false)) // 1 / x vanishes
        return x > 0 ? logarithm<natural_logarithm>(x, name) : no_logarithm(x, x + 1, name);
    return plain_logarithm_of_successor(x);
}

float logarithm_of_successor(float x) {
    if (absolute_value(x) < 0x1p-26f) return tiny_result(x, "log1pf");
    if (__builtin_expect(!(x > -1) || !is_finite(x), false))
        return static_cast<float>(no_logarithm(x, x + 1.0, "log1pf"));
    return static_cast<float>(logarithm_for_float<natural_logarithm>(1.0 + x));
}

template <typename Result>
Result selected(Result x, int selector, const char *const (&callers)[3]) {
    switch (selector) {
    case decimal: return logarithm<decimal_logarithm>(x, callers[decimal]);
    case binary: return logarithm<binary_logarithm>(x, callers[binary]);
    default: return logarithm<natural_logarithm>(x, callers[natural]);
    }
}

} // namespace

} // namespace vexrt

using namespace vexrt;

extern "C" {

double log(double x) { return logarithm<natural_logarithm>(x, "log"); }
float logf(float x) { return logarithm<natural_logarithm>(x, "logf"); }
long double logl(long double x) { return logarithm<natural_logarithm>(double(x), "logl"); }

double log2(double x) { return logarithm<binary_logarithm>(x, "log2"); }
float log2f(float x) { return logarithm<binary_logarithm>(x, "log2f"); }
long double log2l(long double x) { return logarithm<binary_logarithm>(double(x), "log2l"); }

double log10(double x) { return logarithm<decimal_logarithm>(x, "log10"); }
float log10f(float x) { return logarithm<decimal_logarithm>(x, "log10f"); }
long double log10l(long double x) { return logarithm<decimal_logarithm>(double(x), "log10l"); }

double log1p(double x) { return logarithm_of_successor(x, "log1p"); }
float log1pf(float x) { return logarithm_of_successor(x); }
long double log1pl(long double x) { return logarithm_of_successor(double(x), "log1pl"); }

double __log(double x, int selector) { return selected(x, selector, names); }
float __logf(float x, int selector) { return selected(x, selector, float_names); }
long double __logl(long double x, int selector) {
    return selected(static_cast<double>(x), selector, long_names);
}

} // extern "C"
