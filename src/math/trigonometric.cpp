// Sine, cosine, tangent.

#include "math/trigonometric.h"

#include "math/errors.h"
#include "math/primitives.h"

#include <math.h>

namespace vexrt {

namespace {

[[gnu::cold, gnu::noinline]] double no_angle(double x, const char *name) {
    if (is_nan(x)) return x + x;
    return report(MathError::domain, name, x, not_a_number);
}

// Tiny arguments, large ones, and those that are no angles.
[[gnu::noinline]] double rare_sine(double x, unsigned quadrant, const char *name) {
    if (absolute_value(x) < 0x1p-27) {
        if (quadrant & 1) return quadrant & 2 ? -1 : 1;
        double result = tiny_result(x, name);
        return quadrant & 2 ? -result : result;
    }
    if (!is_finite(x)) return no_angle(x, name);
    Reduced reduced = reduce_large(x);
    Pair result = sine_of(small_angle(reduced), reduced.step + quadrant * quarter_turn);
    return result.high + result.low;
}

// The sine of x and a number of quarter turns.
inline double sine(double x, unsigned quadrant, const char *name) {
    uint32_t magnitude = upper_word(x) & 0x7FFFFFFF;
    constexpr uint32_t least = upper_word(0x1p-27), most = upper_word(small_argument);
    if (__builtin_expect(magnitude - least >= most - least, false))
        return rare_sine(x, quadrant, name);
    Reduced reduced = reduce(x);
    Pair result = sine_of(small_angle(reduced), reduced.step + quadrant * quarter_turn);
    return result.high + result.low;
}

constexpr float float_tiny = 0x1p-13f;

[[gnu::noinline]] float rare_sine(float x, unsigned quadrant, const char *name) {
    if (absolute_value(x) < float_tiny) {
        if (quadrant & 1) return quadrant & 2 ? -1 : 1;
        float result = tiny_result(x, name);
        return quadrant & 2 ? -result : result;
    }
    if (!is_finite(x)) return static_cast<float>(no_angle(x, name));
    Reduced reduced = reduce_large(x);
    return static_cast<float>(sine_for_float(reduced.high, reduced.step + quadrant * quarter_turn));
}

// Neither tiny nor large.
inline bool is_ordinary_angle(float x) {
    constexpr uint32_t least = bits_of(float_tiny), most = bits_of(small_float_argument);
    return magnitude_bits(x) - least < most - least;
}

inline float sine(float x, unsigned quadrant, const char *name) {
    if (__builtin_expect(!is_ordinary_angle(x), false)) return rare_sine(x, quadrant, name);
    Reduced reduced = reduce_small(x);
    return static_cast<float>(sine_for_float(reduced.high, reduced.step + quadrant * quarter_turn));
}

double tangent(double x, const char *name) {
    double magnitude = absolute_value(x);
    if (magnitude < 0x1p-27) return tiny_result(x, name);
    if (__builtin_expect(!is_finite(x), false)) return no_angle(x, name);
    Reduced reduced = reduce(x);
    SmallAngle angle = small_angle(reduced);
    Pair sine = sine_of(angle, reduced.step);
    Pair cosine = sine_of(angle, reduced.step + quarter_turn);
    Pair quotient = sum_of_ordered(sine.high, sine.low) / sum_of_ordered(cosine.high, cosine.low);
    return quotient.high + quotient.low;
}

float tangent_of(const Reduced &reduced) {
    return static_cast<float>(sine_for_float(reduced.high, reduced.step) /
                              sine_for_float(reduced.high, reduced.step + quarter_turn));
}

[[gnu::noinline]] float rare_tangent(float x) {
    if (absolute_value(x) < float_tiny) return tiny_result(x, "tanf");
    if (!is_finite(x)) return static_cast<float>(no_angle(x, "tanf"));
    return tangent_of(reduce_large(x));
}

float tangent(float x) {
    if (__builtin_expect(!is_ordinary_angle(x), false)) return rare_tangent(x);
    return tangent_of(reduce_small(x));
}

constexpr const char *names[] = {"sin", "cos"};
constexpr const char *float_names[] = {"sinf", "cosf"};
constexpr const char *long_names[] = {"sinl", "cosl"};

} // namespace

} // namespace vexrt

using namespace vexrt;

extern "C" {

double sin(double x) { return sine(x, 0, "sin"); }
float sinf(float x) { return sine(x, 0, "sinf"); }
long double sinl(long double x) { return sine(static_cast<double>(x), 0, "sinl"); }

double cos(double x) { return sine(x, 1, "cos"); }
float cosf(float x) { return sine(x, 1, "cosf"); }
long double cosl(long double x) { return sine(static_cast<double>(x), 1, "cosl"); }

double tan(double x) { return tangent(x, "tan"); }
float tanf(float x) { return tangent(x); }
long double tanl(long double x) { return tangent(static_cast<double>(x), "tanl"); }

double __sin(double x, unsigned quadrant) { return sine(x, quadrant, names[quadrant & 1]); }
float __sinf(float x, unsigned quadrant) { return sine(x, quadrant, float_names[quadrant & 1]); }
long double __sinl(long double x, unsigned quadrant) {
    return sine(static_cast<double>(x), quadrant, long_names[quadrant & 1]);
}

} // extern "C"
