/* The floating-point environment of both units. */
#include "check.h"
#include "child.h"

#include <fenv.h>
#include <float.h>
#include <string.h>

static unsigned mxcsr(void) { return __builtin_ia32_stmxcsr(); }
static unsigned x87_control(void)
{
    unsigned short control;
    __asm__ volatile("fnstcw %0" : "=m"(control));
    return control;
}

static void test_rounding(void)
{
    static const int rounds[] = {1, 3, 2, 0};
    for (int mode = 0; mode <= 3; ++mode) {
        CHECK_INT(fesetround(mode), 0);
        CHECK_INT(FLT_ROUNDS, rounds[mode]);
        CHECK_INT(fegetround(), mode);
        CHECK_INT(mxcsr() >> 13 & 3, mode);
        CHECK_INT(fesetround(4), 1);
        CHECK_INT(fesetround(-1), 1);
        CHECK_INT(fegetround(), mode);
    }
    volatile double one = 1, three = 3;
    fesetround(FE_UPWARD);
    double up = one / three;
    fesetround(FE_DOWNWARD);
    double down = one / three;
    fesetround(FE_TONEAREST);
    CHECK(up > down);
    CHECK(DBL_MAX == __DBL_MAX__ && DBL_TRUE_MIN == __DBL_DENORM_MIN__ && FLT_EPSILON == __FLT_EPSILON__);
    CHECK(FLT_MIN == __FLT_MIN__ && FLT_MAX == __FLT_MAX__ && LDBL_EPSILON == __DBL_EPSILON__);
}

static void test_flags(void)
{
    static const int all[] = {FE_INVALID, FE_DIVBYZERO, FE_OVERFLOW, FE_UNDERFLOW, FE_INEXACT};
    fexcept_t flags;
    CHECK_INT(feclearexcept(FE_ALL_EXCEPT), 0);
    CHECK_INT(fetestexcept(FE_ALL_EXCEPT), 0);
    for (int i = 0; i < 5; ++i) {
        feraiseexcept(all[i]);
        CHECK_INT(fetestexcept(FE_ALL_EXCEPT), all[i]);
        CHECK_INT(mxcsr() & FE_ALL_EXCEPT, 0); /* raising touches the x87 unit only */
        CHECK_INT(fegetexceptflag(&flags, FE_ALL_EXCEPT), 0);
        CHECK_INT(flags, all[i]);
        CHECK_INT(fegetexceptflag(&flags, 0), 0);
        CHECK_INT(flags, 0);
        feclearexcept(all[i]);
        CHECK_INT(fetestexcept(FE_ALL_EXCEPT), 0);
    }
    flags = FE_INEXACT | FE_OVERFLOW | 0x2;
    fesetexceptflag(&flags, FE_OVERFLOW | FE_INVALID | 0x2);
    CHECK_INT(fetestexcept(-1), FE_OVERFLOW);
    CHECK_INT(mxcsr() & 0x3F, FE_OVERFLOW);
    feclearexcept(FE_ALL_EXCEPT);
    volatile double zero = 0, one = 1;
    volatile double quotient = one / zero; /* in the SSE unit */
    (void)quotient;
    CHECK_INT(fetestexcept(FE_ALL_EXCEPT), FE_DIVBYZERO);
    CHECK_INT(fegetexceptflag(&flags, FE_ALL_EXCEPT), 0);
    CHECK_INT(flags, 0); /* read from the x87 unit only */
    feclearexcept(FE_DIVBYZERO);
    CHECK_INT(mxcsr() & 0x3F, 0);
}

static void test_environments(void)
{
    fenv_t saved;
    CHECK_INT(sizeof saved, 28);
    fesetround(FE_UPWARD);
    feraiseexcept(FE_INEXACT);
    CHECK_INT(fegetenv(&saved), 0);
    CHECK_INT(fesetenv(FE_DFL_ENV), 0);
    CHECK_INT(x87_control(), 0x27F);
    CHECK_INT(fegetround(), FE_TONEAREST);
    long double values[8];
    for (int i = 0; i < 8; ++i) __asm__ volatile("fld1"); /* all eight registers are free */
    for (int i = 0; i < 8; ++i) __asm__ volatile("fstpl %0" : "=m"(values[i]));
    CHECK(values[7] == 1);
    CHECK_INT(fetestexcept(FE_INVALID), 0);
    CHECK_INT(fesetenv(&saved), 0);
    CHECK_INT(fegetround(), FE_UPWARD);
    CHECK_INT(fetestexcept(FE_ALL_EXCEPT), FE_INEXACT);

    CHECK_INT(feholdexcept(&saved), 0);
    CHECK_INT(x87_control() & 0x3F, 0x3F);
    CHECK_INT(mxcsr() & 0x1F80, 0x1F80);
    CHECK_INT(fetestexcept(FE_ALL_EXCEPT), FE_INEXACT); /* the flags stay */
    feclearexcept(FE_ALL_EXCEPT);
    feraiseexcept(FE_OVERFLOW);
    CHECK_INT(feupdateenv(&saved), 0);
    CHECK_INT(fetestexcept(FE_ALL_EXCEPT), FE_INEXACT | FE_OVERFLOW);
    CHECK_INT(feupdateenv(FE_DFL_ENV), 0);
    CHECK_INT(fetestexcept(FE_ALL_EXCEPT), FE_INEXACT | FE_OVERFLOW);
    feclearexcept(FE_ALL_EXCEPT);
    CHECK_INT(__fenv.__control, 0x27F);
    fesetround(FE_TONEAREST);
}

/* In a child: an unmasked exception traps when it is raised. */
static int trap(void)
{
    unsigned short control = 0x27F & ~FE_OVERFLOW;
    __asm__ volatile("fldcw %0" : : "m"(control));
    feraiseexcept(FE_INEXACT | FE_INVALID);
    fenv_t environment;
    fegetenv(&environment); /* storing masks, the reload undoes that */
    __try {
        feraiseexcept(FE_OVERFLOW);
        return 1;
    } __except (1) {
        return (int)(__exception_code() & 0xFF);
    }
}

int main(int argc, char **argv)
{
    if (argc > 1) return trap();
    test_rounding();
    test_flags();
    test_environments();
    CHECK_INT(child_run("trap", NULL).status, 0x91); /* floating-point overflow */
    return check_done();
}
