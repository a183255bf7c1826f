/* Mathematical functions on random arguments: throughput over a natural range and over a wide one (all
   sizes), and latency, where each call waits for the one before. Few rounds, since bench/run starts this
   program often. */
#define BENCH_ROUNDS 2
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

/* Every loop is a function of its own, with nothing but its sum on its stack. */
#define LOOP __attribute__((noinline)) static double

#define THROUGHPUT(name, call)                                                                     \
    LOOP name(void)                                                                                \
    {                                                                                              \
        double sum_ = 0;                                                                           \
        for (int i = 0; i < count; ++i) sum_ += (call);                                            \
        return sum_;                                                                               \
    }

#define LATENCY(name, call)                                                                        \
    LOOP name(void)                                                                                \
    {                                                                                              \
        double last_ = 0;                                                                          \
        for (int i = 0; i < count; ++i) last_ = (call);                                            \
        return last_;                                                                              \
    }

/* The loops of a function of one argument, of two, and of a complex one. */
#define ONE_LOOPS(function, ...)                                                                   \
    THROUGHPUT(function##_natural, function(x[i]))                                                 \
    THROUGHPUT(function##_wide, function(wide_x[i]))                                               \
    LATENCY(function##_latency, function(x[i] + 0 * last_))                                        \
    THROUGHPUT(function##f_natural, function##f(xf[i]))                                            \
    THROUGHPUT(function##f_wide, function##f(wide_xf[i]))                                          \
    LATENCY(function##f_latency, function##f(xf[i] + 0 * (float)last_))

#define TWO_LOOPS(function, ...)                                                                   \
    THROUGHPUT(function##_natural, function(x[i], y[i]))                                           \
    THROUGHPUT(function##_wide, function(wide_x[i], wide_y[i]))                                    \
    LATENCY(function##_latency, function(x[i] + 0 * last_, y[i]))                                  \
    THROUGHPUT(function##f_natural, function##f(xf[i], yf[i]))                                     \
    THROUGHPUT(function##f_wide, function##f(wide_xf[i], wide_yf[i]))                              \
    LATENCY(function##f_latency, function##f(xf[i] + 0 * (float)last_, yf[i]))

#define COMPLEX_LOOPS(function)                                                                    \
    LOOP function##_natural(void)                                                                  \
    {                                                                                              \
        for (int i = 0; i < count; ++i) bench_keep(function(x[i] + I * y[i]));                     \
        return 0;                                                                                  \
    }                                                                                              \
    LOOP function##f_natural(void)                                                                 \
    {                                                                                              \
        for (int i = 0; i < count; ++i) bench_keep(function##f(xf[i] + I * yf[i]));                \
        return 0;                                                                                  \
    }

/* Every function with its natural range and its wide one. */
#define FUNCTIONS(ONE, TWO, COMPLEX)                                                               \
    ONE(exp, -10, 10, -1, 700)                                                                     \
    ONE(exp2, -10, 10, -1, 1000)                                                                   \
    ONE(expm1, -2, 2, -1, 700)                                                                     \
    ONE(log, 0, 10, 1e-300, 1e300)                                                                 \
    ONE(log2, 0, 10, 1e-300, 1e300)                                                                \
    ONE(log10, 0, 10, 1e-300, 1e300)                                                               \
    ONE(log1p, -0.5, 2, 0, 1e300)                                                                  \
    TWO(pow, 0.1, 10, 1e-10, 200)                                                                  \
    ONE(sin, -10, 10, -1, 1e300)                                                                   \
    ONE(cos, -10, 10, -1, 1e300)                                                                   \
    ONE(tan, -10, 10, -1, 1e300)                                                                   \
    ONE(asin, -1, 1, -1, 1)                                                                        \
    ONE(acos, -1, 1, -1, 1)                                                                        \
    ONE(atan, -5, 5, -1, 1e300)                                                                    \
    TWO(atan2, -5, 5, -1, 1e10)                                                                    \
    ONE(sinh, -5, 5, -1, 700)                                                                      \
    ONE(cosh, -5, 5, -1, 700)                                                                      \
    ONE(tanh, -3, 3, -1, 1e300)                                                                    \
    ONE(asinh, -5, 5, -1, 1e300)                                                                   \
    ONE(acosh, 1, 10, 1, 1e300)                                                                    \
    ONE(atanh, -1, 1, -1, 1)                                                                       \
    ONE(sqrt, 0, 10, 1e-300, 1e300)                                                                \
    ONE(cbrt, -10, 10, -1, 1e300)                                                                  \
    TWO(hypot, -10, 10, -1, 1e100)                                                                 \
    TWO(fmod, -10, 10, -1, 1e300)                                                                  \
    TWO(remainder, -10, 10, -1, 1e300)                                                             \
    ONE(tgamma, 0.1, 20, 0, 170)                                                                   \
    ONE(lgamma, 0.1, 20, 0, 1e300)                                                                 \
    ONE(erf, -3, 3, -1, 6)                                                                         \
    ONE(erfc, -3, 6, 0, 27)                                                                        \
    COMPLEX(cexp)                                                                                  \
    COMPLEX(clog)                                                                                  \
    COMPLEX(csqrt)                                                                                 \
    COMPLEX(csin)                                                                                  \
    COMPLEX(ctanh)                                                                                 \
    COMPLEX(casin)                                                                                 \
    COMPLEX(catan)                                                                                 \
    ONE(floor, -10, 10, -1, 1e300)                                                                 \
    ONE(round, -10, 10, -1, 1e300)

FUNCTIONS(ONE_LOOPS, TWO_LOOPS, COMPLEX_LOOPS)

static int wanted(const char *name, int argc, char **argv)
{
    return argc < 2 || strcmp(argv[1], name) == 0;
}

#define RUN(function, ...)                                                                         \
    if (wanted(#function, argc, argv)) {                                                           \
        fill(__VA_ARGS__);                                                                         \
        BENCH(#function, count, bench_keep(function##_natural()));                                 \
        BENCH(#function ", wide", count, bench_keep(function##_wide()));                           \
        BENCH(#function ", latency", count, bench_keep(function##_latency()));                     \
        BENCH(#function "f", count, bench_keep(function##f_natural()));                            \
        BENCH(#function "f, wide", count, bench_keep(function##f_wide()));                         \
        BENCH(#function "f, latency", count, bench_keep(function##f_latency()));                   \
    }

/* Both parts in the natural range. */
#define RUN_COMPLEX(function)                                                                      \
    if (wanted(#function, argc, argv)) {                                                           \
        fill(-3, 3, -1, 100);                                                                      \
        BENCH(#function, count, bench_keep(function##_natural()));                                 \
        BENCH(#function "f", count, bench_keep(function##f_natural()));                            \
    }

int main(int argc, char **argv)
{
    FUNCTIONS(RUN, RUN, RUN_COMPLEX)
    return 0;
}
