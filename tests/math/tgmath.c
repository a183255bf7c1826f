/* The type-generic macros pick the member of their arguments' types; no macro evaluates one twice. */
#include "check.h"

#include <limits.h>
#include <tgmath.h>

enum kind { kf = 1, kd, kl, cf, cd, cl, ki, kil, kill };

#define KIND(x)                                                                                    \
    _Generic((x), float: kf, double: kd, long double: kl, float _Complex: cf, double _Complex: cd,    \
        long double _Complex: cl, int: ki, long: kil, long long: kill)

static float xf = 0.5f;
static double x = 0.5;
static long double xl = 0.5;
static float complex zf = 0.5f;
static double complex z = 0.5;
static long double complex zl = 0.5;
static int n = 1;

#define BOTH(name)                                                                                 \
    do {                                                                                           \
        check_label = #name;                                                                       \
        CHECK_INT(KIND(name(xf)), kf);                                                              \
        CHECK_INT(KIND(name(x)), kd);                                                               \
        CHECK_INT(KIND(name(xl)), kl);                                                              \
        CHECK_INT(KIND(name(zf)), cf);                                                             \
        CHECK_INT(KIND(name(z)), cd);                                                              \
        CHECK_INT(KIND(name(zl)), cl);                                                             \
        CHECK_INT(KIND(name(n)), kd);                                                               \
        CHECK(name(x) == (name)(x));                                                               \
        CHECK(crealf(name(zf)) - name(xf) < 1e-5f);                                                \
    } while (0)

#define REAL(name)                                                                                 \
    do {                                                                                           \
        check_label = #name;                                                                       \
        CHECK_INT(KIND(name(xf)), kf);                                                              \
        CHECK_INT(KIND(name(x)), kd);                                                               \
        CHECK_INT(KIND(name(xl)), kl);                                                              \
        CHECK_INT(KIND(name(1)), kd);                                                               \
        CHECK(name(x) == (name)(x));                                                               \
    } while (0)

#define REAL2(name)                                                                                \
    do {                                                                                           \
        check_label = #name;                                                                       \
        CHECK_INT(KIND(name(xf, xf)), kf);                                                          \
        CHECK_INT(KIND(name(xf, x)), kd);                                                           \
        CHECK_INT(KIND(name(xf, n)), kd);                                                           \
        CHECK_INT(KIND(name(n, n)), kd);                                                            \
        CHECK_INT(KIND(name(xl, xf)), kl);                                                          \
        CHECK(name(x, 2) == (name)(x, 2));                                                         \
    } while (0)

#define PART(name, real)                                                                           \
    do {                                                                                           \
        check_label = #name;                                                                       \
        CHECK_INT(KIND(name(zf)), real ? kf : cf);                                                  \
        CHECK_INT(KIND(name(z)), real ? kd : cd);                                                   \
        CHECK_INT(KIND(name(zl)), real ? kl : cl);                                                  \
        CHECK_INT(KIND(name(xf)), real ? kf : cf);                                                  \
        CHECK_INT(KIND(name(n)), real ? kd : cd);                                                   \
    } while (0)

int main(void)
{
    BOTH(acos); BOTH(asin); BOTH(atan); BOTH(asinh); BOTH(atanh); BOTH(cos); BOTH(sin); BOTH(tan);
    BOTH(cosh); BOTH(sinh); BOTH(tanh); BOTH(exp); BOTH(log); BOTH(sqrt);
    REAL(cbrt); REAL(ceil); REAL(erf); REAL(erfc); REAL(exp2); REAL(expm1); REAL(floor); REAL(lgamma);
    REAL(log10); REAL(log1p); REAL(log2); REAL(logb); REAL(nearbyint); REAL(rint); REAL(round);
    REAL(tgamma); REAL(trunc);
    REAL2(atan2); REAL2(copysign); REAL2(fdim); REAL2(fmax); REAL2(fmin); REAL2(fmod); REAL2(hypot);
    REAL2(nextafter); REAL2(remainder); REAL2(pow);
    PART(carg, 1); PART(cimag, 1); PART(creal, 1); PART(conj, 0); PART(cproj, 0);
    check_label = "";
    CHECK_INT(KIND(fabs(z)), kd);
    CHECK_INT(KIND(fabs(zf)), kf);
    CHECK_INT(KIND(fabs(xl)), kl);
    CHECK_INT(KIND(pow(zf, x)), cd);
    CHECK_INT(KIND(pow(zf, n)), cd);
    CHECK_INT(KIND(fma(xf, xf, xf)), kf);
    CHECK_INT(KIND(fma(xf, x, xf)), kd);
    CHECK_INT(KIND(ilogb(xf)), ki);
    CHECK_INT(KIND(lrint(xf)), kil);
    CHECK_INT(KIND(llround(x)), kill);
    CHECK_INT(KIND(ldexp(xf, n)), kf);
    CHECK_INT(KIND(scalbn(x, n)), kd);
    CHECK_INT(KIND(nexttoward(xf, xl)), kf);
    CHECK_INT(KIND(acosh(2.0f)), kf);
    int quotient, exponent, calls = 0;
    CHECK(remquo(7.0f, 2, &quotient) == -1 && (quotient & 7) == 4);
    CHECK(frexp(8.0f, &exponent) == 0.5f && exponent == 4);
    CHECK(scalbln(xf, 2L) == 2 && fma(2, 3, 4) == 10);
    (void)sqrt((double)++calls);
    (void)pow((float)++calls, 2);
    CHECK_INT(calls, 2);
    return check_done();
}
