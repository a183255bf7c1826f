// The exported primitives behind the public functions. No public header declares them.
#pragma once

extern "C" {

// y e^x 2^k in place of *x. Returns a ScaleStatus (math/scale.h).
int __exp(double *x, double y, int k);
int __expf(float *x, float y, int k);
int __expl(long double *x, long double y, int k);

// y cosh(x) and y sinh(x). Errors bear the public functions' names.
double __cosh(double x, double y);
float __coshf(float x, float y);
long double __coshl(long double x, long double y);
double __sinh(double x, double y);
float __sinhf(float x, float y);
long double __sinhl(long double x, long double y);

// The sine of x and `quadrant` quarter turns: 0 for sin, 1 for cos.
double __sin(double x, unsigned int quadrant);
float __sinf(float x, unsigned int quadrant);
long double __sinl(long double x, unsigned int quadrant);

// Logarithms: selector 0 to the base e, 1 to the base 10, 2 to the base 2.
double __log(double x, int selector);
float __logf(float x, int selector);
long double __logl(long double x, int selector);

} // extern "C"
