/* The members for long double, which is double: each gives, bit for bit, what the plain one gives; and those
   of the float forms that no sweep goes through. */
#include "check.h"

#include <complex.h>
#include <fenv.h>
#include <float.h>
#include <math.h>

int __fprounds(void);

static const double values[] = {0.0, -0.0, 0.3, -0.7, 1.0, 2.5, -3.75, 17.0, 1e-300, 1e300, -INFINITY, INFINITY};
enum { COUNT = sizeof values / sizeof *values };

static int differ(const void *a, const void *b, size_t size) { return memcmp(a, b, size) != 0; }
static int is_nan_pair(double a, double b) { return a != a && b != b; }

#define UNARY(X)                                                                                   \
    X(acos) X(acosh) X(asin) X(asinh) X(atan) X(atanh) X(cbrt) X(ceil) X(cos) X(cosh) X(erf)       \
    X(erfc) X(exp) X(exp2) X(expm1) X(fabs) X(floor) X(lgamma) X(log) X(log10) X(log1p) X(log2)    \
    X(logb) X(nearbyint) X(rint) X(round) X(sin) X(sinh) X(sqrt) X(tan) X(tanh) X(tgamma) X(trunc)
#define BINARY(X)                                                                                  \
    X(atan2) X(copysign) X(fdim) X(fmax) X(fmin) X(fmod) X(hypot) X(nextafter) X(nexttoward)       \
    X(pow) X(remainder)
#define INTEGER(X) X(ilogb) X(llrint) X(llround) X(lrint) X(lround)
#define COMPLEX(X)                                                                                 \
    X(cacos) X(cacosh) X(casin) X(casinh) X(catan) X(catanh) X(ccos) X(ccosh) X(cexp) X(clog)      \
    X(conj) X(cproj) X(csin) X(csinh) X(csqrt) X(ctan) X(ctanh)

static void test_real(void)
{
    for (int i = 0; i < COUNT; ++i) {
        double x = values[i], a, b;
#define X(name)                                                                                    \
    a = name(x), b = (double)name##l(x);                                                           \
    check_label = #name "l";                                                                       \
    CHECK(!differ(&a, &b, sizeof a) || is_nan_pair(a, b));
        UNARY(X)
#undef X
#define X(name)                                                                                    \
    check_label = #name "l";                                                                       \
    if (fabs(x) < 1e18) CHECK_INT(name##l(x), name(x));
        INTEGER(X)
#undef X
        for (int k = 0; k < COUNT; ++k) {
            double y = values[k];
#define X(name)                                                                                    \
    a = name(x, y), b = (double)name##l(x, y);                                                     \
    check_label = #name "l";                                                                       \
    CHECK(!differ(&a, &b, sizeof a) || is_nan_pair(a, b));
            BINARY(X)
#undef X
        }
    }
    check_label = "";
    int exponent, quotient, quotient_l;
    long double part;
    float single;
    CHECK(frexpl(12.0L, &exponent) == 0.75L && exponent == 4);
    CHECK(frexpf(12.0f, &exponent) == 0.75f && exponent == 4);
    CHECK(modfl(-3.5L, &part) == -0.5L && part == -3);
    CHECK(modff(-3.5f, &single) == -0.5f && single == -3);
    CHECK(ldexpl(0.75L, 4) == 12 && scalbnl(3, 2) == 12 && scalblnl(3, 2) == 12);
    CHECK(scalbnf(3, 2) == 12 && scalblnf(3, 2) == 12);
    CHECK(fmal(2, 3, 4) == 10);
    CHECK(remquol(29, 3, &quotient_l) == remquo(29, 3, &quotient) && quotient == quotient_l);
    CHECK(remquof(29, 3, &quotient) == -1 && (quotient & 7) == (10 & 7));
    CHECK(remainderf(29, 3) == -1 && atan2f(0, -1) == (float)M_PI && copysignf(2, -0.0f) == -2);
    CHECK(fmaxf(1, NAN) == 1 && fminf(NAN, 2) == 2 && hypotf(3, 4) == 5 && nexttowardf(1, 2) == 1 + FLT_EPSILON);
    CHECK(lrintf(2.5f) == 2 && lroundf(2.5f) == 3 && nanl("")!= nanl(""));
    CHECK_INT(__fprounds(), fegetround() == FE_TONEAREST ? 1 : -1);
}

static void test_complex(void)
{
    for (int i = 2; i < 8; ++i)
        for (int k = 2; k < 8; ++k) {
            double complex z = CMPLX(values[i], values[k]), a, b;
            float complex zf = CMPLXF((float)values[i], (float)values[k]);
            double difference;
#define X(name)                                                                                    \
    check_label = #name;                                                                           \
    a = name(z), b = name##l(z);                                                                   \
    CHECK(!differ(&a, &b, sizeof a));                                                              \
    difference = cabs(name##f(zf) - a) / cabs(a);                                                  \
    CHECK(difference < 2e-6);
            COMPLEX(X)
#undef X
            check_label = "";
            CHECK(creall(z) == creal(z) && cimagl(z) == cimag(z) && cabsl(z) == cabs(z) && cargl(z) == carg(z));
            CHECK(cpowl(z, 2) == cpow(z, 2));
            CHECK(cabs(cpowf(zf, 2) - cpow(z, 2)) < 4e-6 * cabs(z * z));
            CHECK(fabs(cargf(zf) - carg(z)) < 1e-6 && fabs(cabsf(zf) - cabs(z)) < 2e-6 * cabs(z));
        }
}

int main(void)
{
    test_real();
    test_complex();
    return check_done();
}
