// The floating-point environment.
//
// The flags of the x87 unit can be changed only by storing its whole environment, editing that and
// loading it again. Storing also masks all exceptions; the reload undoes that.

#include "core/cpu.h"

#include <fenv.h>
#include <float.h>

static_assert(sizeof(fenv_t) == 28);

namespace {

constexpr unsigned default_control = 0x027F;
constexpr unsigned empty_tags = 0xFFFF;

constexpr unsigned x87_masks = 0x3F;
constexpr unsigned x87_rounding_shift = 10;
constexpr unsigned sse_masks = 0x1F80;
constexpr unsigned sse_rounding_shift = 13;
constexpr unsigned rounding_field = 3;

} // namespace

extern "C" {
extern const fenv_t __dfl_fenv = {default_control, 0, 0, {}};
fenv_t __fenv = {default_control, 0, empty_tags, {}};
}

namespace vexrt {

namespace {

fenv_t stored_environment() {
    fenv_t environment;
    __asm__ volatile("fnstenv %0" : "=m"(environment));
    return environment;
}

void load_environment(const fenv_t &environment) {
    __asm__ volatile("fldenv %0" : : "m"(environment));
}

unsigned x87_status() {
    unsigned short status;
    __asm__ volatile("fnstsw %0" : "=a"(status));
    return status;
}

unsigned x87_control() {
    unsigned short control;
    __asm__ volatile("fnstcw %0" : "=m"(control));
    return control;
}

void set_x87_control(unsigned value) {
    auto control = static_cast<unsigned short>(value);
    __asm__ volatile("fldcw %0" : : "m"(control));
}

unsigned with_field(unsigned word, unsigned mask, unsigned bits) { return (word & ~mask) | bits; }

void change_x87_flags(unsigned mask, unsigned bits) {
    fenv_t environment = stored_environment();
    environment.__status = with_field(environment.__status, mask, bits);
    load_environment(environment);
}

bool has_sse() { return cpu_features & cpu_sse; }

void change_sse(unsigned mask, unsigned bits) {
    if (has_sse()) __builtin_ia32_ldmxcsr(with_field(__builtin_ia32_stmxcsr(), mask, bits));
}

unsigned known(int excepts) { return static_cast<unsigned>(excepts) & FE_ALL_EXCEPT; }

// The zero tag word of the default environment would mark all eight registers as full.
void load_for_user(const fenv_t *given) {
    fenv_t environment = *given;
    if (given == &__dfl_fenv) environment.__tags = empty_tags;
    load_environment(environment);
}

} // namespace

} // namespace vexrt

using namespace vexrt;

extern "C" {

int feclearexcept(int excepts) {
    change_x87_flags(known(excepts), 0);
    change_sse(known(excepts), 0);
    return 0;
}

int fegetexceptflag(fexcept_t *flags, int excepts) {
    *flags = x87_status() & known(excepts);
    return 0;
}

int feraiseexcept(int excepts) {
    static constexpr unsigned in_order[] = {FE_INVALID, FE_DIVBYZERO, FE_OVERFLOW, FE_UNDERFLOW,
                                            FE_INEXACT};
    // A flag that is set and masked stays as it is; reloading the environment takes its time.
    unsigned settled = x87_status() & x87_control();
    for (unsigned bit : in_order) {
        if (!(known(excepts) & bit & ~settled)) continue;
        change_x87_flags(bit, bit);
        __asm__ volatile("fwait");
    }
    return 0;
}

int fesetexceptflag(const fexcept_t *flags, int excepts) {
    unsigned mask = known(excepts);
    change_x87_flags(mask, *flags & mask);
    change_sse(mask, *flags & mask);
    return 0;
}

int fetestexcept(int excepts) {
    unsigned flags = x87_status() | (has_sse() ? __builtin_ia32_stmxcsr() : 0);
    return static_cast<int>(flags & known(excepts));
}

int fegetround() { return static_cast<int>(x87_control() >> x87_rounding_shift & rounding_field); }

int fesetround(int round) {
    auto direction = static_cast<unsigned>(round);
    if (direction > rounding_field) return 1;
    set_x87_control(with_field(x87_control(), rounding_field << x87_rounding_shift,
                               direction << x87_rounding_shift));
    change_sse(rounding_field << sse_rounding_shift, direction << sse_rounding_shift);
    return 0;
}

int __fprounds() {
    static constexpr unsigned char in_float_h[] = {1, 3, 2, 0};
    return in_float_h[fegetround()];
}

int fegetenv(fenv_t *environment) {
    *environment = stored_environment();
    load_environment(*environment);
    return 0;
}

int feholdexcept(fenv_t *environment) {
    fegetenv(environment);
    set_x87_control(environment->__control | x87_masks);
    change_sse(0, sse_masks);
    return 0;
}

int fesetenv(const fenv_t *environment) {
    load_for_user(environment);
    return 0;
}

int feupdateenv(const fenv_t *environment) {
    unsigned raised = x87_status();
    load_for_user(environment);
    return feraiseexcept(static_cast<int>(raised));
}

} // extern "C"
