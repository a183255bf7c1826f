/* Mathematical functions on random arguments: throughput over a natural range and over a wide one (all
   sizes), and latency, where each call waits for the one before. */
#include "bench.h"

#include <complex.h>
#include <math.h>
#include <stdlib.h>
#include <string.h>

enum { count = 1024 };

static double x[count], y[count], wide_x[count], wide_y[count];
static float xf[count], yf[count], wide_xf[count], wide_yf[count];

static unsigned long long state = 88172645463325252ULL;
static double unit_random(void)
{
    state ^= state << 13;
    state ^= state >> 7;
    state ^= state << 17;
    return (double)(state >> 11) * 0x1p-53;
}

/* Uniform from low to high, and uniform in the exponent over what the function takes. */
static void fill(double low, double high, double wide_low, double wide_high)
{
    int positive = wide_low >= 0;
    double least = positive && wide_low > 0 ? log(wide_low) : -40, most = log(wide_high);
    double float_most = most > 85 ? 85 : most, float_least = least < -85 ? -85 : least;
    for (int i = 0; i < count; ++i) {
        double place = unit_random(), sign = !positive && unit_random() < 0.5 ? -1 : 1;
        x[i] = low + unit_random() * (high - low);
        y[i] = low + unit_random() * (high - low);
        wide_x[i] = sign * exp(least + place * (most - least));
        wide_y[i] = sign * exp(least + unit_random() * (most - least));
        wide_xf[i] = (float)(sign * exp(float_least + place * (float_most - float_least)));
        wide_yf[i] = (float)(sign * exp(float_least + unit_random() * (float_most - float_least)));
        xf[i] = (float)x[i];
        yf[i] = (float)y[i];
    }
}

#define THROUGHPUT(name, call)                                                                     \
    BENCH(name, count, {                                                                           \
        double sum_ = 0;                                                                           \
        for (int i = 0; i < count; ++i) sum_ += (call);                                            \
        bench_keep(sum_);                                                                          \
    })

#define LATENCY(name, call)                                                                        \
    BENCH(name, count, {                                                                           \
        double last_ = 0;                                                                          \
        for (int i = 0; i < count; ++i) last_ = (call);                                            \
        bench_keep(last_);                                                                         \
    })

static int wanted(const char *name, int argc, char **argv)
{
    return argc < 2 || strcmp(argv[1], name) == 0;
}

#define ONE(function, ...)                                                                         \
    if (wanted(#function, argc, argv)) {                                                           \
        fill(__VA_ARGS__);                                                                         \
        THROUGHPUT(#function, function(x[i]));                                                     \
        THROUGHPUT(#function ", wide", function(wide_x[i]));                                       \
        LATENCY(#function ", latency", function(x[i] + 0 * last_));                                \
        THROUGHPUT(#function "f", function##f(xf[i]));                                             \
        THROUGHPUT(#function "f, wide", function##f(wide_xf[i]));                                  \
        LATENCY(#function "f, latency", function##f(xf[i] + 0 * (float)last_));                    \
    }

#define TWO(function, ...)                                                                         \
    if (wanted(#function, argc, argv)) {                                                           \
        fill(__VA_ARGS__);                                                                         \
        THROUGHPUT(#function, function(x[i], y[i]));                                               \
        THROUGHPUT(#function ", wide", function(wide_x[i], wide_y[i]));                            \
        LATENCY(#function ", latency", function(x[i] + 0 * last_, y[i]));                          \
        THROUGHPUT(#function "f", function##f(xf[i], yf[i]));                                      \
        THROUGHPUT(#function "f, wide", function##f(wide_xf[i], wide_yf[i]));                      \
        LATENCY(#function "f, latency", function##f(xf[i] + 0 * (float)last_, yf[i]));             \
    }

/* Both parts in the natural range. */
#define COMPLEX(function)                                                                          \
    if (wanted(#function, argc, argv)) {                                                           \
        fill(-3, 3, -1, 100);                                                                      \
        BENCH(#function, count, for (int i = 0; i < count; ++i) bench_keep(function(x[i] + I * y[i]))); \
        BENCH(#function "f", count,                                                                \
              for (int i = 0; i < count; ++i) bench_keep(function##f(xf[i] + I * yf[i])));          \
    }

int main(int argc, char **argv)
{
    ONE(exp, -10, 10, -1, 700)
    ONE(exp2, -10, 10, -1, 1000)
    ONE(expm1, -2, 2, -1, 700)
    ONE(log, 0, 10, 1e-300, 1e300)
    ONE(log2, 0, 10, 1e-300, 1e300)
    ONE(log10, 0, 10, 1e-300, 1e300)
    ONE(log1p, -0.5, 2, 0, 1e300)
    TWO(pow, 0.1, 10, 1e-10, 200)
    ONE(sin, -10, 10, -1, 1e300)
    ONE(cos, -10, 10, -1, 1e300)
    ONE(tan, -10, 10, -1, 1e300)
    ONE(asin, -1, 1, -1, 1)
    ONE(acos, -1, 1, -1, 1)
    ONE(atan, -5, 5, -1, 1e300)
    TWO(atan2, -5, 5, -1, 1e10)
    ONE(sinh, -5, 5, -1, 700)
    ONE(cosh, -5, 5, -1, 700)
    ONE(tanh, -3, 3, -1, 1e300)
    ONE(asinh, -5, 5, -1, 1e300)
    ONE(acosh, 1, 10, 1, 1e300)
    ONE(atanh, -1, 1, -1, 1)
    ONE(sqrt, 0, 10, 1e-300, 1e300)
    ONE(cbrt, -10, 10, -1, 1e300)
    TWO(hypot, -10, 10, -1, 1e100)
    TWO(fmod, -10, 10, -1, 1e300)
    TWO(remainder, -10, 10, -1, 1e300)
    ONE(tgamma, 0.1, 20, 0, 170)
    ONE(lgamma, 0.1, 20, 0, 1e300)
    ONE(erf, -3, 3, -1, 6)
    ONE(erfc, -3, 6, 0, 27)
    COMPLEX(cexp)
    COMPLEX(clog)
    COMPLEX(csqrt)
    COMPLEX(csin)
    COMPLEX(ctanh)
    COMPLEX(casin)
    COMPLEX(catan)
    ONE(floor, -10, 10, -1, 1e300)
    ONE(round, -10, 10, -1, 1e300)
    return 0;
}
