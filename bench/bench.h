/*
 * bench.h - measures statements. A benchmark program is plain C that builds against any C library:
 *
 *   int main(void)
 *   {
 *       BENCH("strlen 16", 1, bench_keep(strlen(text)));
 *       BENCH("memcpy 1 MiB per KiB", 1024, memcpy(to, from, 1 << 20));
 *       return 0;
 *   }
 *
 * `BENCH(name, units, statement)` prints `name<TAB>nanoseconds per unit`, where one run of the
 * statement does `units` units of work. The statement is repeated until a round takes 20 ms; of
 * several rounds (BENCH_ROUNDS) the best counts. `bench_keep(value)` makes a value (an integer, a pointer or a
 * floating-point number) look used. `BENCH_SKIP(name)` prints a row for what a library does not have.
 *
 * bench/run compiles with -fno-builtin: calls are calls.
 */
#ifndef BENCH_H
#define BENCH_H

#include <stdio.h>

#ifdef _WIN32
__declspec(dllimport) int __stdcall QueryPerformanceCounter(void *);
__declspec(dllimport) int __stdcall QueryPerformanceFrequency(void *);

static double bench_now(void)
{
    static long long frequency;
    long long count;
    if (!frequency) QueryPerformanceFrequency(&frequency);
    QueryPerformanceCounter(&count);
    return (double)count * 1e9 / (double)frequency;
}
#else
#include <time.h>

static double bench_now(void)
{
    struct timespec time;
    clock_gettime(CLOCK_MONOTONIC, &time);
    return (double)time.tv_sec * 1e9 + (double)time.tv_nsec;
}
#endif

#define BENCH_ROUND_NS 20e6
#ifndef BENCH_ROUNDS
#define BENCH_ROUNDS 5
#endif

#define bench_keep(value)                                                                          \
    do {                                                                                           \
        __typeof__(value) bench_value_ = (value);                                                  \
        __asm__ volatile("" : : "m"(bench_value_) : "memory");                                     \
    } while (0)

/* By hand and in integers: a library under test need not print floating point yet. */
static void bench_print(const char *name, double ns)
{
    unsigned long long hundredths = (unsigned long long)(ns * 100 + 0.5);
    printf("%s\t%lu.%02u\n", name, (unsigned long)(hundredths / 100), (unsigned)(hundredths % 100));
    fflush(stdout);
}

#define BENCH_SKIP(name) (printf("%s\t-\n", (name)), (void)fflush(stdout))

/* The first loop finds how many repetitions take a round. */
#define BENCH(name, units, ...)                                                                    \
    do {                                                                                           \
        unsigned long bench_count_ = 1, bench_i_;                                                  \
        double bench_best_ = 1e300, bench_time_ = 0;                                               \
        for (;; bench_count_ *= 2) {                                                               \
            bench_time_ = bench_now();                                                             \
            for (bench_i_ = 0; bench_i_ < bench_count_; ++bench_i_) { __VA_ARGS__; }               \
            bench_time_ = bench_now() - bench_time_;                                               \
            if (bench_time_ >= BENCH_ROUND_NS / 2 || bench_count_ >= 1ul << 30) break;             \
        }                                                                                          \
        for (int bench_round_ = 0; bench_round_ < BENCH_ROUNDS; ++bench_round_) {                  \
            bench_time_ = bench_now();                                                             \
            for (bench_i_ = 0; bench_i_ < bench_count_; ++bench_i_) { __VA_ARGS__; }               \
            bench_time_ = (bench_now() - bench_time_) / (double)bench_count_ / (double)(units);    \
            if (bench_time_ < bench_best_) bench_best_ = bench_time_;                              \
        }                                                                                          \
        bench_print((name), bench_best_);                                                          \
    } while (0)

#endif
