// How mathematics reports errors.
//
// A function that detects one computes its default result without raising flags, and calls
// `report`. A hook that the program has installed may handle the error: then its result is
// returned, no flag is raised and errno stays. Otherwise the exception is raised on the x87 unit
// and errno is set: EDOM for domain and pole errors, ERANGE for the others.
#pragma once

#include "math/bits.h"

namespace vexrt {

enum class MathError { domain, pole, overflow, underflow, inexact };

// A call as its caller knows it: the public name and the arguments. For functions of one argument
// the second is a copy of the first.
struct Call {
    const char *name;
    double first, second;
};

[[gnu::cold, gnu::noinline]] double report(MathError error, const Call &call, double result);

[[gnu::cold, gnu::noinline]] double report(MathError error, const char *name, double argument,
                                           double result);

// A finite result of double arithmetic as a float; `call` reports its overflow and underflow.
// Values between the greatest float and infinity round as the direction says.
[[gnu::cold, gnu::noinline]] float narrow_extreme(double value, const Call &call);

// Whether a conversion to float may overflow or lose bits below the normal range.
inline bool is_extreme_for_float(double value) {
    uint32_t magnitude = upper_word(value) & 0x7FFFFFFF;
    return magnitude - 0x38100000 >= 0x47EFFFFF - 0x38100000;
}

inline float narrow(double value, const Call &call) {
    if (__builtin_expect(is_extreme_for_float(value), false)) return narrow_extreme(value, call);
    return static_cast<float>(value);
}

inline float narrow(double value, const char *name, float argument) {
    if (__builtin_expect(is_extreme_for_float(value), false))
        return narrow_extreme(value, {name, argument, argument});
    return static_cast<float>(value);
}

// The value of a function that is x + O(x^2) or closer, for an x so small that x is the result.
[[gnu::cold]] double tiny_result(double x, const char *name);
[[gnu::cold]] float tiny_result(float x, const char *name);

} // namespace vexrt
