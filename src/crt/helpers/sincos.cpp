// What gcc calls when it sees the sine and the cosine of one argument.

#include <math.h>

extern "C" {

void sincos(double x, double *sine, double *cosine) {
    *sine = sin(x);
    *cosine = cos(x);
}

void sincosf(float x, float *sine, float *cosine) {
    *sine = sinf(x);
    *cosine = cosf(x);
}

void sincosl(long double x, long double *sine, long double *cosine) {
    *sine = sinl(x);
    *cosine = cosl(x);
}

} // extern "C"
