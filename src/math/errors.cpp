#include "math/errors.h"

#include "core/errno.h"

#include <fenv.h>
#include <math.h>

namespace vexrt {

namespace {

// Shared by all threads and not locked: storing it is a single write.
int (*volatile hook)(struct _exception *);

struct Kind {
    int type, excepts;
};

// In the order of MathError. The records know three types; what is neither an overflow nor an
// underflow bears the first.
constexpr Kind kinds[] = {{_DOMAIN, FE_INVALID},
                          {_DOMAIN, FE_DIVBYZERO},
                          {_OVERFLOW, FE_OVERFLOW},
                          {_UNDERFLOW, FE_UNDERFLOW},
                          {_DOMAIN, FE_INEXACT}};

// Raising the exception and setting errno.
void error_step(int excepts) {
    feraiseexcept(excepts);
    if (excepts & (FE_INVALID | FE_DIVBYZERO))
        set_errno(EDOM); // a pole error, too: deliberately not ERANGE
    else if (excepts & (FE_OVERFLOW | FE_UNDERFLOW | FE_INEXACT))
        set_errno(ERANGE);
}

} // namespace

double report(MathError error, const Call &call, double result) {
    Kind kind = kinds[static_cast<int>(error)];
    if (auto *handler = hook) {
        struct _exception record = {kind.type, call.name, call.first, call.second, result};
        if (handler(&record)) return record.retval;
        // What a hook that declines has changed does not count.
    }
    error_step(kind.excepts);
    return result;
}

double report(MathError error, const char *name, double argument, double result) {
    return report(error, Call{name, argument, argument}, result);
}

// Adding a number whose unit in the last place is that of the subnormal floats rounds to them
// without the conversion's raising anything.
float narrow_extreme(double value, const Call &call) {
    double magnitude = absolute_value(value);
    if (value == 0 || !(magnitude < infinity)) return static_cast<float>(value);
    if (magnitude < least_normal<float>) {
        double shift = with_sign_of(0x1.8p-97, value);
        double rounded = (value + shift) - shift;
        rounded = with_sign_of(rounded, value); // a zero, too
        // An exact result may come with the error of the computation in double.
        bool exact = absolute_value(value - rounded) <= 0x1p-40 * magnitude;
        if (exact) return static_cast<float>(rounded);
        return static_cast<float>(report(MathError::underflow, call, rounded));
    }
    if (magnitude <= greatest_finite<float>) return static_cast<float>(value);
    // The greatest float with 24 more bits of its own size: what rounds to it, does so here.
    double unit = with_sign_of(0x1.8p156, value);
    double rounded = (value + unit) - unit;
    if (absolute_value(rounded) <= greatest_finite<float>) return static_cast<float>(rounded);
    return static_cast<float>(report(MathError::overflow, call, with_sign_of(infinity, value)));
}

double tiny_result(double x, const char *name) {
    return is_subnormal(x) ? report(MathError::underflow, name, x, x) : x;
}

float tiny_result(float x, const char *name) {
    return is_subnormal(x) ? static_cast<float>(report(MathError::underflow, name, x, x)) : x;
}

} // namespace vexrt

using namespace vexrt;

extern "C" void __setmatherr(int (*handler)(struct _exception *)) { hook = handler; }
