/* options: -fno-builtin */
/*
 * Complex functions of special arguments (Annex G): infinities, NaNs, zeros and branch cuts, for the
 * argument and its conjugate, in three precisions; multiplication and division.
 */
#include "check.h"

#include <complex.h>
#include <fenv.h>
#include <math.h>

double complex __cxmul(double complex x, double complex y);
double complex __cxdiv(double complex x, double complex y);

#define INF HUGE_VAL
#define PI M_PI

struct c {
    const char *name;
    double complex (*f)(double complex);
    float complex (*ff)(float complex);
    long double complex (*fl)(long double complex);
    double x, y, real, imaginary;
    int invalid; /* -1: may */
    int either;  /* 1: the real part's sign is not told, 2: the imaginary's, 3: both */
};

#define F(name) #name, name, name##f, name##l

/* For a positive x and y where not otherwise. */
static const struct c cases[] = {
    {F(cacos), 0, 0, PI / 2, -0.0, 0, 0}, {F(cacos), 0, NAN, PI / 2, NAN, 0, 0}, {F(cacos), 3, INF, PI / 2, -INF, 0, 0},
    {F(cacos), 3, NAN, NAN, NAN, -1, 0}, {F(cacos), -INF, 3, PI, -INF, 0, 0}, {F(cacos), INF, 3, 0, -INF, 0, 0},
    {F(cacos), -INF, INF, 3 * PI / 4, -INF, 0, 0}, {F(cacos), INF, INF, PI / 4, -INF, 0, 0},
    {F(cacos), INF, NAN, NAN, INF, 0, 2}, {F(cacos), NAN, 3, NAN, NAN, -1, 0}, {F(cacos), NAN, INF, NAN, -INF, 0, 0},
    {F(cacos), NAN, NAN, NAN, NAN, 0, 0}, {F(cacos), 1, 0, 0, -0.0, 0, 0}, {F(cacos), -1, 0, PI, -0.0, 0, 0},
    {F(cacosh), 0, 0, 0, PI / 2, 0, 0}, {F(cacosh), 3, INF, INF, PI / 2, 0, 0}, {F(cacosh), 3, NAN, NAN, NAN, -1, 0},
    {F(cacosh), -INF, 3, INF, PI, 0, 0}, {F(cacosh), INF, 3, INF, 0, 0, 0}, {F(cacosh), -INF, INF, INF, 3 * PI / 4, 0, 0},
    {F(cacosh), INF, INF, INF, PI / 4, 0, 0}, {F(cacosh), INF, NAN, INF, NAN, 0, 0}, {F(cacosh), NAN, 3, NAN, NAN, -1, 0},
    {F(cacosh), NAN, INF, INF, NAN, 0, 0}, {F(cacosh), NAN, NAN, NAN, NAN, 0, 0}, {F(cacosh), 1, 0, 0, 0, 0, 0},
    {F(casinh), 0, 0, 0, 0, 0, 0}, {F(casinh), 3, INF, INF, PI / 2, 0, 0}, {F(casinh), 3, NAN, NAN, NAN, -1, 0},
    {F(casinh), INF, 3, INF, 0, 0, 0}, {F(casinh), INF, INF, INF, PI / 4, 0, 0}, {F(casinh), INF, NAN, INF, NAN, 0, 0},
    {F(casinh), NAN, 0, NAN, 0, 0, 0}, {F(casinh), NAN, 3, NAN, NAN, -1, 0}, {F(casinh), NAN, INF, INF, NAN, 0, 1},
    {F(casin), 0, 0, 0, 0, 0, 0}, {F(casin), 1, 0, PI / 2, 0, 0, 0}, {F(casin), 3, INF, 0, INF, 0, 0},
    {F(catanh), 0, 0, 0, 0, 0, 0}, {F(catanh), 0, NAN, 0, NAN, 0, 0}, {F(catanh), 3, INF, 0, PI / 2, 0, 0},
    {F(catanh), 3, NAN, NAN, NAN, -1, 0}, {F(catanh), INF, 3, 0, PI / 2, 0, 0}, {F(catanh), INF, INF, 0, PI / 2, 0, 0},
    {F(catanh), INF, NAN, 0, NAN, 0, 0}, {F(catanh), NAN, 3, NAN, NAN, -1, 0}, {F(catanh), NAN, INF, 0, PI / 2, 0, 1},
    {F(catan), 0, 0, 0, 0, 0, 0}, {F(catan), INF, 3, PI / 2, 0, 0, 0},
    {F(ccosh), 0, 0, 1, 0, 0, 0}, {F(ccosh), 0, INF, NAN, 0, 1, 2}, {F(ccosh), 0, NAN, NAN, 0, 0, 2},
    {F(ccosh), 3, INF, NAN, NAN, 1, 0}, {F(ccosh), 3, NAN, NAN, NAN, -1, 0}, {F(ccosh), INF, 0, INF, 0, 0, 0},
    {F(ccosh), INF, 2, -INF, INF, 0, 0}, {F(ccosh), INF, INF, INF, NAN, 1, 1}, {F(ccosh), INF, NAN, INF, NAN, 0, 0},
    {F(ccosh), NAN, 0, NAN, 0, 0, 2}, {F(ccosh), NAN, 3, NAN, NAN, -1, 0},
    {F(csinh), 0, 0, 0, 0, 0, 0}, {F(csinh), 0, INF, 0, NAN, 1, 1}, {F(csinh), 0, NAN, 0, NAN, 0, 1},
    {F(csinh), 3, INF, NAN, NAN, 1, 0}, {F(csinh), 3, NAN, NAN, NAN, -1, 0}, {F(csinh), INF, 0, INF, 0, 0, 0},
    {F(csinh), INF, 2, -INF, INF, 0, 0}, {F(csinh), INF, INF, INF, NAN, 1, 1}, {F(csinh), INF, NAN, INF, NAN, 0, 1},
    {F(csinh), NAN, 0, NAN, 0, 0, 0}, {F(csinh), NAN, 3, NAN, NAN, -1, 0},
    {F(ctanh), 0, 0, 0, 0, 0, 0}, {F(ctanh), 3, INF, NAN, NAN, 1, 0}, {F(ctanh), 3, NAN, NAN, NAN, -1, 0},
    {F(ctanh), INF, 2, 1, -0.0, 0, 0}, {F(ctanh), INF, 1, 1, 0, 0, 0}, {F(ctanh), INF, INF, 1, 0, 0, 2},
    {F(ctanh), INF, NAN, 1, 0, 0, 2}, {F(ctanh), NAN, 0, NAN, 0, 0, 0}, {F(ctanh), NAN, 3, NAN, NAN, -1, 0},
    {F(csin), 0, 0, 0, 0, 0, 0}, {F(ccos), 0, 0, 1, -0.0, 0, 0}, {F(ctan), 0, 0, 0, 0, 0, 0}, {F(csin), 2, INF, INF, -INF, 0, 0},
    {F(cexp), 0, 0, 1, 0, 0, 0}, {F(cexp), 3, INF, NAN, NAN, 1, 0}, {F(cexp), 3, NAN, NAN, NAN, -1, 0},
    {F(cexp), INF, 0, INF, 0, 0, 0}, {F(cexp), -INF, 2, -0.0, 0, 0, 0}, {F(cexp), INF, 2, -INF, INF, 0, 0},
    {F(cexp), -INF, INF, 0, 0, 0, 3}, {F(cexp), INF, INF, INF, NAN, 1, 1}, {F(cexp), -INF, NAN, 0, 0, 0, 3},
    {F(cexp), INF, NAN, INF, NAN, 0, 1}, {F(cexp), NAN, 0, NAN, 0, 0, 0}, {F(cexp), NAN, 3, NAN, NAN, -1, 0},
    {F(cexp), 1e10, 2, -INF, INF, 0, 0}, {F(cexp), -1e10, 2, -0.0, 0, 0, 0}, {F(csinh), 1e10, 2, -INF, INF, 0, 0},
    {F(ccosh), -1e10, 2, -INF, -INF, 0, 0}, {F(ctanh), 710, 2, 1, -0.0, 0, 0}, {F(ctanh), -1e30, 1, -1, 0, 0, 0},
    {F(clog), -1, 0, 0, PI, 0, 0}, {F(clog), 3, INF, INF, PI / 2, 0, 0}, {F(clog), 3, NAN, NAN, NAN, -1, 0},
    {F(clog), -INF, 3, INF, PI, 0, 0}, {F(clog), INF, 3, INF, 0, 0, 0}, {F(clog), -INF, INF, INF, 3 * PI / 4, 0, 0},
    {F(clog), INF, INF, INF, PI / 4, 0, 0}, {F(clog), INF, NAN, INF, NAN, 0, 0}, {F(clog), NAN, 3, NAN, NAN, -1, 0},
    {F(clog), NAN, INF, INF, NAN, 0, 0},
    {F(csqrt), 0, 0, 0, 0, 0, 0}, {F(csqrt), -0.0, 0, 0, 0, 0, 0}, {F(csqrt), 3, INF, INF, INF, 0, 0},
    {F(csqrt), NAN, INF, INF, INF, 0, 0}, {F(csqrt), 3, NAN, NAN, NAN, -1, 0}, {F(csqrt), -INF, 3, 0, INF, 0, 0},
    {F(csqrt), INF, 3, INF, 0, 0, 0}, {F(csqrt), -INF, NAN, NAN, INF, 0, 2}, {F(csqrt), INF, NAN, INF, NAN, 0, 0},
    {F(csqrt), NAN, 3, NAN, NAN, -1, 0}, {F(csqrt), -4, 0, 0, 2, 0, 0}, {F(csqrt), 3, 4, 2, 1, 0, 0},
    {F(cproj), -INF, 3, INF, 0, 0, 0}, {F(cproj), NAN, INF, INF, 0, 0, 0}, {F(cproj), 2, 3, 2, 3, 0, 0},
};

static int same(double got, double due, int either, double tolerance)
{
    if (due != due) return got != got;
    if (either) return fabs(got) == fabs(due);
    if (due == 0 || due - due != 0) return got == due && !signbit(got) == !signbit(due);
    return fabs(got - due) <= tolerance * fabs(due);
}

static void check_one(const struct c *c, double complex got, double x, double y, double tolerance,
                      const char *precision)
{
    char text[96];
    int raised = fetestexcept(FE_INVALID) != 0;
    double imaginary = signbit(y) ? -c->imaginary : c->imaginary;
    sprintf(text, "%s%s(%g, %g)", c->name, precision, x, y);
    check_label = text;
    int ok = same(creal(got), c->real, c->either & 1, tolerance) &&
             same(cimag(got), imaginary, c->either & 2, tolerance);
    CHECK(ok);
    if (!ok) printf("  got %g %g, due %g %g\n", creal(got), cimag(got), c->real, imaginary);
    if (c->invalid >= 0) CHECK_INT(raised, c->invalid);
    check_label = "";
}

static void test_special(void)
{
    for (size_t i = 0; i < sizeof cases / sizeof *cases; ++i) {
        const struct c *c = cases + i;
        for (int conjugate = 0; conjugate < 2; ++conjugate) {
            double y = conjugate ? -c->y : c->y;
            feclearexcept(FE_ALL_EXCEPT);
            check_one(c, c->f(CMPLX(c->x, y)), c->x, y, 0x1p-51, "");
            feclearexcept(FE_ALL_EXCEPT);
            check_one(c, c->fl(CMPLXL(c->x, y)), c->x, y, 0x1p-51, "l");
            feclearexcept(FE_ALL_EXCEPT);
            check_one(c, c->ff(CMPLXF((float)c->x, (float)y)), c->x, y, 0x1p-22, "f");
        }
    }
    feclearexcept(FE_ALL_EXCEPT);
    double complex pole = clog(CMPLX(-0.0, 0));
    CHECK(creal(pole) == -INF && cimag(pole) == PI && fetestexcept(FE_DIVBYZERO));
    feclearexcept(FE_ALL_EXCEPT);
    pole = catanh(CMPLX(1, 0));
    CHECK(creal(pole) == INF && cimag(pole) == 0 && fetestexcept(FE_DIVBYZERO));
}

/* x / (x^2 + y^2), within a unit in the last place: dividing twice by a rounded root is not. */
static void test_huge_inverse_tangents(void)
{
    double complex area = catanh(CMPLX(0xe.cef61659f933p+57, -0xf.f2458691c2918p+56));
    CHECK(fabs(creal(area) - 0x1.acde9b339f6e7p-62) <= 0x1p-114);
    double complex angle = catan(CMPLX(-0xe.580536460c55p+61, 0x8.e54346842eb68p+61));
    CHECK(fabs(cimag(angle) - 0x1.ff9b7283eff8bp-67) <= 0x1p-119);
}

static void check_value(double complex got, double real, double imaginary, const char *what)
{
    check_label = what;
    int ok = same(creal(got), real, 0, 0x1p-50) && same(cimag(got), imaginary, 0, 0x1p-50);
    CHECK(ok);
    if (!ok) printf("  got %.17g %.17g, due %.17g %.17g\n", creal(got), cimag(got), real, imaginary);
    check_label = "";
}

static void test_power_and_parts(void)
{
    check_value(cpow(CMPLX(2, 0), CMPLX(3, 0)), 8, 0, "2^3");
    check_value(cpow(CMPLX(0, 0), CMPLX(0, 0)), 1, 0, "0^0");
    check_value(cpow(CMPLX(0, 0), CMPLX(2, 1)), 0, 0, "0^(2+i)");
    check_value(cpow(CMPLX(-1, 0), CMPLX(0.5, 0)), cos(PI / 2), 1, "(-1)^0.5");
    check_value(catanh(CMPLX(-1e300, 1e300)), -5e-301, PI / 2, "catanh of a huge number");
    check_value(cpow(CMPLX(0, 1), CMPLX(0, 1)), 0.20787957635076191, 0, "i^i");
    check_value(cpow(CMPLX(1, 1), CMPLX(10, 0)), creal(cpow(CMPLX(1, 1), CMPLX(10, 0))), 32, "(1+i)^10");
    CHECK(cabs(CMPLX(3, -4)) == 5 && cabsf(CMPLXF(-INF, NAN)) == INF && cabsl(CMPLXL(NAN, 1)) != 5);
    CHECK(carg(CMPLX(-0.0, -0.0)) == -PI && cargf(CMPLXF(0, 1)) == (float)(PI / 2));
    CHECK(creal(CMPLX(3, INF)) == 3 && cimagf(CMPLXF(NAN, -2)) == -2 && signbit(cimag(conj(CMPLX(1, 0)))));
    errno = 0;
    CHECK(cabs(CMPLX(1.7e308, 1.7e308)) == INF && errno == ERANGE);
}

/* Parts at the ends of the range, which must neither overflow on the way nor lose bits. */
static void test_extremes(void)
{
    const double max = 0x1.fffffffffffffp1023, least = 0x1p-1074;
    check_value(clog(CMPLX(max, 0)), 709.782712893383973, 0, "clog of the greatest number");
    check_value(clog(CMPLX(-1, max)), 709.782712893383973, PI / 2, "clog of the greatest number i");
    check_value(csqrt(CMPLX(0, max)), 0x1.6a09e667f3bccp511, 0x1.6a09e667f3bccp511, "csqrt of the greatest number i");
    check_value(cexp(CMPLX(10, least)), 22026.4657948067165, 22026 * least, "e^10 of a tiny angle");
    check_value(cexp(CMPLX(1000, least)), INF, 0x1.9e72379aed73bp368, "e^1000 of a tiny angle");
    check_value(ccosh(CMPLX(-710, least)), 0x1.3e21a464507f9p1023, -0x1.3e21a464507f9p-51, "ccosh of a tiny angle");
    check_value(ctanh(CMPLX(1, -least)), 0x1.85efab514f394p-1, -0.0, "ctanh of a tiny angle");
    check_value(cpow(CMPLX(2, 0), CMPLX(0, 1e5)), 0.187428421833902148, -0.982278263369831895, "2^(100000 i)");
    CHECK(cabs(cpow(CMPLX(1e-20, -1e-300), CMPLX(1, -1e300))) == 0);
    check_value(cpow(CMPLX(0.5, -0.5), CMPLX(-INF, NAN)), INF, NAN, "to an infinite power");
    check_value(__cxdiv(CMPLX(-max, 1e-300), CMPLX(2, 0)), -max / 2, 5e-301, "sizes apart, by a real number");
    check_value(__cxdiv(CMPLX(1e-300, max), CMPLX(-0.0, 2)), max / 2, -5e-301, "sizes apart, by an imaginary number");
    feclearexcept(FE_ALL_EXCEPT);
    (void)ctanh(CMPLX(max, 3));
    CHECK(!fetestexcept(FE_OVERFLOW | FE_INVALID));
}

static void test_product_and_quotient(void)
{
    check_value(__cxmul(CMPLX(1, 2), CMPLX(3, -4)), 11, 2, "product");
    check_value(__cxdiv(CMPLX(11, 2), CMPLX(3, -4)), 1, 2, "quotient");
    check_value(__cxmul(CMPLX(INF, 0), CMPLX(1, 1)), INF, INF, "inf (1 + i)");
    check_value(__cxmul(CMPLX(INF, NAN), CMPLX(1, 0)), INF, NAN, "product with a NaN part");
    check_value(__cxmul(CMPLX(NAN, NAN), CMPLX(1, 0)), NAN, NAN, "product of NaNs");
    check_value(__cxdiv(CMPLX(1, 1), CMPLX(0, 0)), INF, INF, "over 0");
    check_value(__cxdiv(CMPLX(1, 1), CMPLX(INF, 1)), 0, 0, "over infinity");
    check_value(__cxdiv(CMPLX(INF, 1), CMPLX(2, 1)), INF, -INF, "infinity over");
    check_value(__cxdiv(CMPLX(1e308, 1e308), CMPLX(1e308, 1e308)), 1, 0, "large");
    check_value(__cxdiv(CMPLX(1e-310, 0), CMPLX(1e-310, 0)), 1, 0, "subnormal");
    check_value(__cxdiv(CMPLX(1e-300, 1e300), CMPLX(1e300, 1e-300)), 0, 1, "sizes apart");
    check_value(__cxdiv(CMPLX(1, 0), CMPLX(0x1p-1074, 0)), INF, 0, "overflow");
    volatile double complex z = CMPLX(3, 4), w = CMPLX(1, -2);
    check_value(z * w / w, 3, 4, "operators");
    volatile float complex zf = CMPLXF(3, 4), wf = CMPLXF(1, -2);
    CHECK(crealf(zf * wf / wf) == 3 && cimagf(zf * wf / wf) == 4);
}

int main(void)
{
    test_special();
    test_huge_inverse_tangents();
    test_power_and_parts();
    test_extremes();
    test_product_and_quotient();
    return check_done();
}
