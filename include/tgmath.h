/*
 * <tgmath.h> - C11 7.25: type-generic mathematics. A macro for each function of <math.h> and <complex.h>
 * that has counterparts for several types picks the one of its arguments' types; integers count as
 * double. In C++, which overloads by other means, it is these two headers only.
 */
#ifndef _TGMATH_H
#define _TGMATH_H

#include <complex.h>
#include <math.h>

#ifndef __cplusplus

/* A zero of the type that an argument counts as. */
#define _VEXRT_TYPE(x)                                                                             \
    _Generic((x),                                                                                  \
        float: (float)0,                                                                           \
        long double: (long double)0,                                                               \
        float _Complex: (float _Complex)0,                                                         \
        double _Complex: (double _Complex)0,                                                       \
        long double _Complex: (long double _Complex)0,                                             \
        default: (double)0)
#define _VEXRT_TYPE2(x, y) (_VEXRT_TYPE(x) + _VEXRT_TYPE(y))
#define _VEXRT_TYPE3(x, y, z) (_VEXRT_TYPE(x) + _VEXRT_TYPE(y) + _VEXRT_TYPE(z))

/* The member of a family: of real types; of real and complex ones; of complex ones alone. */
#define _VEXRT_REAL(type, real) _Generic((type), float: real##f, long double: real##l, default: real)
#define _VEXRT_BOTH(type, real, other)                                                             \
    _Generic((type),                                                                               \
        float: real##f,                                                                            \
        long double: real##l,                                                                      \
        float _Complex: other##f,                                                                  \
        double _Complex: other,                                                                    \
        long double _Complex: other##l,                                                            \
        default: real)
#define _VEXRT_COMPLEX(type, other)                                                                \
    _Generic((type),                                                                               \
        float: other##f,                                                                           \
        float _Complex: other##f,                                                                  \
        long double: other##l,                                                                     \
        long double _Complex: other##l,                                                            \
        default: other)

#define acos(x) _VEXRT_BOTH(_VEXRT_TYPE(x), acos, cacos)(x)
#define asin(x) _VEXRT_BOTH(_VEXRT_TYPE(x), asin, casin)(x)
#define atan(x) _VEXRT_BOTH(_VEXRT_TYPE(x), atan, catan)(x)
#define acosh(x) _VEXRT_BOTH(_VEXRT_TYPE(x), acosh, cacosh)(x)
#define asinh(x) _VEXRT_BOTH(_VEXRT_TYPE(x), asinh, casinh)(x)
#define atanh(x) _VEXRT_BOTH(_VEXRT_TYPE(x), atanh, catanh)(x)
#define cos(x) _VEXRT_BOTH(_VEXRT_TYPE(x), cos, ccos)(x)
#define sin(x) _VEXRT_BOTH(_VEXRT_TYPE(x), sin, csin)(x)
#define tan(x) _VEXRT_BOTH(_VEXRT_TYPE(x), tan, ctan)(x)
#define cosh(x) _VEXRT_BOTH(_VEXRT_TYPE(x), cosh, ccosh)(x)
#define sinh(x) _VEXRT_BOTH(_VEXRT_TYPE(x), sinh, csinh)(x)
#define tanh(x) _VEXRT_BOTH(_VEXRT_TYPE(x), tanh, ctanh)(x)
#define exp(x) _VEXRT_BOTH(_VEXRT_TYPE(x), exp, cexp)(x)
#define log(x) _VEXRT_BOTH(_VEXRT_TYPE(x), log, clog)(x)
#define sqrt(x) _VEXRT_BOTH(_VEXRT_TYPE(x), sqrt, csqrt)(x)
#define fabs(x) _VEXRT_BOTH(_VEXRT_TYPE(x), fabs, cabs)(x)
#define pow(x, y) _VEXRT_BOTH(_VEXRT_TYPE2(x, y), pow, cpow)(x, y)

#define cbrt(x) _VEXRT_REAL(_VEXRT_TYPE(x), cbrt)(x)
#define ceil(x) _VEXRT_REAL(_VEXRT_TYPE(x), ceil)(x)
#define erf(x) _VEXRT_REAL(_VEXRT_TYPE(x), erf)(x)
#define erfc(x) _VEXRT_REAL(_VEXRT_TYPE(x), erfc)(x)
#define exp2(x) _VEXRT_REAL(_VEXRT_TYPE(x), exp2)(x)
#define expm1(x) _VEXRT_REAL(_VEXRT_TYPE(x), expm1)(x)
#define floor(x) _VEXRT_REAL(_VEXRT_TYPE(x), floor)(x)
#define ilogb(x) _VEXRT_REAL(_VEXRT_TYPE(x), ilogb)(x)
#define lgamma(x) _VEXRT_REAL(_VEXRT_TYPE(x), lgamma)(x)
#define llrint(x) _VEXRT_REAL(_VEXRT_TYPE(x), llrint)(x)
#define llround(x) _VEXRT_REAL(_VEXRT_TYPE(x), llround)(x)
#define log10(x) _VEXRT_REAL(_VEXRT_TYPE(x), log10)(x)
#define log1p(x) _VEXRT_REAL(_VEXRT_TYPE(x), log1p)(x)
#define log2(x) _VEXRT_REAL(_VEXRT_TYPE(x), log2)(x)
#define logb(x) _VEXRT_REAL(_VEXRT_TYPE(x), logb)(x)
#define lrint(x) _VEXRT_REAL(_VEXRT_TYPE(x), lrint)(x)
#define lround(x) _VEXRT_REAL(_VEXRT_TYPE(x), lround)(x)
#define nearbyint(x) _VEXRT_REAL(_VEXRT_TYPE(x), nearbyint)(x)
#define rint(x) _VEXRT_REAL(_VEXRT_TYPE(x), rint)(x)
#define round(x) _VEXRT_REAL(_VEXRT_TYPE(x), round)(x)
#define tgamma(x) _VEXRT_REAL(_VEXRT_TYPE(x), tgamma)(x)
#define trunc(x) _VEXRT_REAL(_VEXRT_TYPE(x), trunc)(x)
#define atan2(x, y) _VEXRT_REAL(_VEXRT_TYPE2(x, y), atan2)(x, y)
#define copysign(x, y) _VEXRT_REAL(_VEXRT_TYPE2(x, y), copysign)(x, y)
#define fdim(x, y) _VEXRT_REAL(_VEXRT_TYPE2(x, y), fdim)(x, y)
#define fmax(x, y) _VEXRT_REAL(_VEXRT_TYPE2(x, y), fmax)(x, y)
#define fmin(x, y) _VEXRT_REAL(_VEXRT_TYPE2(x, y), fmin)(x, y)
#define fmod(x, y) _VEXRT_REAL(_VEXRT_TYPE2(x, y), fmod)(x, y)
#define hypot(x, y) _VEXRT_REAL(_VEXRT_TYPE2(x, y), hypot)(x, y)
#define nextafter(x, y) _VEXRT_REAL(_VEXRT_TYPE2(x, y), nextafter)(x, y)
#define remainder(x, y) _VEXRT_REAL(_VEXRT_TYPE2(x, y), remainder)(x, y)
#define frexp(x, exp) _VEXRT_REAL(_VEXRT_TYPE(x), frexp)(x, exp)
#define ldexp(x, exp) _VEXRT_REAL(_VEXRT_TYPE(x), ldexp)(x, exp)
#define scalbn(x, n) _VEXRT_REAL(_VEXRT_TYPE(x), scalbn)(x, n)
#define scalbln(x, n) _VEXRT_REAL(_VEXRT_TYPE(x), scalbln)(x, n)
#define nexttoward(x, y) _VEXRT_REAL(_VEXRT_TYPE(x), nexttoward)(x, y)
#define fma(x, y, z) _VEXRT_REAL(_VEXRT_TYPE3(x, y, z), fma)(x, y, z)
#define remquo(x, y, quo) _VEXRT_REAL(_VEXRT_TYPE2(x, y), remquo)(x, y, quo)

#define carg(z) _VEXRT_COMPLEX(_VEXRT_TYPE(z), carg)(z)
#define cimag(z) _VEXRT_COMPLEX(_VEXRT_TYPE(z), cimag)(z)
#define conj(z) _VEXRT_COMPLEX(_VEXRT_TYPE(z), conj)(z)
#define cproj(z) _VEXRT_COMPLEX(_VEXRT_TYPE(z), cproj)(z)
#define creal(z) _VEXRT_COMPLEX(_VEXRT_TYPE(z), creal)(z)

#endif

#endif
