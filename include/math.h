/*
 * <math.h> - C11 7.12: mathematics. long double is double.
 *
 * Special values are those of Annex F. A function that meets an error sets errno and raises an
 * exception (math_errhandling says both):
 *
 *   domain    EDOM    FE_INVALID     the result is a NaN
 *   pole      EDOM    FE_DIVBYZERO   an infinity; deliberately not ERANGE
 *   overflow  ERANGE  FE_OVERFLOW    an infinity
 *   underflow ERANGE  FE_UNDERFLOW   a subnormal number or zero that is not exact
 *
 * unless a hook handles it (__setmatherr). NaN arguments give NaN without an error. In rounding
 * directions other than to nearest results stay within 2 units in the last place.
 */
#ifndef _MATH_H
#define _MATH_H

#include <_vexrt.h>

typedef float float_t;
typedef double double_t;

#define HUGE_VAL (__builtin_huge_val())
#define HUGE_VALF (__builtin_huge_valf())
#define HUGE_VALL (__builtin_huge_vall())
#define INFINITY (__builtin_inff())
#define NAN (__builtin_nanf(""))

#define MATH_ERRNO 1
#define MATH_ERREXCEPT 2
#define math_errhandling (MATH_ERRNO | MATH_ERREXCEPT)

/* What ilogb gives for zero, and for a NaN. */
#define FP_ILOGB0 (-2147483647 - 1)
#define FP_ILOGBNAN 2147483647

#define FP_NAN 0
#define FP_INFINITE 1
#define FP_ZERO 2
#define FP_SUBNORMAL 3
#define FP_NORMAL 4

#if !defined(__STRICT_ANSI__) || defined(_XOPEN_SOURCE) || defined(_USE_MATH_DEFINES)
#define M_E 2.71828182845904523536
#define M_LOG2E 1.44269504088896340736
#define M_LOG10E 0.43429448190325182765
#define M_LN2 0.69314718055994530942
#define M_LN10 2.30258509299404568402
#define M_PI 3.14159265358979323846
#define M_PI_2 1.57079632679489661923
#define M_PI_4 0.78539816339744830962
#define M_1_PI 0.31830988618379067154
#define M_2_PI 0.63661977236758134308
#define M_2_SQRTPI 1.12837916709551257390
#define M_SQRT2 1.41421356237309504880
#define M_SQRT1_2 0.70710678118654752440
#endif

_VEXRT_BEGIN

/* ---- errors ---- */

/* What a hook is told: the kind, the public function's name, the arguments (one argument stands
   twice) and the result, which the hook may change. */
#ifndef _EXCEPTION_DEFINED
#define _EXCEPTION_DEFINED
struct _exception {
    int type;
    const char *name;
    double arg1, arg2, retval;
};
#endif

/* The kinds. Domain errors, poles and the inexact results of rint are the first. */
#define _DOMAIN 1
#define _OVERFLOW 3
#define _UNDERFLOW 4

/* Installs a hook for the whole process; null removes it. When it returns nonzero it has handled
   the error: the function returns the record's retval, sets no errno and raises nothing. */
void __setmatherr(int (*hook)(struct _exception *record));

/* ---- classification ---- */

/* One of the FP_ constants. */
int __fpclass(double x);
int __fpclassf(float x);
int __fpclassl(long double x);

/* How x compares with y; no exception for quiet NaNs. */
#define _FP_LESS 1
#define _FP_EQUAL 2
#define _FP_GREATER 4
#define _FP_UNORDERED 8
int __fpcomp(double x, double y);
int __fpcompf(float x, float y);
int __fpcompl(long double x, long double y);

/* 1 when the sign bit is set, also that of a zero or a NaN; else 0. */
int __fpsign(double x);
int __fpsignf(float x);
int __fpsignl(long double x);

#define fpclassify(x)                                                                              \
    __builtin_fpclassify(FP_NAN, FP_INFINITE, FP_NORMAL, FP_SUBNORMAL, FP_ZERO, (x))
#define isfinite(x) __builtin_isfinite(x)
#define isinf(x) __builtin_isinf_sign(x)
#define isnan(x) __builtin_isnan(x)
#define isnormal(x) __builtin_isnormal(x)
#define signbit(x) (__builtin_signbit(x) != 0)

#define isgreater(x, y) __builtin_isgreater((x), (y))
#define isgreaterequal(x, y) __builtin_isgreaterequal((x), (y))
#define isless(x, y) __builtin_isless((x), (y))
#define islessequal(x, y) __builtin_islessequal((x), (y))
#define islessgreater(x, y) __builtin_islessgreater((x), (y))
#define isunordered(x, y) __builtin_isunordered((x), (y))

/* ---- trigonometric ---- */

/* Sine, cosine, tangent of radians, of any size. An infinite argument is a domain error. */
double cos(double x);
float cosf(float x);
long double cosl(long double x);
double sin(double x);
float sinf(float x);
long double sinl(long double x);
double tan(double x);
float tanf(float x);
long double tanl(long double x);

/* Inverses. acos and asin of more than 1 in magnitude are domain errors. atan2 is the angle of the
   point (x, y), from -pi to pi, also for zeros and infinities. */
double acos(double x);
float acosf(float x);
long double acosl(long double x);
double asin(double x);
float asinf(float x);
long double asinl(long double x);
double atan(double x);
float atanf(float x);
long double atanl(long double x);
double atan2(double y, double x);
float atan2f(float y, float x);
long double atan2l(long double y, long double x);

/* ---- hyperbolic ---- */

/* cosh and sinh overflow above 710 (float: 89). */
double cosh(double x);
float coshf(float x);
long double coshl(long double x);
double sinh(double x);
float sinhf(float x);
long double sinhl(long double x);
double tanh(double x);
float tanhf(float x);
long double tanhl(long double x);

/* acosh of less than 1 and atanh of more than 1 in magnitude are domain errors; atanh of 1 and of -1
   are poles. */
double acosh(double x);
float acoshf(float x);
long double acoshl(long double x);
double asinh(double x);
float asinhf(float x);
long double asinhl(long double x);
double atanh(double x);
float atanhf(float x);
long double atanhl(long double x);

/* ---- exponentials and logarithms ---- */

/* e^x, 2^x, e^x - 1. */
double exp(double x);
float expf(float x);
long double expl(long double x);
double exp2(double x);
float exp2f(float x);
long double exp2l(long double x);
double expm1(double x);
float expm1f(float x);
long double expm1l(long double x);

/* Splits value into a fraction from 1/2 to 1 and a power of two, *exp. For infinities and NaNs *exp is
   0. */
double frexp(double value, int *exp);
float frexpf(float value, int *exp);
long double frexpl(long double value, int *exp);

/* The exponent of x, as if normalised. Zero, infinities and NaN are domain errors: FP_ILOGB0, INT_MAX,
   FP_ILOGBNAN. */
int ilogb(double x);
int ilogbf(float x);
int ilogbl(long double x);

/* The same as a floating-point number. Zero is a pole. */
double logb(double x);
float logbf(float x);
long double logbl(long double x);

/* x 2^exp, and the same for an exponent of type long. */
double ldexp(double x, int exp);
float ldexpf(float x, int exp);
long double ldexpl(long double x, int exp);
double scalbn(double x, int n);
float scalbnf(float x, int n);
long double scalbnl(long double x, int n);
double scalbln(double x, long n);
float scalblnf(float x, long n);
long double scalblnl(long double x, long n);

/* Logarithms to the bases e, 10 and 2, and log(1 + x). Less than zero is a domain error, zero a pole. */
double log(double x);
float logf(float x);
long double logl(long double x);
double log10(double x);
float log10f(float x);
long double log10l(long double x);
double log2(double x);
float log2f(float x);
long double log2l(long double x);
double log1p(double x);
float log1pf(float x);
long double log1pl(long double x);

/* Splits value into a fraction (returned) and an integer, both of its sign. */
double modf(double value, double *iptr);
float modff(float value, float *iptr);
long double modfl(long double value, long double *iptr);

/* ---- powers and roots ---- */

/* Cube root, square root, sqrt(x^2 + y^2), x^y. The square root is rounded correctly. */
double cbrt(double x);
float cbrtf(float x);
long double cbrtl(long double x);
double sqrt(double x);
float sqrtf(float x);
long double sqrtl(long double x);
double hypot(double x, double y);
float hypotf(float x, float y);
long double hypotl(long double x, long double y);
double pow(double x, double y);
float powf(float x, float y);
long double powl(long double x, long double y);

/* Magnitude. */
double fabs(double x);
float fabsf(float x);
long double fabsl(long double x);

/* ---- error and gamma functions ---- */

/* The error function and 1 - erf(x), accurate where that is small. */
double erf(double x);
float erff(float x);
long double erfl(long double x);
double erfc(double x);
float erfcf(float x);
long double erfcl(long double x);

/* The logarithm of the gamma function's magnitude, and the gamma function. Zero is a pole; negative
   integers are poles of lgamma and domain errors of tgamma. */
double lgamma(double x);
float lgammaf(float x);
long double lgammal(long double x);
double tgamma(double x);
float tgammaf(float x);
long double tgammal(long double x);

/* ---- integers ---- */

/* The integer above, below, nearer to zero, and nearest with halves away from zero. */
double ceil(double x);
float ceilf(float x);
long double ceill(long double x);
double floor(double x);
float floorf(float x);
long double floorl(long double x);
double trunc(double x);
float truncf(float x);
long double truncl(long double x);
double round(double x);
float roundf(float x);
long double roundl(long double x);

/* The integer in the current rounding direction. rint reports a result that differs from x: FE_INEXACT,
   and ERANGE in errno. nearbyint does not. */
double nearbyint(double x);
float nearbyintf(float x);
long double nearbyintl(long double x);
double rint(double x);
float rintf(float x);
long double rintl(long double x);

/* The integers of rint and round. One that the type cannot hold is a domain error: LONG_MIN, LLONG_MIN. */
long lrint(double x);
long lrintf(float x);
long lrintl(long double x);
long long llrint(double x);
long long llrintf(float x);
long long llrintl(long double x);
long lround(double x);
long lroundf(float x);
long lroundl(long double x);
long long llround(double x);
long long llroundf(float x);
long long llroundl(long double x);

/* ---- remainders ---- */

/* x - n y, exactly, with n = x / y truncated (fmod) or rounded to nearest, halves to even (remainder,
   remquo). *quo gets the sign and the low 3 bits of n. y = 0 and infinite x are domain errors. */
double fmod(double x, double y);
float fmodf(float x, float y);
long double fmodl(long double x, long double y);
double remainder(double x, double y);
float remainderf(float x, float y);
long double remainderl(long double x, long double y);
double remquo(double x, double y, int *quo);
float remquof(float x, float y, int *quo);
long double remquol(long double x, long double y, int *quo);

/* ---- neighbours and representations ---- */

/* The magnitude of x with the sign of y. */
double copysign(double x, double y);
float copysignf(float x, float y);
long double copysignl(long double x, long double y);

/* A quiet NaN; digits in `tagp`, decimal, octal or hexadecimal, become its payload. */
double nan(const char *tagp);
float nanf(const char *tagp);
long double nanl(const char *tagp);

/* The next number from x in the direction of y. */
double nextafter(double x, double y);
float nextafterf(float x, float y);
long double nextafterl(long double x, long double y);
double nexttoward(double x, long double y);
float nexttowardf(float x, long double y);
long double nexttowardl(long double x, long double y);

/* ---- differences, extremes, products ---- */

/* x - y, or 0 when that is negative. */
double fdim(double x, double y);
float fdimf(float x, float y);
long double fdiml(long double x, long double y);

/* The greater, the less; a NaN loses against a number, and -0 is less than 0. */
double fmax(double x, double y);
float fmaxf(float x, float y);
long double fmaxl(long double x, long double y);
double fmin(double x, double y);
float fminf(float x, float y);
long double fminl(long double x, long double y);

/* x y + z, rounded once. */
double fma(double x, double y, double z);
float fmaf(float x, float y, float z);
long double fmal(long double x, long double y, long double z);

_VEXRT_END

#endif
